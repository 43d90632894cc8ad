// Texts and buffers given to the library, each with memory behind it that cannot be accessed.
#ifndef KIO_DIFFERENTIAL_BUFFERS_H
#define KIO_DIFFERENTIAL_BUFFERS_H

#include <cstddef>
#include <string>
#include <string_view>

namespace kio::differential {

// The memory of one text or buffer. It is good until ReleaseBuffers, which the next scenario calls.
class Buffer {
 public:
  // A writable text whose terminator is the last byte before the guard.
  explicit Buffer(std::string_view text);
  // Room for `size` bytes, none of them 0.
  explicit Buffer(std::size_t size);

  [[nodiscard]] char* get() const { return data_; }
  [[nodiscard]] std::size_t size() const { return size_; }
  // All bytes: what the library wrote, and what it left.
  [[nodiscard]] std::string_view bytes() const { return {data_, size_}; }
  // All bytes but the last, which was the terminator of the text at first.
  [[nodiscard]] std::string_view text() const { return {data_, size_ - 1}; }

 private:
  char* data_;
  std::size_t size_;
};

// Gives the memory of all buffers to new ones.
void ReleaseBuffers();

}  // namespace kio::differential

#endif
