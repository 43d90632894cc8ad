// The functions that the linker puts in the place of those that the library calls. Each does what
// it should on the machine in memory, unless it is the one that fails.
#include <fcntl.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/sysinfo.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

#include "explorer.h"
#include "kioapp/attributes.h"
#include "machine.h"

namespace kio::proof {
namespace {

using How = Way::How;

Machine& TheMachine() { return Machine::Get(); }

int Fail(int error) {
  errno = error;
  return -1;
}

// The descriptor's file; null, and a fault, when it is not open.
OpenFile* FindOpen(int descriptor, const char* call) {
  const auto found = TheMachine().open_files.find(descriptor);
  if (found == TheMachine().open_files.end()) {
    TheMachine().faults.push_back(std::string(call) + " of what is no open file");
    errno = EBADF;
    return nullptr;
  }
  return &found->second;
}

ssize_t ReadAt(Call call, int descriptor, void* data, std::size_t size, std::size_t position) {
  OpenFile* const file = FindOpen(descriptor, NameOf(call));
  if (file == nullptr) {
    return -1;
  }
  const Way* const way = Reach(call, file->path);
  if (way != nullptr && way->how == How::kFails) {
    return Fail(way->error);
  }
  const std::string& content = TheMachine().files[file->path];
  if (position >= content.size() || (way != nullptr && way->how == How::kEnd)) {
    return 0;
  }
  const std::size_t count = way != nullptr ? 1 : std::min(size, content.size() - position);
  std::memcpy(data, content.data() + position, count);
  return static_cast<ssize_t>(count);
}

int FillStatus(const std::string& path, struct stat* status) {
  const auto file = TheMachine().files.find(path);
  if (file == TheMachine().files.end()) {
    return Fail(ENOENT);
  }
  *status = {};
  status->st_mode = S_IFREG;
  status->st_size = static_cast<off_t>(file->second.size());
  return 0;
}

}  // namespace
}  // namespace kio::proof

using kio::proof::Call;
using kio::proof::Fail;
using kio::proof::Machine;
using kio::proof::OpenFile;
using kio::proof::Reach;
using kio::proof::TheMachine;
using kio::proof::Way;

// The linker chooses these names.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

int __real_access(const char* path, int mode);
int __real_close(int descriptor);
int __real_fstat(int descriptor, struct stat* status);
std::size_t __real_fwrite(const void* data, std::size_t size, std::size_t count, FILE* file);
void* __real_mmap(void* address, std::size_t size, int protection, int flags, int descriptor,
                  off_t offset);
int __real_munmap(void* memory, std::size_t size);
ssize_t __real_read(int descriptor, void* data, std::size_t size);
ssize_t __real_write(int descriptor, const void* data, std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void __real_free(void* memory);
KIOAPP_PRINTF(3, 0)
int __real_vsnprintf(char* text, std::size_t size, const char* format, va_list arguments);

int __wrap_access(const char* path, int mode) {
  if (!TheMachine().is_on) {
    return __real_access(path, mode);
  }
  const Way* const way = Reach(Call::kAccess, path);
  if (way != nullptr) {
    return Fail(way->error);
  }
  return TheMachine().files.contains(path) ? 0 : Fail(ENOENT);
}

unsigned __wrap_alarm(unsigned seconds) {
  TheMachine().Note("alarm", std::to_string(seconds));
  return 0;
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
  if (const Way* const way = Reach(Call::kCalloc, "")) {
    errno = way->error;
    return nullptr;
  }
  void* const memory = __real_calloc(count, size);
  if (TheMachine().is_on) {
    TheMachine().blocks.insert(memory);
  }
  return memory;
}

void __wrap_free(void* memory) {
  if (TheMachine().is_on && memory != nullptr && TheMachine().blocks.erase(memory) == 0) {
    TheMachine().faults.emplace_back("free of what was not taken");
  }
  __real_free(memory);
}

int __wrap_close(int descriptor) {
  if (!TheMachine().is_on) {
    return __real_close(descriptor);
  }
  Machine& machine = TheMachine();
  const bool is_socket = machine.sockets.contains(descriptor);
  const OpenFile* const file = is_socket ? nullptr : kio::proof::FindOpen(descriptor, "close");
  if (!is_socket && file == nullptr) {
    return -1;
  }
  const Way* const way = Reach(Call::kClose, is_socket ? "socket" : file->path);
  if (!is_socket && !file->written.empty()) {
    machine.Note("written to " + file->path + ":", file->written);
  }
  // Whatever it returns, the descriptor is gone.
  machine.sockets.erase(descriptor);
  machine.open_files.erase(descriptor);
  return way != nullptr ? Fail(way->error) : 0;
}

int __wrap_fstat(int descriptor, struct stat* status) {
  if (!TheMachine().is_on) {
    return __real_fstat(descriptor, status);
  }
  // The library asks in any case, even when the file could not be opened.
  const auto found = TheMachine().open_files.find(descriptor);
  const bool is_open = found != TheMachine().open_files.end();
  if (const Way* const way = Reach(Call::kFstat, is_open ? found->second.path : "")) {
    return Fail(way->error);
  }
  return is_open ? kio::proof::FillStatus(found->second.path, status) : Fail(EBADF);
}

std::size_t __wrap_fwrite(const void* data, std::size_t size, std::size_t count, FILE* file) {
  if (!TheMachine().is_on) {
    return __real_fwrite(data, size, count, file);
  }
  if (const Way* const way = Reach(Call::kFwrite, "")) {
    errno = way->error;
    return 0;
  }
  TheMachine().Note("console", std::string(static_cast<const char*>(data), size * count));
  return count;
}

int __wrap_fputs(const char* text, FILE* file) {
  return __wrap_fwrite(text, 1, std::strlen(text), file) > 0 ? 1 : EOF;
}

int __wrap_ioctl(int descriptor, unsigned long request, ...) {
  va_list arguments;
  va_start(arguments, request);
  auto* const interface = va_arg(arguments, ifreq*);
  va_end(arguments);
  const std::string name(interface->ifr_name, strnlen(interface->ifr_name, IFNAMSIZ));
  TheMachine().Note("ioctl", name);
  if (const Way* const way = Reach(Call::kIoctl, name)) {
    return Fail(way->error);
  }
  if (!TheMachine().sockets.contains(descriptor) || request != SIOCGIFFLAGS) {
    return Fail(EBADF);
  }
  interface->ifr_flags =
      static_cast<short>(TheMachine().interfaces_up.contains(name) ? IFF_UP : IFF_BROADCAST);
  return 0;
}

void* __wrap_mmap(void* address, std::size_t size, int protection, int flags, int descriptor,
                  off_t offset) {
  if (!TheMachine().is_on) {
    return __real_mmap(address, size, protection, flags, descriptor, offset);
  }
  if (const Way* const way = Reach(Call::kMmap, "")) {
    errno = way->error;
    return MAP_FAILED;
  }
  if (kio::proof::FindOpen(descriptor, "mmap") == nullptr || size == 0) {
    errno = size == 0 ? EINVAL : EBADF;
    return MAP_FAILED;
  }
  void* const memory = __real_mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  TheMachine().mappings[memory] = size;
  return memory;
}

int __wrap_munmap(void* memory, std::size_t size) {
  if (!TheMachine().is_on) {
    return __real_munmap(memory, size);
  }
  const auto found = TheMachine().mappings.find(memory);
  if (found == TheMachine().mappings.end() || found->second != size) {
    TheMachine().faults.emplace_back("munmap of what is not mapped");
    return Fail(EINVAL);
  }
  const Way* const way = Reach(Call::kMunmap, "");
  TheMachine().mappings.erase(found);
  __real_munmap(memory, size);
  return way != nullptr ? Fail(way->error) : 0;
}

int __wrap_open(const char* path, int flags, ...) {
  if (const Way* const way = Reach(Call::kOpen, path)) {
    return Fail(way->error);
  }
  Machine& machine = TheMachine();
  if (!machine.files.contains(path)) {
    if ((flags & O_CREAT) == 0) {
      return Fail(ENOENT);
    }
    machine.files[path];
  }
  const int descriptor = machine.LowestDescriptor();
  machine.open_files[descriptor] = {path, (flags & O_ACCMODE) != O_RDONLY};
  return descriptor;
}

ssize_t __wrap_pread(int descriptor, void* data, std::size_t size, off_t offset) {
  return kio::proof::ReadAt(Call::kPread, descriptor, data, size, static_cast<std::size_t>(offset));
}

ssize_t __wrap_read(int descriptor, void* data, std::size_t size) {
  if (!TheMachine().is_on) {
    return __real_read(descriptor, data, size);
  }
  const auto found = TheMachine().open_files.find(descriptor);
  const std::size_t position = found != TheMachine().open_files.end() ? found->second.position : 0;
  const ssize_t count = kio::proof::ReadAt(Call::kRead, descriptor, data, size, position);
  if (count > 0) {
    found->second.position += static_cast<std::size_t>(count);
  }
  return count;
}

// A session of a client is a number that is drawn.
int __wrap_rand() { return 4711; }

using Handler = void (*)(int);
Handler __wrap_signal(int number, Handler /*handler*/) {
  TheMachine().Note("signal", std::to_string(number));
  const Way* const way = Reach(Call::kSignal, "");
  return way != nullptr ? SIG_ERR : SIG_DFL;
}

KIOAPP_PRINTF(3, 4)
int __wrap_snprintf(char* text, std::size_t size, const char* format, ...) {
  if (const Way* const way = Reach(Call::kSnprintf, format)) {
    return Fail(way->error);
  }
  va_list arguments;
  va_start(arguments, format);
  const int length = __real_vsnprintf(text, size, format, arguments);
  va_end(arguments);
  return length;
}

int __wrap_socket(int /*domain*/, int /*type*/, int /*protocol*/) {
  if (const Way* const way = Reach(Call::kSocket, "")) {
    return Fail(way->error);
  }
  const int descriptor = TheMachine().LowestDescriptor();
  TheMachine().sockets.insert(descriptor);
  return descriptor;
}

int __wrap_stat(const char* path, struct stat* status) {
  const Way* const way = Reach(Call::kStat, path);
  return way != nullptr ? Fail(way->error) : kio::proof::FillStatus(path, status);
}

int __wrap_sysinfo(struct sysinfo* info) {
  if (const Way* const way = Reach(Call::kSysinfo, "")) {
    return Fail(way->error);
  }
  *info = {};
  info->uptime = TheMachine().uptime;
  return 0;
}

KIOAPP_PRINTF(2, 3)
void __wrap_syslog(int priority, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  char text[256];
  __real_vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);
  TheMachine().Note("syslog " + std::to_string(priority), text);
}

int __wrap_system(const char* command) {
  TheMachine().Note("system", command);
  if (const Way* const way = Reach(Call::kSystem, command)) {
    return way->how == Way::How::kStatus ? way->error : Fail(way->error);
  }
  TheMachine().RunCommand(command);
  return 0;
}

std::time_t __wrap_time(std::time_t* /*now*/) {
  const Way* const way = Reach(Call::kTime, "");
  return way != nullptr ? Fail(way->error) : 1700000000;
}

KIOAPP_PRINTF(1, 0)
int __wrap_vprintf(const char* format, va_list arguments) {
  if (const Way* const way = Reach(Call::kVprintf, format)) {
    return Fail(way->error);
  }
  char text[8192];
  const int length = __real_vsnprintf(text, sizeof(text), format, arguments);
  TheMachine().Note("console", text);
  return length;
}

KIOAPP_PRINTF(3, 0)
int __wrap_vsnprintf(char* text, std::size_t size, const char* format, va_list arguments) {
  TheMachine().formats.insert(format);
  const Way* const way = Reach(Call::kVsnprintf, format);
  return way != nullptr ? Fail(way->error) : __real_vsnprintf(text, size, format, arguments);
}

ssize_t __wrap_write(int descriptor, const void* data, std::size_t size) {
  if (!TheMachine().is_on) {
    return __real_write(descriptor, data, size);
  }
  OpenFile* const file = kio::proof::FindOpen(descriptor, "write");
  if (file == nullptr) {
    return -1;
  }
  if (file->is_full) {
    return Fail(ENOSPC);
  }
  const Way* const way = Reach(Call::kWrite, file->path);
  if (way != nullptr && way->how == Way::How::kFails) {
    return Fail(way->error);
  }
  file->is_full = way != nullptr && way->how == Way::How::kFull;
  const std::size_t count = way != nullptr ? std::min<std::size_t>(size, 1) : size;
  file->written.append(static_cast<const char*>(data), count);
  TheMachine().files[file->path].append(static_cast<const char*>(data), count);
  return static_cast<ssize_t>(count);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
