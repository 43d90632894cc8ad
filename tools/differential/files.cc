#include "files.h"

#include <fcntl.h>
#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <string>

#include "machine.h"
#include "transcript.h"

namespace kio::differential {
namespace {

constexpr int kFirstDescriptor = 1000;
// A larger mapping is refused.
constexpr std::size_t kLargestMapping = 1 << 20;

struct OpenFile {
  std::string path;
  int flags = 0;
  unsigned mode = 0;
  std::size_t position = 0;
  std::string written = {};
};

std::map<int, OpenFile> g_open_files;
int g_calls_until_interruption = 0;

File* Find(std::string_view path) {
  Machine& machine = Machine::Get();
  if (const auto file = machine.files.find(path); file != machine.files.end()) {
    return &file->second;
  }
  for (auto& [end, file] : machine.files_ending) {
    if (path.ends_with(end)) {
      return &file;
    }
  }
  return nullptr;
}

OpenFile* FindOpen(int descriptor) {
  const auto file = g_open_files.find(descriptor);
  return file != g_open_files.end() ? &file->second : nullptr;
}

// Whether this call is one of those that are interrupted.
bool IsInterrupted() {
  const int every = Machine::Get().interruption;
  return every > 0 && ++g_calls_until_interruption % every == 0;
}

ssize_t ReadFrom(const OpenFile& open, void* data, std::size_t size, std::size_t position) {
  if (IsInterrupted()) {
    return Fail(EINTR);
  }
  const File* const file = Find(open.path);
  if (file == nullptr || position >= file->content.size()) {
    return 0;
  }
  const std::size_t end = std::min(file->bad_from, file->content.size());
  if (position >= end) {
    return Fail(EIO);
  }
  std::size_t count = std::min(size, end - position);
  if (Machine::Get().interruption > 0) {
    count = std::min<std::size_t>(count, 1 + position % 700);
  }
  std::memcpy(data, file->content.data() + position, count);
  return static_cast<ssize_t>(count);
}

ssize_t WriteTo(OpenFile& open, const void* data, std::size_t size) {
  if (IsInterrupted()) {
    return Fail(EINTR);
  }
  if (Machine::Get().nothing_is_written) {
    return Fail(ENOSPC);
  }
  if (Machine::Get().interruption > 0) {
    size = std::min<std::size_t>(size, 1 + size / 2);
  }
  open.written.append(static_cast<const char*>(data), size);
  // Only log files are written, and nothing reads them: their size is enough.
  if (File* const file = Find(open.path)) {
    file->reported_size = file->reported_size.value_or(0) + size;
  }
  return static_cast<ssize_t>(size);
}

int FillStatus(const File* file, int error, struct stat* status) {
  if (file == nullptr) {
    return Fail(error);
  }
  *status = {};
  status->st_mode = S_IFREG | 0644;
  status->st_size = static_cast<off_t>(file->reported_size.value_or(file->content.size()));
  return 0;
}

}  // namespace

int Fail(int error) {
  errno = error;
  return -1;
}

int OpenFileAt(const char* path, int flags, unsigned mode) {
  Machine& machine = Machine::Get();
  if (IsInterrupted()) {
    return Fail(EINTR);
  }
  const bool writes = (flags & O_ACCMODE) != O_RDONLY;
  const bool exists = Find(path) != nullptr;
  const bool opens = !machine.nothing_opens && (exists || (writes && (flags & O_CREAT) != 0));
  // What is written becomes an event when the file is closed.
  if (!writes || !opens) {
    Event("open", {path, flags, mode, opens ? "" : "fails"});
  }
  if (!opens) {
    return Fail(exists ? EACCES : ENOENT);
  }
  if (!exists) {
    machine.files[path] = {};
  }
  int descriptor = machine.gives_descriptor_0 ? 0 : kFirstDescriptor;
  machine.gives_descriptor_0 = false;
  while (g_open_files.contains(descriptor)) {
    ++descriptor;
  }
  g_open_files[descriptor] = {path, flags, mode};
  return descriptor;
}

int CloseFile(int descriptor) {
  const auto open = g_open_files.find(descriptor);
  if (open == g_open_files.end()) {
    return descriptor == kSocket ? 0 : Fail(EBADF);
  }
  const OpenFile& file = open->second;
  if (!file.written.empty() || (file.flags & O_ACCMODE) != O_RDONLY) {
    Event("written", {file.path, file.flags, file.mode, file.written});
  }
  g_open_files.erase(open);
  return 0;
}

ssize_t ReadFile(int descriptor, void* data, std::size_t size) {
  OpenFile* const open = FindOpen(descriptor);
  if (open == nullptr) {
    return Fail(EBADF);
  }
  const ssize_t count = ReadFrom(*open, data, size, open->position);
  open->position += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  return count;
}

ssize_t ReadFileAt(int descriptor, void* data, std::size_t size, off_t offset) {
  const OpenFile* const open = FindOpen(descriptor);
  return open != nullptr ? ReadFrom(*open, data, size, static_cast<std::size_t>(offset))
                         : Fail(EBADF);
}

ssize_t WriteFile(int descriptor, const void* data, std::size_t size) {
  OpenFile* const open = FindOpen(descriptor);
  return open != nullptr ? WriteTo(*open, data, size) : Fail(EBADF);
}

int FileStatus(const char* path, struct stat* status) {
  return FillStatus(Find(path), ENOENT, status);
}

int OpenFileStatus(int descriptor, struct stat* status) {
  const OpenFile* const open = FindOpen(descriptor);
  return FillStatus(open != nullptr ? Find(open->path) : nullptr, EBADF, status);
}

int FileAccess(const char* path) { return Find(path) != nullptr ? 0 : Fail(ENOENT); }

bool CopyForMapping(int descriptor, std::size_t size, std::string& content) {
  const OpenFile* const open = FindOpen(descriptor);
  if (open == nullptr || size == 0 || size > kLargestMapping) {
    errno = open == nullptr ? EBADF : size == 0 ? EINVAL : ENOMEM;
    return false;
  }
  const File* const file = Find(open->path);
  content = file != nullptr ? file->content : "";
  content.resize(size);
  return true;
}

void ReportOpenFiles() {
  while (!g_open_files.empty()) {
    Event("left open", {g_open_files.begin()->second.path});
    CloseFile(g_open_files.begin()->first);
  }
}

}  // namespace kio::differential
