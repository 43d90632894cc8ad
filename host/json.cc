#include "json.h"

#include <cstddef>
#include <cstdio>

#include "utf8.h"

namespace kiohost {

std::string JsonString(std::string_view text) {
  constexpr unsigned char kFirstMultiByte = 0x80;
  std::string json = "\"";
  while (!text.empty()) {
    const auto byte = static_cast<unsigned char>(text[0]);
    size_t length = 1;
    if (byte == '"' || byte == '\\') {
      json += '\\';
      json += text[0];
    } else if (byte < ' ') {
      char escape[sizeof "\\uHHHH"];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned int>(byte));
      json += escape;
    } else if (byte < kFirstMultiByte) {
      json += text[0];
    } else {
      length = MultiByteLength(text);
      json += length == 0 ? std::string_view("\\ufffd") : text.substr(0, length);
      length = length == 0 ? 1 : length;
    }
    text.remove_prefix(length);
  }
  return json + '"';
}

}  // namespace kiohost
