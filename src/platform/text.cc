#include "platform/text.h"

#include <algorithm>
#include <climits>
#include <cstdint>

namespace kio::platform {

namespace {

#ifdef KIO_FOR_SIZE
void CopyCharacters(char* dst, TextView text) { std::memcpy(dst, text.data(), text.size()); }
#else

// Copies at least as many characters as a word has bytes, and at most twice as many: the first word
// and the last one, which may overlap.
template <typename Word>
void CopyEnds(char* dst, TextView text) {
  const std::size_t last = text.size() - sizeof(Word);
  Word begin = 0;
  Word end = 0;
  std::memcpy(&begin, text.data(), sizeof(Word));
  std::memcpy(&end, text.data() + last, sizeof(Word));
  std::memcpy(dst, &begin, sizeof(Word));
  std::memcpy(dst + last, &end, sizeof(Word));
}

// Most texts are so short that a call of memcpy would take longer.
void CopyCharacters(char* dst, TextView text) {
  const std::size_t size = text.size();
  if (size > 2 * sizeof(std::uint64_t)) {
    std::memcpy(dst, text.data(), size);
  } else if (size >= sizeof(std::uint64_t)) {
    CopyEnds<std::uint64_t>(dst, text);
  } else if (size >= sizeof(std::uint32_t)) {
    CopyEnds<std::uint32_t>(dst, text);
  } else {
    for (std::size_t i = 0; i < size; ++i) {
      dst[i] = text[i];
    }
  }
}

#endif

}  // namespace

TextBuffer& TextBuffer::Append(TextView text) {
  const std::size_t count = std::min(text.size(), room_ - size_);
  char* const end = data_ + size_;
  size_ += count;
  end[count] = '\0';
  CopyCharacters(end, TextView(text.data(), count));
  return *this;
}

#ifdef KIO_FOR_SIZE
TextBuffer& TextBuffer::Append(const char* text) {
  return Append(TextView(text, std::strlen(text)));
}

void CopyText(char* dst, std::size_t size, TextView text) {
  const std::size_t count = std::min(text.size(), size - 1);
  if (count > 0) {
    std::memmove(dst, text.data(), count);
  }
  dst[count] = '\0';
}

void CopyText(char* dst, std::size_t size, const char* text) {
  CopyText(dst, size, TextView(text, std::strlen(text)));
}
#endif

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
    // Quirk "numbers-are-clamped": to the range of int, on 32 and on 64 bits.
    value = value > (limit - digit) / 10 ? limit : value * 10 + digit;
  }
  return static_cast<int>(negative ? 0U - value : value);
}

char* WriteNumberBefore(char* end, long value) {
  // The magnitude of the smallest long does not fit in a long.
  unsigned long rest =
      value < 0 ? 0UL - static_cast<unsigned long>(value) : static_cast<unsigned long>(value);
  do {
    *--end = static_cast<char>('0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  if (value < 0) {
    *--end = '-';
  }
  return end;
}

TextBuffer& TextBuffer::AppendNumber(long value) {
  char digits[24];
  char* const end = digits + sizeof(digits);
  const char* const begin = WriteNumberBefore(end, value);
  return Append(TextView(begin, static_cast<std::size_t>(end - begin)));
}

}  // namespace kio::platform
