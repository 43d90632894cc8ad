// What several readers of texts need.
#ifndef HOST_TEXT_H
#define HOST_TEXT_H

#include <cstddef>
#include <string_view>

namespace kiohost {

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Without the blanks at its ends. The end of a line may have kept a carriage return.
constexpr std::string_view Trim(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

}  // namespace kiohost

#endif  // HOST_TEXT_H
