// The host of the benchmarks: a configuration store in memory, and a `system` that the benchmarks
// control. An exchange is compared with its store calls, so the store keeps its nodes on the heap,
// as a router's does. That of testing/ takes no heap, and its calls cost a third less.
#ifndef KIO_BENCH_MEMORY_STORE_H
#define KIO_BENCH_MEMORY_STORE_H

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kio::bench {

// One call of a store function, its path resolved.
struct StoreCall {
  enum class Kind { kGetText, kSetText, kGetInt, kSetInt, kDelete };
  Kind kind;
  std::string path;
  std::string text;  // what kSetText wrote
  int number = 0;    // what kSetInt wrote
};

// Lets a table of texts be searched for a text view without copying it.
struct HashText {
  using is_transparent = void;  // NOLINT(readability-identifier-naming): the library's name
  std::size_t operator()(std::string_view text) const {
    return std::hash<std::string_view>()(text);
  }
};

// The five store functions of the program act on the one instance.
class MemoryStore {
 public:
  static MemoryStore& Get();

  // The texts of the nodes, by path in lower case.
  std::unordered_map<std::string, std::string, HashText, std::equal_to<>> nodes;
  // When set, every call is appended to `calls`.
  bool recording = false;
  std::vector<StoreCall> calls;
};

// Replaces all nodes of the store by those of the sample device in its factory state.
void StoreFactoryDevice();

// Makes the calls again through the five store functions.
void Replay(const std::vector<StoreCall>& calls);

// Whether the call changes the store.
inline bool IsWrite(const StoreCall& call) {
  return call.kind != StoreCall::Kind::kGetText && call.kind != StoreCall::Kind::kGetInt;
}

// What the program's `system` does.
enum class Commands {
  kIgnored,  // nothing
  kRun,      // what libc's does
  kTimed,    // the same, and adds up the time
};
void SetCommands(Commands commands);

// The timed commands since the last call of TakeCommandTime.
struct CommandTime {
  double seconds = 0;
  int count = 0;
};
CommandTime TakeCommandTime();

}  // namespace kio::bench

#endif
