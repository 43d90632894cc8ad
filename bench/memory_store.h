// The host of the benchmarks: an ordinary configuration store in memory, and `system` in three
// manners. It is not the store of testing/: what an exchange takes is compared with the calls of a
// store that keeps its nodes on the heap, as a router's does, and the other is a third cheaper.
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

// Lets a table of texts be asked without a copy of what is looked for.
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

  // By their paths in lower case.
  std::unordered_map<std::string, std::string, HashText, std::equal_to<>> nodes;
  // When set, every call is appended to `calls`.
  bool recording = false;
  std::vector<StoreCall> calls;
};

// Puts the nodes of the sample device, as from the factory, into the store, in place of all that it
// holds.
void StoreFactoryDevice();

// Makes the same calls again through the five functions.
void Replay(const std::vector<StoreCall>& calls);

// Whether the call changes the store.
inline bool IsWrite(const StoreCall& call) {
  return call.kind != StoreCall::Kind::kGetText && call.kind != StoreCall::Kind::kGetInt;
}

// What the program's `system` does.
enum class Commands {
  kIgnored,  // nothing
  kRun,      // what libc's does
  kTimed,    // the same, adding up the time that it takes
};
void SetCommands(Commands commands);

// Seconds that timed commands took since the last call, and their number.
struct CommandTime {
  double seconds = 0;
  int count = 0;
};
CommandTime TakeCommandTime();

}  // namespace kio::bench

#endif
