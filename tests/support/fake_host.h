// A host for the tests: the configuration store in memory (testing/memory_store.h) with a record of
// its calls, and the system calls through which the library acts on the machine, recorded and
// replaced.
#ifndef KIO_TESTS_SUPPORT_FAKE_HOST_H
#define KIO_TESTS_SUPPORT_FAKE_HOST_H

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kio::test {

// One call of a store function.
struct StoreCall {
  enum class Kind { kGetText, kSetText, kGetInt, kSetInt, kDelete };
  Kind kind;
  std::string path;   // as resolved from format and arguments
  std::string value;  // what was written, or what a read returned ("-1" for an absent integer)

  bool operator==(const StoreCall&) const = default;
};

// The five store functions, `system` and `sysinfo` of the test program act on the one instance.
class FakeHost {
 public:
  static FakeHost& Get();

  // Empties everything and restores the defaults below.
  void Reset();

  // The store, by full path; names compare without regard to case.
  void Set(const std::string& path, const std::string& value);
  void Set(const std::string& path, int value) { Set(path, std::to_string(value)); }
  // Null when the node is absent.
  [[nodiscard]] std::optional<std::string> Text(const std::string& path) const;
  void Delete(const std::string& path);  // with its subtree
  // Every node, by lower-case path.
  [[nodiscard]] std::map<std::string, std::string> nodes() const;

  // Store calls in order, since Reset or ClearCalls.
  [[nodiscard]] const std::vector<StoreCall>& calls() const { return calls_; }
  // The calls that change the store, in order.
  [[nodiscard]] std::vector<StoreCall> Writes() const;
  void ClearCalls() { calls_.clear(); }

  // Commands given to `system`, in order.
  [[nodiscard]] const std::vector<std::string>& commands() const { return commands_; }
  void ClearCommands() { commands_.clear(); }

  // Whether `system` runs the command with the real shell; otherwise it returns `system_status`.
  bool run_commands = false;
  int system_status = 0;
  // When set, called for each command before it is run.
  std::function<void(const std::string&)> on_command;
  // The uptime that `sysinfo` gives, in seconds; negative for the machine's own.
  long uptime = 1000;
  // When set, every xget_str writes this text, whatever the path.
  std::optional<std::string> text_for_every_node;
  // Whether xget_str leaves the terminator out, as strncpy does in a buffer that the text fills.
  bool leaves_out_terminator = false;
  // Whether xget_str leaves its buffer untouched for an absent node, or empties it.
  bool absent_leaves_buffer = true;

  // For the functions that the library calls.
  void NoteCall(StoreCall::Kind kind, const char* path, const char* text);
  int RunCommand(const char* command);

 private:
  std::vector<StoreCall> calls_;
  std::vector<std::string> commands_;
};

// A temporary directory. Its destructor removes it with its contents, or else the exit of the
// process that made it. A forked copy of that process never removes it.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string File(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

// Contents of a file; empty when it cannot be read.
std::string ReadFile(const std::string& path);
bool FileExists(const std::string& path);

// The library's log. The library chooses the file once in the life of a process: the first call of
// any of these points it into a directory of the test program's own.
namespace log_file {
// Sets the level and empties the log.
void Start(int level);
// Everything logged since Start, as in the file.
std::string Contents();
// The same as one string per line, without the uptime prefix "%ld: " that begins each line.
std::vector<std::string> Lines();
}  // namespace log_file

}  // namespace kio::test

#endif
