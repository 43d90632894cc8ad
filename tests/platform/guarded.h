// Memory that ends where the process may not go: one byte too far ends the test.
#ifndef KIO_TESTS_PLATFORM_GUARDED_H
#define KIO_TESTS_PLATFORM_GUARDED_H

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace kio::test {

class Guarded {
 public:
  // `size` bytes of `fill`.
  explicit Guarded(std::size_t size, char fill = '~') : size_(size) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t usable = (size / page + 1) * page;
    mapped_ = usable + page;
    void* const memory =
        mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
      Fail("no memory to guard");
    }
    base_ = static_cast<char*>(memory);
    if (mprotect(base_ + usable, page, PROT_NONE) != 0) {
      Fail("memory cannot be guarded");
    }
    data_ = base_ + usable - size;
    std::memset(data_, fill, size);
  }
  // The text and its terminator.
  explicit Guarded(std::string_view text) : Guarded(text.size() + 1) {
    std::memcpy(data_, text.data(), text.size());
    data_[text.size()] = '\0';
  }
  ~Guarded() { munmap(base_, mapped_); }
  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;

  [[nodiscard]] char* data() const { return data_; }
  // All bytes, terminators and what follows them included.
  [[nodiscard]] std::string Bytes() const { return {data_, size_}; }

 private:
  [[noreturn]] static void Fail(const char* what) {
    std::perror(what);
    std::abort();
  }

  std::size_t size_;
  std::size_t mapped_ = 0;
  char* base_ = nullptr;
  char* data_ = nullptr;
};

}  // namespace kio::test

#endif
