// The store functions, as the linker gives them to the library.
#include <cstdarg>
#include <cstddef>
#include <string>

#include "explorer.h"
#include "kioapp/attributes.h"
#include "machine.h"

using kio::proof::Call;
using kio::proof::Machine;
using kio::proof::Reach;
using kio::proof::Way;

// The linker chooses these names.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {

KIOAPP_PRINTF(3, 0)
int __real_vsnprintf(char* text, std::size_t size, const char* format, va_list arguments);
int __real_xdel(const char* format, ...);
int __real_xget_int(const char* format, ...);
int __real_xget_str(char* text, const char* format, ...);
int __real_xset_int(int value, const char* format, ...);
int __real_xset_str(const char* value, const char* format, ...);

}  // extern "C"

namespace {

// What the library gives for the path. This is no call of its own.
KIOAPP_PRINTF(1, 0)
std::string PathOf(const char* format, va_list arguments) {
  char path[1024];
  __real_vsnprintf(path, sizeof(path), format, arguments);
  return path;
}

}  // namespace

extern "C" {

KIOAPP_PRINTF(1, 2) int __wrap_xdel(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = PathOf(format, arguments);
  va_end(arguments);
  Machine::Get().Note("xdel", path);
  return Reach(Call::kXdel, path) != nullptr ? -1 : __real_xdel("%s", path.c_str());
}

KIOAPP_PRINTF(1, 2) int __wrap_xget_int(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = PathOf(format, arguments);
  va_end(arguments);
  Machine::Get().Note("xget_int", path);
  return Reach(Call::kXgetInt, path) != nullptr ? -1 : __real_xget_int("%s", path.c_str());
}

KIOAPP_PRINTF(2, 3) int __wrap_xget_str(char* text, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = PathOf(format, arguments);
  va_end(arguments);
  Machine::Get().Note("xget_str", path);
  if (const Way* const way = Reach(Call::kXgetStr, path)) {
    if (way->how == Way::How::kEmptied) {
      text[0] = '\0';
    }
    return -1;
  }
  return __real_xget_str(text, "%s", path.c_str());
}

KIOAPP_PRINTF(2, 3) int __wrap_xset_int(int value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = PathOf(format, arguments);
  va_end(arguments);
  Machine::Get().Note("xset_int", path + " " + std::to_string(value));
  return Reach(Call::kXsetInt, path) != nullptr ? -1 : __real_xset_int(value, "%s", path.c_str());
}

KIOAPP_PRINTF(2, 3) int __wrap_xset_str(const char* value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = PathOf(format, arguments);
  va_end(arguments);
  Machine::Get().Note("xset_str", path + " " + value);
  return Reach(Call::kXsetStr, path) != nullptr ? -1 : __real_xset_str(value, "%s", path.c_str());
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
