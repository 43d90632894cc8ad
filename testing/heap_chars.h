// An array of characters at the end of an allocation of its own: the address sanitizer tells of
// what is read or written beyond it, in a program that was compiled without it, too.
#ifndef TESTING_HEAP_CHARS_H
#define TESTING_HEAP_CHARS_H

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>

namespace kio {

template <std::size_t kSize, typename Char = char>
class HeapChars {
 public:
  using Array = Char[kSize];

  // All zeros.
  HeapChars() : chars_(new Char[kSize]()) {}

  // The text with its terminator, then zeros.
  template <std::size_t kTextSize>
  explicit HeapChars(const char (&text)[kTextSize]) : HeapChars() {
    static_assert(kTextSize <= kSize);
    std::copy_n(text, kTextSize, chars_.get());
  }

  // NOLINTNEXTLINE(google-explicit-constructor): it stands where an array would
  operator Array&() { return array(); }
  // NOLINTNEXTLINE(google-explicit-constructor)
  operator const Array&() const { return reinterpret_cast<const Array&>(*chars_.get()); }

  // For a function that takes the size of the array from its type.
  Array& array() { return reinterpret_cast<Array&>(*chars_.get()); }
  static constexpr std::size_t size() { return kSize; }
  Char* begin() { return chars_.get(); }
  Char* end() { return chars_.get() + kSize; }

  friend bool operator==(const HeapChars& chars, const std::string& text) {
    return chars.chars_.get() == text;
  }

 private:
  std::unique_ptr<Char[]> chars_;
};

template <std::size_t kTextSize>
HeapChars(const char (&text)[kTextSize]) -> HeapChars<kTextSize>;

}  // namespace kio

#endif  // TESTING_HEAP_CHARS_H
