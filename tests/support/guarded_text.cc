#include "support/guarded_text.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace kio::test {

GuardedText::GuardedText(const std::string& text) : pages_(nullptr), size_(0), text_(nullptr) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t used = (text.size() + page) / page * page;
  size_ = used + page;
  void* memory = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    std::abort();
  }
  pages_ = static_cast<char*>(memory);
  text_ = pages_ + used - text.size() - 1;
  std::memcpy(text_, text.c_str(), text.size() + 1);
  if (mprotect(pages_, used, PROT_READ) != 0 || mprotect(pages_ + used, page, PROT_NONE) != 0) {
    std::abort();
  }
}

GuardedText::~GuardedText() { munmap(pages_, size_); }

}  // namespace kio::test
