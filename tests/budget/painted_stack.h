// Measuring the stack that a function takes, and searching it afterwards.
#ifndef KIO_TESTS_BUDGET_PAINTED_STACK_H
#define KIO_TESTS_BUDGET_PAINTED_STACK_H

#include <sys/mman.h>
#include <ucontext.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace kio::test {

// A stack filled with a pattern, on which a function runs.
class PaintedStack {
 public:
  PaintedStack()
      : memory_(static_cast<unsigned char*>(
            mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {
    if (memory_ == MAP_FAILED) {
      std::abort();
    }
    std::memset(memory_, kPaint, kSize);
  }
  ~PaintedStack() { munmap(memory_, kSize); }
  PaintedStack(const PaintedStack&) = delete;
  PaintedStack& operator=(const PaintedStack&) = delete;

  // Runs the function. Returns the bytes from the top of the stack to the lowest one that it
  // changed.
  std::size_t Run(void (*function)()) {
    ucontext_t caller;
    ucontext_t callee;
    getcontext(&callee);
    callee.uc_stack.ss_sp = memory_;
    callee.uc_stack.ss_size = kSize;
    callee.uc_link = &caller;
    makecontext(&callee, function, 0);
    swapcontext(&caller, &callee);
    std::size_t untouched = 0;
    while (untouched < kSize && memory_[untouched] == kPaint) {
      ++untouched;
    }
    return kSize - untouched;
  }

  // Whether the bytes lie anywhere on the stack.
  [[nodiscard]] bool Holds(const void* bytes, std::size_t size) const {
    return memmem(memory_, kSize, bytes, size) != nullptr;
  }

 private:
  static constexpr std::size_t kSize = std::size_t{256} * 1024;
  static constexpr unsigned char kPaint = 0xA5;

  unsigned char* memory_;
};

}  // namespace kio::test

#endif
