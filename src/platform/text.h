// Bounded text: a view to read from, a buffer to build in, and the small functions over both.
#ifndef KIO_PLATFORM_TEXT_H
#define KIO_PLATFORM_TEXT_H

#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "platform/inline.h"

namespace kio::platform {

// Characters that need not be terminated.
using TextView = std::string_view;

// The text, or an empty one for null.
constexpr TextView ViewOf(const char* text) { return text == nullptr ? TextView() : text; }

// The same with a terminator.
constexpr const char* TextOf(const char* text) { return text == nullptr ? "" : text; }

// Builds a text inside an array of the caller's. What does not fit is cut; the text is terminated
// at all times.
class TextBuffer {
 public:
  template <std::size_t N>
  explicit TextBuffer(char (&array)[N]) : TextBuffer(array, N) {}
  // `size` counts the terminator and is at least 1.
  TextBuffer(char* data, std::size_t size) : data_(data), room_(size - 1) { data_[0] = '\0'; }

  TextBuffer& Append(TextView text);
#ifdef KIO_FOR_SIZE
  // Out of line: many callers append a literal, and would measure it before the call.
  TextBuffer& Append(const char* text);
#else
  TextBuffer& Append(const char* text) { return Append(TextView(text)); }
#endif
  KIO_ONE_BODY TextBuffer& Append(char character) {
    if (size_ < room_) {
      data_[size_++] = character;
      data_[size_] = '\0';
    }
    return *this;
  }
  // Appends the number in decimal.
  TextBuffer& AppendNumber(long value);

  // Cuts the text back to `size` characters, if it is longer.
  void Truncate(std::size_t size) {
    if (size < size_) {
      size_ = size;
      data_[size_] = '\0';
    }
  }

  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] const char* c_str() const { return data_; }
  [[nodiscard]] TextView view() const { return {data_, size_}; }

 private:
  char* data_;
  std::size_t room_;
  std::size_t size_ = 0;
};

// Writes the number in decimal so that it ends before `end`, and returns where it begins. It takes
// at most 20 characters, that of an int at most 11.
char* WriteNumberBefore(char* end, long value);

// Copies `text` into an array of `size` bytes, cut to fit and terminated.
#ifdef KIO_FOR_SIZE
void CopyText(char* dst, std::size_t size, TextView text);
void CopyText(char* dst, std::size_t size, const char* text);
#else
inline void CopyText(char* dst, std::size_t size, TextView text) {
  const std::size_t count = text.size() < size - 1 ? text.size() : size - 1;
  if (count > 0) {
    std::memmove(dst, text.data(), count);
  }
  dst[count] = '\0';
}
inline void CopyText(char* dst, std::size_t size, const char* text) {
  CopyText(dst, size, TextView(text));
}
#endif
template <std::size_t N>
void CopyText(char (&dst)[N], TextView text) {
  CopyText(dst, N, text);
}
template <std::size_t N>
void CopyText(char (&dst)[N], const char* text) {
  CopyText(dst, N, text);
}

// The number nearest to `value` that an int holds.
constexpr int ClampToInt(long value) {
  if (value > INT_MAX) {
    return INT_MAX;
  }
  return value < INT_MIN ? INT_MIN : static_cast<int>(value);
}

// The number that `text` begins with; 0 when there is none. A number beyond the range of int gives
// the end of the range, whatever the size of long.
int ParseInt(const char* text);

// Reads a number at `*cursor` as scanf's "%d" does, blanks before it included, and moves the cursor
// behind it. Without a number both are left as they are.
inline bool ScanInt(const char** cursor, int* number) {
  char* end = nullptr;
  const long value = std::strtol(*cursor, &end, 10);
  if (end == *cursor) {
    return false;
  }
  *number = ClampToInt(value);
  *cursor = end;
  return true;
}

// ASCII alone, whatever the locale.
constexpr char ToLower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                              : character;
}

// Whether `text` begins with `prefix`, ignoring ASCII case. `text` may be shorter than `prefix`
// when it is terminated.
constexpr bool StartsWithFold(const char* text, TextView prefix) {
  for (const char expected : prefix) {
    if (ToLower(*text) != ToLower(expected)) {
      return false;
    }
    ++text;
  }
  return true;
}

}  // namespace kio::platform

#endif
