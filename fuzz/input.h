// Taking an input apart, and memory in which a read or write beyond the end is noticed.
#ifndef KIO_FUZZ_INPUT_H
#define KIO_FUZZ_INPUT_H

#include <cstddef>
#include <cstdint>
#include <string>

// The entry of every target, as fuzzing engines call it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace kio::fuzz {

// A writable text. Its terminator is the last byte before a page that cannot be accessed, so that
// an access beyond it is noticed without a sanitizer too.
class GuardedText {
 public:
  explicit GuardedText(const std::string& text);
  ~GuardedText();
  GuardedText(const GuardedText&) = delete;
  GuardedText& operator=(const GuardedText&) = delete;

  [[nodiscard]] char* get() const { return text_; }

 private:
  char* memory_;
  std::size_t size_;
  char* text_;
};

// A buffer of `size` bytes, guarded in the same way.
class GuardedBuffer {
 public:
  explicit GuardedBuffer(std::size_t size) : text_(std::string(size - 1, '\xA5')) {}
  [[nodiscard]] char* get() const { return text_.get(); }

 private:
  GuardedText text_;
};

// Takes lines and numbers from the front of an input. Once it is used up, lines are empty and
// numbers 0.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  // The next line, without its end, up to a NUL.
  std::string Line();
  // The next line as a number.
  int Number();
  // All that is left, up to a NUL.
  std::string Rest();

 private:
  std::string rest_;
};

// Ends the program with a message, as a finding.
[[noreturn]] void Report(const char* finding);

}  // namespace kio::fuzz

#endif
