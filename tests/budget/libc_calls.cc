#include "libc_calls.h"

#include <dlfcn.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// The names under which glibc offers its allocator to programs that stand before it.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace kio::test {
namespace {

std::atomic<long> g_heap_calls{0};
int g_commands = 0;
bool g_libc_formatting = true;

}  // namespace

long HeapCalls() { return g_heap_calls; }

int CommandCount() { return g_commands; }

void UseLibcFormatting(bool use) { g_libc_formatting = use; }

}  // namespace kio::test

using kio::test::g_heap_calls;

extern "C" {

void* malloc(size_t size) {
  ++g_heap_calls;
  return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  ++g_heap_calls;
  return __libc_calloc(count, size);
}

void* realloc(void* memory, size_t size) {
  ++g_heap_calls;
  return __libc_realloc(memory, size);
}

void* aligned_alloc(size_t alignment, size_t size) {
  ++g_heap_calls;
  return __libc_memalign(alignment, size);
}

int posix_memalign(void** out, size_t alignment, size_t size) {
  ++g_heap_calls;
  *out = __libc_memalign(alignment, size);
  return *out == nullptr ? ENOMEM : 0;
}

int system(const char* /*command*/) {
  ++kio::test::g_commands;
  return 0;
}

int vsnprintf(char* dst, size_t size, const char* format, va_list arguments) {
  using Function = int (*)(char*, size_t, const char*, va_list);
  static const auto libc_vsnprintf = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "vsnprintf"));
  if (kio::test::g_libc_formatting) {
    return libc_vsnprintf(dst, size, format, arguments);
  }
  constexpr char kText[] = "text\n";
  std::memcpy(dst, kText, size < sizeof(kText) ? size : sizeof(kText));
  return static_cast<int>(sizeof(kText)) - 1;
}

}  // extern "C"
