#include "platform/text.h"

#include <charconv>

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

TextBuffer& TextBuffer::AppendNumber(long value) {
  char digits[24];
  const std::to_chars_result result = std::to_chars(digits, digits + sizeof(digits), value);
  return Append(TextView(digits, static_cast<std::size_t>(result.ptr - digits)));
}

}  // namespace kio::platform
