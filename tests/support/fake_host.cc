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
#include "support/temporary_root.h"

namespace kio::test {
namespace {

std::string Folded(std::string path) {
  std::transform(path.begin(), path.end(), path.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return path;
}

int ToInt(const char* text) { return static_cast<int>(std::strtol(text, nullptr, 10)); }

// Number of instances of the node named by a path that ends in '#'; -1 when there is none.
int CountInstances(const std::map<std::string, std::string>& nodes, const std::string& path) {
  const std::string stem = path.substr(0, path.size() - 1) + ":";
  int highest = -1;
  for (auto node = nodes.lower_bound(stem);
       node != nodes.end() && node->first.compare(0, stem.size(), stem) == 0; ++node) {
    highest = std::max(highest, ToInt(node->first.c_str() + stem.size()));
  }
  return highest;
}

KIOAPP_PRINTF(1, 0) std::string Format(const char* format, va_list arguments) {
  char text[1024];
  std::vsnprintf(text, sizeof(text), format, arguments);
  return text;
}

}  // namespace

FakeHost& FakeHost::Get() {
  static FakeHost host;
  return host;
}

void FakeHost::Reset() { *this = FakeHost(); }

void FakeHost::Set(const std::string& path, const std::string& value) {
  nodes_[Folded(path)] = value;
}

std::optional<std::string> FakeHost::Text(const std::string& path) const {
  const std::string folded = Folded(path);
  const auto node = nodes_.find(folded);
  if (node != nodes_.end()) {
    return node->second;
  }
  if (!folded.empty() && folded.back() == '#') {
    const int count = CountInstances(nodes_, folded);
    if (count > 0) {
      return std::to_string(count);
    }
  }
  return std::nullopt;
}

void FakeHost::Delete(const std::string& path) {
  const std::string folded = Folded(path);
  std::erase_if(nodes_, [&folded](const auto& node) {
    return node.first == folded || node.first.compare(0, folded.size() + 1, folded + "/") == 0;
  });
}

std::vector<StoreCall> FakeHost::Writes() const {
  std::vector<StoreCall> writes;
  std::copy_if(calls_.begin(), calls_.end(), std::back_inserter(writes), [](const StoreCall& call) {
    return call.kind != StoreCall::Kind::kGetText && call.kind != StoreCall::Kind::kGetInt;
  });
  return writes;
}

int FakeHost::ReadText(char* dst, const std::string& path) {
  const std::optional<std::string> text =
      text_for_every_node.has_value() ? text_for_every_node : Text(path);
  calls_.push_back({StoreCall::Kind::kGetText, path, text.value_or("")});
  if (text.has_value()) {
    std::memcpy(dst, text->c_str(), text->size() + (leaves_out_terminator ? 0 : 1));
  } else if (!absent_leaves_buffer) {
    dst[0] = '\0';
  }
  return text.has_value() ? 0 : -1;
}

int FakeHost::WriteText(const std::string& value, const std::string& path) {
  calls_.push_back({StoreCall::Kind::kSetText, path, value});
  Set(path, value);
  return 0;
}

int FakeHost::ReadInt(const std::string& path) {
  const std::optional<std::string> text = Text(path);
  const int value = text.has_value() ? ToInt(text->c_str()) : -1;
  calls_.push_back({StoreCall::Kind::kGetInt, path, std::to_string(value)});
  return value;
}

int FakeHost::WriteInt(int value, const std::string& path) {
  calls_.push_back({StoreCall::Kind::kSetInt, path, std::to_string(value)});
  Set(path, value);
  return 0;
}

int FakeHost::DeleteNode(const std::string& path) {
  calls_.push_back({StoreCall::Kind::kDelete, path, ""});
  Delete(path);
  return 0;
}

int FakeHost::RunCommand(const char* command) {
  commands_.emplace_back(command);
  if (on_command) {
    on_command(command);
  }
  if (!run_commands) {
    return system_status;
  }
  // A copy of a process under the sanitizers takes long, and longer the more tests it has run.
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

// The directories of this process and of those that it is a copy of. A process that ends within a
// test leaves the scopes of the directories' owners by no way of theirs.
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

int xget_str(char* dst, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = kio::test::Format(format, arguments);
  va_end(arguments);
  return FakeHost::Get().ReadText(dst, path);
}

int xset_str(const char* value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = kio::test::Format(format, arguments);
  va_end(arguments);
  return FakeHost::Get().WriteText(value, path);
}

int xget_int(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = kio::test::Format(format, arguments);
  va_end(arguments);
  return FakeHost::Get().ReadInt(path);
}

int xset_int(int value, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = kio::test::Format(format, arguments);
  va_end(arguments);
  return FakeHost::Get().WriteInt(value, path);
}

int xdel(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string path = kio::test::Format(format, arguments);
  va_end(arguments);
  return FakeHost::Get().DeleteNode(path);
}

// Replace libc's in the test program.
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
