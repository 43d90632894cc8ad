#include "support/fake_host.h"

#include <spawn.h>
#include <sys/sysinfo.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "kioapp/kioapp.h"
#include "testing/memory_store.h"
#include "testing/temporary_root.h"

namespace kio::test {
namespace {

// Notes a call, and hands the host's settings for it to the store.
void Watch(StoreFunction function, const char* path, const char* text) {
  FakeHost& host = FakeHost::Get();
  g_store_behaviour.text_for_every_node =
      host.text_for_every_node.has_value() ? host.text_for_every_node->c_str() : nullptr;
  g_store_behaviour.leaves_out_terminator = host.leaves_out_terminator ? 1 : 0;
  g_store_behaviour.absent_leaves_buffer = host.absent_leaves_buffer ? 1 : 0;
  g_store_behaviour.absent_result = -1;
  host.NoteCall(static_cast<StoreCall::Kind>(function), path, text);
}

int ToInt(const char* text) { return static_cast<int>(std::strtol(text, nullptr, 10)); }

// Set before main, so that no call is missed.
[[maybe_unused]] const bool kIsWatching = [] {
  g_store_behaviour.watch = Watch;
  return true;
}();

}  // namespace

FakeHost& FakeHost::Get() {
  static FakeHost host;
  return host;
}

void FakeHost::Reset() {
  *this = FakeHost();
  ClearStore();
}

void FakeHost::Set(const std::string& path, const std::string& value) {
  SetNode(path.c_str(), value.c_str());
}

std::optional<std::string> FakeHost::Text(const std::string& path) const {
  const char* const text = NodeText(path.c_str());
  return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

void FakeHost::Delete(const std::string& path) { DeleteNode(path.c_str()); }

std::map<std::string, std::string> FakeHost::nodes() const {
  std::map<std::string, std::string> nodes;
  VisitNodes(
      [](void* context, const char* path, const char* text) {
        (*static_cast<std::map<std::string, std::string>*>(context))[path] = text;
      },
      &nodes);
  return nodes;
}

std::vector<StoreCall> FakeHost::Writes() const {
  std::vector<StoreCall> writes;
  std::copy_if(calls_.begin(), calls_.end(), std::back_inserter(writes), [](const StoreCall& call) {
    return call.kind != StoreCall::Kind::kGetText && call.kind != StoreCall::Kind::kGetInt;
  });
  return writes;
}

void FakeHost::NoteCall(StoreCall::Kind kind, const char* path, const char* text) {
  std::string value = text;
  if (kind == StoreCall::Kind::kGetText) {
    value = text_for_every_node.has_value() ? *text_for_every_node : Text(path).value_or("");
  } else if (kind == StoreCall::Kind::kGetInt) {
    const std::optional<std::string> stored = Text(path);
    value = std::to_string(stored.has_value() ? ToInt(stored->c_str()) : -1);
  }
  calls_.push_back({kind, path, value});
}

int FakeHost::RunCommand(const char* command) {
  commands_.emplace_back(command);
  if (on_command) {
    on_command(command);
  }
  if (!run_commands) {
    return system_status;
  }
  // Not by fork: under the sanitizers it takes long, and longer the more tests have run.
  std::string words[] = {"sh", "-c", command};
  char* const arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
  pid_t child = 0;
  int status = -1;
  if (posix_spawn(&child, "/bin/sh", nullptr, nullptr, arguments, environ) == 0) {
    waitpid(child, &status, 0);
  }
  return status;
}

namespace {

// The directories of this process, and those that it has inherited by a fork. A process that exits
// within a test runs no destructor of their owners; then this removes those of the process itself.
class LiveDirectories {
 public:
  ~LiveDirectories() {
    while (!owners_.empty()) {
      Remove(owners_.begin()->first);
    }
  }
  void Add(const std::string& path) { owners_[path] = getpid(); }
  void Remove(const std::string& path) {
    std::error_code ignored;
    if (owners_[path] == getpid()) {
      std::filesystem::remove_all(path, ignored);
    }
    owners_.erase(path);
  }

 private:
  std::map<std::string, pid_t> owners_;
};

LiveDirectories& Live() {
  static LiveDirectories directories;
  return directories;
}

}  // namespace

TemporaryDirectory::TemporaryDirectory()
    : path_(std::string(TemporaryRoot()) + KIO_TEMPORARY_NAME) {
  if (mkdtemp(path_.data()) == nullptr) {
    std::perror(path_.c_str());
    std::abort();
  }
  Live().Add(path_);
}

TemporaryDirectory::~TemporaryDirectory() { Live().Remove(path_); }

std::string ReadFile(const std::string& path) {
  const std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

bool FileExists(const std::string& path) { return std::filesystem::exists(path); }

namespace log_file {
namespace {

const std::string& Path() {
  static const TemporaryDirectory directory;
  static const std::string path = directory.File("test_log.txt");
  return path;
}

}  // namespace

void Start(int level) {
  const std::string directory = std::filesystem::path(Path()).parent_path().string();
  std::snprintf(daemon_log_path, sizeof(daemon_log_path), "%s", directory.c_str());
  std::snprintf(daemon_log_header, sizeof(daemon_log_header), "test");
  daemon_log_level = level;
  daemon_log_file_size_k = 100000;
  std::filesystem::remove(Path());
}

std::string Contents() { return ReadFile(Path()); }

std::vector<std::string> Lines() {
  std::vector<std::string> lines;
  std::istringstream text(Contents());
  for (std::string line; std::getline(text, line);) {
    const std::size_t colon = line.find(": ");
    lines.push_back(colon == std::string::npos ? line : line.substr(colon + 2));
  }
  return lines;
}

}  // namespace log_file

}  // namespace kio::test

using kio::test::FakeHost;

extern "C" {

// These replace the functions of libc in the test program.
int system(const char* command) { return FakeHost::Get().RunCommand(command); }

int sysinfo(struct sysinfo* info) noexcept {
  *info = {};
  if (FakeHost::Get().uptime >= 0) {
    info->uptime = FakeHost::Get().uptime;
    return 0;
  }
  timespec now{};
  const int status = clock_gettime(CLOCK_BOOTTIME, &now);
  info->uptime = now.tv_sec;
  return status;
}

}  // extern "C"
