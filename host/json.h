// JSON texts.
#ifndef HOST_JSON_H
#define HOST_JSON_H

#include <string>
#include <string_view>

namespace kiohost {

// `text` as a JSON string with its quotes. Bytes that are no well-formed UTF-8 become U+FFFD.
std::string JsonString(std::string_view text);

}  // namespace kiohost

#endif  // HOST_JSON_H
