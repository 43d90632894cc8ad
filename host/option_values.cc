#include "option_values.h"

#include <charconv>
#include <cstring>

namespace kiohost {

Status UsageError(const std::string& reason) {
  return {ExitCode::kUsage, reason + " (--help lists the options)"};
}

Status ParseNumber(const char* name, const char* text, int min, int max, int* number) {
  const char* end = text + std::strlen(text);
  const auto [stop, error] = std::from_chars(text, end, *number);
  if (error != std::errc() || stop != end || *number < min || *number > max) {
    return UsageError(std::string(name) + " takes a number from " + std::to_string(min) + " to " +
                      std::to_string(max) + ", not \"" + text + "\"");
  }
  return {};
}

}  // namespace kiohost
