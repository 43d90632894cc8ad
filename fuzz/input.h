// Taking an input apart, and memory in which a read or write beyond the end is noticed.
#ifndef KIO_FUZZ_INPUT_H
#define KIO_FUZZ_INPUT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

// The entry of every target, as fuzzing engines call it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace kio::fuzz {

// A writable text, in memory that is exactly as long. The address and the memory sanitizer tell of
// an access beyond it. Without them its terminator is the last byte before a page that cannot be
// accessed.
class GuardedText {
 public:
  explicit GuardedText(std::string_view text);
  ~GuardedText();
  GuardedText(const GuardedText&) = delete;
  GuardedText& operator=(const GuardedText&) = delete;

  [[nodiscard]] char* get() const { return text_; }

 private:
  char* memory_ = nullptr;
  std::size_t size_ = 0;  // of the pages; 0 without a guard
  char* text_ = nullptr;
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

  // The next byte, which stays; 0 at the end.
  [[nodiscard]] char front() const { return rest_.empty() ? '\0' : rest_.front(); }

  // The next line, without its end, up to a NUL.
  std::string Line();
  // The next line as a number.
  int Number();
  // All that is left, up to a NUL.
  std::string Rest();
  // The same with all bytes.
  std::string_view Bytes() { return std::exchange(rest_, {}); }

 private:
  std::string_view rest_;
};

// Ends the program with a message, as a finding.
[[noreturn]] void Report(const char* finding);

}  // namespace kio::fuzz

#endif
