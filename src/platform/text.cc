#include "platform/text.h"

#include <charconv>
#include <climits>

namespace kio::platform {

TextBuffer& TextBuffer::Append(TextView text) {
  const std::size_t room = room_ - size_;
  const std::size_t count = text.size() < room ? text.size() : room;
  if (count > 0) {  // an empty view may point nowhere
    std::memcpy(data_ + size_, text.data(), count);
  }
  size_ += count;
  data_[size_] = '\0';
  return *this;
}

int ParseInt(const char* text) {
  while (*text == ' ' || (*text >= '\t' && *text <= '\r')) {
    ++text;
  }
  const bool negative = *text == '-';
  if (negative || *text == '+') {
    ++text;
  }
  // The magnitude of the smallest number is one more than that of the largest.
  const unsigned limit = static_cast<unsigned>(INT_MAX) + (negative ? 1U : 0U);
  unsigned value = 0;
  for (; *text >= '0' && *text <= '9'; ++text) {
    const auto digit = static_cast<unsigned>(*text - '0');
    value = value > (limit - digit) / 10 ? limit : value * 10 + digit;
  }
  return static_cast<int>(negative ? 0U - value : value);
}

TextBuffer& TextBuffer::AppendNumber(long value) {
  char digits[24];
  const std::to_chars_result result = std::to_chars(digits, digits + sizeof(digits), value);
  return Append(TextView(digits, static_cast<std::size_t>(result.ptr - digits)));
}

}  // namespace kio::platform
