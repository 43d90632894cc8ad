#include "buffers.h"

#include <sys/mman.h>

#include <cstdlib>
#include <cstring>
#include <vector>

namespace kio::differential {
namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kSmallRoom = 4 * kPage;
constexpr std::size_t kLargeRoom = 512 * kPage;

// Stretches of memory of one size, each with a guard behind it.
class Pool {
 public:
  explicit Pool(std::size_t room) : room_(room) {}

  // The end of a stretch.
  char* Take() {
    if (next_ == ends_.size()) {
      auto* const memory = static_cast<char*>(
          mmap(nullptr, room_ + kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
      if (memory == MAP_FAILED || mprotect(memory + room_, kPage, PROT_NONE) != 0) {
        std::abort();
      }
      ends_.push_back(memory + room_);
    }
    return ends_[next_++];
  }
  void Release() { next_ = 0; }

 private:
  std::size_t room_;
  std::size_t next_ = 0;
  std::vector<char*> ends_;
};

Pool g_small(kSmallRoom);
Pool g_large(kLargeRoom);

char* Take(std::size_t size) {
  if (size > kLargeRoom) {
    std::abort();
  }
  return (size <= kSmallRoom ? g_small : g_large).Take() - size;
}

}  // namespace

Buffer::Buffer(std::string_view text) : data_(Take(text.size() + 1)), size_(text.size() + 1) {
  std::memcpy(data_, text.data(), text.size());
  data_[text.size()] = '\0';
}

Buffer::Buffer(std::size_t size) : data_(Take(size)), size_(size) {
  std::memset(data_, 0xA5, size);
}

void ReleaseBuffers() {
  g_small.Release();
  g_large.Release();
}

}  // namespace kio::differential
