// Taking an input apart and placing it where a reading beyond its end is noticed.
#ifndef KIO_FUZZ_INPUT_H
#define KIO_FUZZ_INPUT_H

#include <cstddef>
#include <cstdint>
#include <string>

// The entry of every target, as fuzzing engines call it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace kio::fuzz {

// A writable text whose terminator is the last byte of its allocation: behind it lies memory that
// cannot be touched, with or without a sanitizer.
class EndText {
 public:
  explicit EndText(const std::string& text);
  ~EndText();
  EndText(const EndText&) = delete;
  EndText& operator=(const EndText&) = delete;

  [[nodiscard]] char* get() const { return text_; }

 private:
  char* memory_;
  std::size_t size_;
  char* text_;
};

// Room for `size` bytes, the last one the last of its allocation as above.
class EndBuffer {
 public:
  explicit EndBuffer(std::size_t size) : text_(std::string(size - 1, '\xA5')) {}
  [[nodiscard]] char* get() const { return text_.get(); }

 private:
  EndText text_;
};

// Reads lines and numbers off an input; behind its end there are empty ones.
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
