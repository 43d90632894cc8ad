#include "input.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace kio::fuzz {

namespace {

#if defined(__has_feature)
#if __has_feature(memory_sanitizer)
#define KIO_FUZZ_HEAP_IS_GUARDED
#endif
#if __has_feature(address_sanitizer)
#define KIO_FUZZ_HEAP_IS_GUARDED
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) && !defined(KIO_FUZZ_HEAP_IS_GUARDED)
#define KIO_FUZZ_HEAP_IS_GUARDED
#endif
#ifdef KIO_FUZZ_HEAP_IS_GUARDED
constexpr bool kHeapIsGuarded = true;
#else
constexpr bool kHeapIsGuarded = false;
#endif

// What stands before the first NUL.
std::string_view UpToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

}  // namespace

GuardedText::GuardedText(std::string_view text) {
  if (kHeapIsGuarded) {
    memory_ = static_cast<char*>(std::malloc(text.size() + 1));
    text_ = memory_;
  } else {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t used = (text.size() + page) / page * page;
    size_ = used + page;
    void* const memory =
        mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
      Report("no memory for an input");
    }
    memory_ = static_cast<char*>(memory);
    if (mprotect(memory_ + used, page, PROT_NONE) != 0) {
      Report("no guard behind an input");
    }
    text_ = memory_ + used - text.size() - 1;
  }
  text.copy(text_, text.size());
  text_[text.size()] = '\0';
}

GuardedText::~GuardedText() {
  if (kHeapIsGuarded) {
    std::free(memory_);
  } else {
    munmap(memory_, size_);
  }
}

std::string Input::Line() {
  const std::size_t end = rest_.find('\n');
  const std::string_view line = rest_.substr(0, end);
  rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
  return std::string(UpToNul(line));
}

int Input::Number() { return static_cast<int>(std::strtol(Line().c_str(), nullptr, 10)); }

std::string Input::Rest() { return std::string(UpToNul(std::exchange(rest_, {}))); }

void Report(const char* finding) {
  std::fprintf(stderr, "finding: %s\n", finding);
  std::abort();
}

}  // namespace kio::fuzz
