#include "platform/text.h"

#include <charconv>

namespace kio::platform {

TextBuffer& TextBuffer::AppendNumber(long value) {
  char digits[24];
  const std::to_chars_result result = std::to_chars(digits, digits + sizeof(digits), value);
  return Append(TextView(digits, static_cast<std::size_t>(result.ptr - digits)));
}

}  // namespace kio::platform
