#include "json.h"

namespace kiohost {
namespace {

std::string Dump(const Json& value, int indent) {
  return value.dump(indent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

std::string JsonText(const Json& value) { return Dump(value, 2) + "\n"; }

std::string JsonLine(const Json& value) { return Dump(value, -1); }

std::string JsonString(std::string_view text) { return Dump(Json(text), -1); }

}  // namespace kiohost
