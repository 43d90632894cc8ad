#include "memory_store.h"

#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "kioapp/store.h"
#include "testing/sample_device.h"

namespace kio::bench {
namespace {

using Kind = StoreCall::Kind;

Commands g_commands = Commands::kIgnored;
CommandTime g_command_time;

// A path as a host resolves it: names of nodes compare without regard to case.
class Path {
 public:
  Path(const char* format, va_list arguments) {
    const int size = std::vsnprintf(text_, sizeof(text_), format, arguments);
    size_ = std::min(static_cast<std::size_t>(std::max(size, 0)), sizeof(text_) - 1);
    for (std::size_t i = 0; i < size_; ++i) {
      const char character = text_[i];
      text_[i] = character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                                      : character;
    }
  }
  [[nodiscard]] std::string_view view() const { return {text_, size_}; }

 private:
  char text_[256];
  std::size_t size_;
};

void Note(Kind kind, const Path& path, const char* text = "", int number = 0) {
  MemoryStore& store = MemoryStore::Get();
  if (store.recording) {
    store.calls.push_back({kind, std::string(path.view()), text, number});
  }
}

int ParseInt(const char* text) { return static_cast<int>(std::strtol(text, nullptr, 10)); }

void Write(const Path& path, std::string_view value) {
  auto& nodes = MemoryStore::Get().nodes;
  const auto node = nodes.find(path.view());
  if (node != nodes.end()) {
    node->second = value;
  } else {
    nodes.emplace(path.view(), value);
  }
}

// The highest number of the instances of a node; -1 when there is none.
int CountInstances(std::string_view path) {
  std::string stem(path.substr(0, path.size() - 1));
  stem += ':';
  int highest = -1;
  for (const auto& [node, value] : MemoryStore::Get().nodes) {
    if (node.starts_with(stem)) {
      highest = std::max(highest, ParseInt(node.c_str() + stem.size()));
    }
  }
  return highest;
}

int ReadInt(const Path& path) {
  if (!path.view().empty() && path.view().back() == '#') {
    return CountInstances(path.view());
  }
  const auto& nodes = MemoryStore::Get().nodes;
  const auto node = nodes.find(path.view());
  return node == nodes.end() ? -1 : ParseInt(node->second.c_str());
}

void Delete(const Path& path) {
  const std::size_t size = path.view().size();
  std::erase_if(MemoryStore::Get().nodes, [&](const auto& node) {
    return node.first.starts_with(path.view()) &&
           (node.first.size() == size || node.first[size] == '/');
  });
}

}  // namespace

MemoryStore& MemoryStore::Get() {
  static MemoryStore store;
  return store;
}

void StoreFactoryDevice() {
  MemoryStore& store = MemoryStore::Get();
  store.nodes.clear();
  for (int i = 0; i < kSampleNodeCount; ++i) {
    if (kSampleNodes[i].factory != nullptr) {
      store.nodes[kSampleNodes[i].path] = kSampleNodes[i].factory;
    }
  }
}

void Replay(const std::vector<StoreCall>& calls) {
  char text[4096];
  for (const StoreCall& call : calls) {
    switch (call.kind) {
      case Kind::kGetText:
        text[0] = '\0';
        xget_str(text, "%s", call.path.c_str());
        break;
      case Kind::kSetText:
        xset_str(call.text.c_str(), "%s", call.path.c_str());
        break;
      case Kind::kGetInt:
        xget_int("%s", call.path.c_str());
        break;
      case Kind::kSetInt:
        xset_int(call.number, "%s", call.path.c_str());
        break;
      case Kind::kDelete:
        xdel("%s", call.path.c_str());
        break;
    }
  }
}

void SetCommands(Commands commands) { g_commands = commands; }

CommandTime TakeCommandTime() {
  const CommandTime time = g_command_time;
  g_command_time = {};
  return time;
}

}  // namespace kio::bench

using kio::bench::Commands;
using kio::bench::MemoryStore;
using kio::bench::Path;
using Kind = kio::bench::StoreCall::Kind;

extern "C" {

int xget_str(char* dst, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const Path path(format, arguments);
  va_end(arguments);
  kio::bench::Note(Kind::kGetText, path);
  const auto& nodes = MemoryStore::Get().nodes;
  const auto node = nodes.find(path.view());
  if (node == nodes.end()) {
    dst[0] = '\0';
    return -1;
  }
  std::memcpy(dst, node->second.c_str(), node->second.size() + 1);
  return 0;
}

int xset_str(const char* value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const Path path(format, arguments);
  va_end(arguments);
  kio::bench::Note(Kind::kSetText, path, value);
  kio::bench::Write(path, value);
  return 0;
}

int xget_int(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const Path path(format, arguments);
  va_end(arguments);
  kio::bench::Note(Kind::kGetInt, path);
  return kio::bench::ReadInt(path);
}

int xset_int(int value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const Path path(format, arguments);
  va_end(arguments);
  kio::bench::Note(Kind::kSetInt, path, "", value);
  char text[16];
  std::snprintf(text, sizeof(text), "%d", value);
  kio::bench::Write(path, text);
  return 0;
}

int xdel(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const Path path(format, arguments);
  va_end(arguments);
  kio::bench::Note(Kind::kDelete, path);
  kio::bench::Delete(path);
  return 0;
}

// Replaces that of libc for the whole program, the library included.
int system(const char* command) {
  using Function = int (*)(const char*);
  static const auto libc_system = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "system"));
  if (kio::bench::g_commands == Commands::kIgnored) {
    return 0;
  }
  const auto begin = std::chrono::steady_clock::now();
  const int status = libc_system(command);
  if (kio::bench::g_commands == Commands::kTimed) {
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    kio::bench::g_command_time.seconds += time.count();
    ++kio::bench::g_command_time.count;
  }
  return status;
}

}  // extern "C"
