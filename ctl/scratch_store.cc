#include "scratch_store.h"

#include <kioapp/store.h>

#include <algorithm>
#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kioctl {
namespace {

constexpr size_t kMostText = 4095;

std::string PathOf(const char* format, va_list arguments) {
  char path[256];
  std::vsnprintf(path, sizeof path, format, arguments);
  return LowerCase(path);
}

// The highest instance of a name.
int CountOf(const std::string& name) {
  int highest = -1;
  const std::string begin = name + ":";
  for (auto node = ScratchStore().lower_bound(begin);
       node != ScratchStore().end() && node->first.starts_with(begin); ++node) {
    highest = std::max(highest, NumberAt(node->first, begin.size()));
  }
  return highest;
}

}  // namespace

Nodes& ScratchStore() {
  static Nodes nodes;
  return nodes;
}

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

int NumberAt(const std::string& text, size_t at) {
  constexpr int kDecimal = 10;
  return static_cast<int>(std::strtol(text.c_str() + at, nullptr, kDecimal));
}

}  // namespace kioctl

extern "C" {

[[gnu::visibility("default")]] int xget_str(char* dst, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = kioctl::PathOf(format, arguments);
  va_end(arguments);
  const auto node = kioctl::ScratchStore().find(path);
  if (node == kioctl::ScratchStore().end()) {
    return -1;
  }
  const size_t length = std::min(node->second.size(), kioctl::kMostText);
  std::memcpy(dst, node->second.data(), length);
  dst[length] = '\0';
  return static_cast<int>(length);
}

[[gnu::visibility("default")]] int xset_str(const char* value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  kioctl::ScratchStore()[kioctl::PathOf(format, arguments)] = value;
  va_end(arguments);
  return 0;
}

[[gnu::visibility("default")]] int xget_int(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::string path = kioctl::PathOf(format, arguments);
  va_end(arguments);
  if (path.ends_with('#')) {
    path.pop_back();
    return kioctl::CountOf(path);
  }
  constexpr int kDecimal = 10;
  const auto node = kioctl::ScratchStore().find(path);
  return node == kioctl::ScratchStore().end()
             ? -1
             : static_cast<int>(std::strtol(node->second.c_str(), nullptr, kDecimal));
}

[[gnu::visibility("default")]] int xset_int(int value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  kioctl::ScratchStore()[kioctl::PathOf(format, arguments)] = std::to_string(value);
  va_end(arguments);
  return 0;
}

[[gnu::visibility("default")]] int xdel(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = kioctl::PathOf(format, arguments);
  va_end(arguments);
  std::erase_if(kioctl::ScratchStore(), [&path](const auto& node) {
    return node.first == path || node.first.starts_with(path + "/");
  });
  return 0;
}

// The library writes documents and runs scripts by the shell. Here nobody reads or needs them.
[[gnu::visibility("default")]] int system(const char* /*command*/) { return 0; }
}
