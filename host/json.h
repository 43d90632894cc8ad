// JSON texts.
#ifndef HOST_JSON_H
#define HOST_JSON_H

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace kiohost {

// Members keep the order in which they were added.
using Json = nlohmann::ordered_json;

// A document, over several lines. Bytes that are no UTF-8 become U+FFFD.
std::string JsonText(const Json& value);

// A document on one line, without its end.
std::string JsonLine(const Json& value);

// A text as a JSON string, with its quotes, in the same way.
std::string JsonString(std::string_view text);

}  // namespace kiohost

#endif  // HOST_JSON_H
