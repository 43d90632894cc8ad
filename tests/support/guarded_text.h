// A text that may be read only within its own bytes, and not written at all.
#ifndef KIO_TESTS_SUPPORT_GUARDED_TEXT_H
#define KIO_TESTS_SUPPORT_GUARDED_TEXT_H

#include <cstddef>
#include <string>

namespace kio::test {

// Holds `text` in read-only memory whose last byte is the text's terminator; the page behind it
// cannot be accessed. Any write, and any read past the terminator, ends the process.
class GuardedText {
 public:
  explicit GuardedText(const std::string& text);
  ~GuardedText();
  GuardedText(const GuardedText&) = delete;
  GuardedText& operator=(const GuardedText&) = delete;

  [[nodiscard]] char* get() const { return text_; }

 private:
  char* pages_;
  std::size_t size_;
  char* text_;
};

}  // namespace kio::test

#endif
