#include "flat_host.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kioapp/store.h"
#include "sample_device.h"

namespace kio::test {
namespace {

struct Node {
  char path[96];
  char value[160];
};

constexpr int kCapacity = 512;
Node g_nodes[kCapacity];
int g_count = 0;
int g_writes = 0;

void Copy(char* dst, std::size_t size, const char* text) {
  const std::size_t length = strnlen(text, size);
  if (length == size) {
    std::abort();
  }
  std::memcpy(dst, text, length + 1);
}

// The library gives every path as a text of its own.
const char* PathOf(const char* format, va_list arguments) {
  if (std::strcmp(format, "%s") != 0) {
    std::abort();
  }
  return va_arg(arguments, const char*);
}

Node* Find(const char* path) {
  for (Node& node : g_nodes) {
    if (&node == g_nodes + g_count) {
      break;
    }
    if (std::strcmp(node.path, path) == 0) {
      return &node;
    }
  }
  return nullptr;
}

void Write(const char* path, const char* value) {
  Node* node = Find(path);
  if (node == nullptr) {
    if (g_count == kCapacity) {
      std::abort();
    }
    node = &g_nodes[g_count++];
    Copy(node->path, sizeof(node->path), path);
  }
  Copy(node->value, sizeof(node->value), value);
}

void WriteNumber(const char* path, int value) {
  char digits[16];
  char* out = digits + sizeof(digits);
  *--out = '\0';
  unsigned rest = value < 0 ? 0U - static_cast<unsigned>(value) : static_cast<unsigned>(value);
  do {
    *--out = static_cast<char>('0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  if (value < 0) {
    *--out = '-';
  }
  Write(path, out);
}

}  // namespace

void ResetFlatHost() {
  g_count = 0;
  for (const bench::DeviceNode& node : bench::FactoryNodes()) {
    Write(node.path, node.value);
  }
  g_writes = 0;
}

int FlatHostWrites() { return g_writes; }

}  // namespace kio::test

using kio::test::g_writes;

extern "C" {

int xget_str(char* dst, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const kio::test::Node* const node = kio::test::Find(kio::test::PathOf(format, arguments));
  va_end(arguments);
  if (node != nullptr) {
    std::memcpy(dst, node->value, std::strlen(node->value) + 1);
  }
  return 0;
}

int xset_str(const char* value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  kio::test::Write(kio::test::PathOf(format, arguments), value);
  va_end(arguments);
  ++g_writes;
  return 0;
}

// No node of the sample device has instances that are counted.
int xget_int(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const kio::test::Node* const node = kio::test::Find(kio::test::PathOf(format, arguments));
  va_end(arguments);
  return node == nullptr ? -1 : static_cast<int>(std::strtol(node->value, nullptr, 10));
}

int xset_int(int value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  kio::test::WriteNumber(kio::test::PathOf(format, arguments), value);
  va_end(arguments);
  ++g_writes;
  return 0;
}

int xdel(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  kio::test::Node* const node = kio::test::Find(kio::test::PathOf(format, arguments));
  va_end(arguments);
  if (node != nullptr) {
    node->path[0] = '\0';
  }
  return 0;
}

}  // extern "C"
