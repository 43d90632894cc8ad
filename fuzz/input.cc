#include "input.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kio::fuzz {

GuardedText::GuardedText(const std::string& text) : memory_(nullptr), size_(0), text_(nullptr) {
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
  std::memcpy(text_, text.c_str(), text.size() + 1);
}

GuardedText::~GuardedText() { munmap(memory_, size_); }

std::string Input::Line() {
  const std::size_t end = rest_.find('\n');
  std::string line = rest_.substr(0, end);
  rest_.erase(0, end == std::string::npos ? end : end + 1);
  return line.c_str();
}

int Input::Number() { return static_cast<int>(std::strtol(Line().c_str(), nullptr, 10)); }

std::string Input::Rest() {
  std::string rest = rest_.c_str();
  rest_.clear();
  return rest;
}

void Report(const char* finding) {
  std::fprintf(stderr, "finding: %s\n", finding);
  std::abort();
}

}  // namespace kio::fuzz
