#include "control/json_body.h"

#include <algorithm>

namespace kiohost {
namespace {

bool Fits(const Json& value, JsonMember::Type type) {
  switch (type) {
    case JsonMember::Type::kText:
      return value.is_string();
    case JsonMember::Type::kNumber:
      return value.is_number() && value.get<double>() >= 0;
    case JsonMember::Type::kWhole:
      return value.is_number_integer() && value.get<int64_t>() >= 0;
    case JsonMember::Type::kObject:
      return value.is_object();
    case JsonMember::Type::kList:
      return value.is_array();
  }
  return false;
}

const char* Noun(JsonMember::Type type) {
  switch (type) {
    case JsonMember::Type::kText:
      return "a text";
    case JsonMember::Type::kNumber:
      return "a number from 0 on";
    case JsonMember::Type::kWhole:
      return "a whole number from 0 on";
    case JsonMember::Type::kObject:
      return "an object";
    case JsonMember::Type::kList:
      break;
  }
  return "a list";
}

}  // namespace

std::string FaultOf(const Json& object, std::initializer_list<JsonMember> members) {
  for (const auto& [name, value] : object.items()) {
    const auto* const member =
        std::find_if(members.begin(), members.end(),
                     [&name = name](const JsonMember& known) { return known.name == name; });
    if (member == members.end()) {
      std::string known;
      for (const JsonMember& one : members) {
        known.append(known.empty() ? "" : ", ").append(one.name);
      }
      std::string fault = "there is no member \"";
      return fault.append(name).append("\" here, only: ").append(known);
    }
    if (!Fits(value, member->type)) {
      return "\"" + name + "\" takes " + Noun(member->type);
    }
  }
  return {};
}

std::optional<Json> JsonBody(const RequestView& request, std::initializer_list<JsonMember> members,
                             Reply* refusal) {
  if (request.body().empty()) {
    return Json::object();
  }
  Json body = Json::parse(request.body(), nullptr, false);
  if (!body.is_object()) {
    *refusal = BadRequestReply("the body is no JSON object");
    return std::nullopt;
  }
  if (const std::string fault = FaultOf(body, members); !fault.empty()) {
    *refusal = BadRequestReply(fault);
    return std::nullopt;
  }
  return body;
}

Reply BadRequestReply(const std::string& reason) {
  return ErrorReply(MHD_HTTP_BAD_REQUEST, reason);
}

}  // namespace kiohost
