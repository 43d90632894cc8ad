// Functions that replace those of libc, by the same names: the library finds them in the program.
#include <fcntl.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysinfo.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "files.h"
#include "kioapp/attributes.h"
#include "machine.h"
#include "transcript.h"

using kio::differential::Event;
using kio::differential::Fail;
using kio::differential::Machine;

namespace {

// The mmap of libc.
void* Map(void* address, std::size_t size, int protection, int flags, int file, off_t offset) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the result of a system call is a number.
  return reinterpret_cast<void*>(syscall(SYS_mmap, address, size, protection, flags, file, offset));
}

}  // namespace

// NOLINTBEGIN(readability-identifier-naming)
extern "C" {

void* __libc_calloc(std::size_t count, std::size_t size);
void __libc_free(void* memory);

int sysinfo(struct sysinfo* info) noexcept {
  *info = {};
  info->uptime = Machine::Get().uptime;
  return Machine::Get().clock_fails ? Fail(EFAULT) : 0;
}

time_t time(time_t* out) noexcept {
  const time_t now = Machine::Get().time_of_day;
  if (out != nullptr) {
    *out = now;
  }
  return now;
}

int system(const char* command) {
  Machine& machine = Machine::Get();
  Event("system", {command});
  const std::string text = command;
  if (text.ends_with(" &")) {
    machine.last_background_command = text;
  }
  kio::differential::RunCommand(text);
  if (machine.on_command) {
    machine.on_command(text);
  }
  return machine.command_status;
}

unsigned alarm(unsigned seconds) noexcept {
  Event("alarm", {seconds});
  return 0;
}

void (*signal(int number, void (*handler)(int)) noexcept)(int) {
  Machine& machine = Machine::Get();
  Event("signal", {number});
  machine.handler = handler;
  return nullptr;
}

KIOAPP_PRINTF(2, 3) void syslog(int priority, const char* format, ...) {
  char text[1024];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);
  Event("syslog", {priority, text});
}

int open(const char* path, int flags, ...) {
  unsigned mode = 0;
  if ((flags & O_CREAT) != 0) {
    va_list arguments;
    va_start(arguments, flags);
    mode = va_arg(arguments, unsigned);
    va_end(arguments);
  }
  if (!Machine::Get().is_on) {
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
  }
  return kio::differential::OpenFileAt(path, flags, mode);
}

int close(int descriptor) {
  if (!Machine::Get().is_on) {
    return static_cast<int>(syscall(SYS_close, descriptor));
  }
  return kio::differential::CloseFile(descriptor);
}

ssize_t read(int descriptor, void* data, std::size_t size) {
  return Machine::Get().is_on ? kio::differential::ReadFile(descriptor, data, size)
                              : syscall(SYS_read, descriptor, data, size);
}

ssize_t pread(int descriptor, void* data, std::size_t size, off_t offset) {
  return Machine::Get().is_on ? kio::differential::ReadFileAt(descriptor, data, size, offset)
                              : syscall(SYS_pread64, descriptor, data, size, offset);
}

ssize_t write(int descriptor, const void* data, std::size_t size) {
  return Machine::Get().is_on ? kio::differential::WriteFile(descriptor, data, size)
                              : syscall(SYS_write, descriptor, data, size);
}

int stat(const char* path, struct stat* status) noexcept {
  return Machine::Get().is_on ? kio::differential::FileStatus(path, status)
                              : static_cast<int>(syscall(SYS_stat, path, status));
}

int fstat(int descriptor, struct stat* status) noexcept {
  return Machine::Get().is_on ? kio::differential::OpenFileStatus(descriptor, status)
                              : static_cast<int>(syscall(SYS_fstat, descriptor, status));
}

int access(const char* path, int mode) noexcept {
  return Machine::Get().is_on ? kio::differential::FileAccess(path)
                              : static_cast<int>(syscall(SYS_access, path, mode));
}

// For an open file: memory with a copy of its content.
void* mmap(void* address, std::size_t size, int protection, int flags, int descriptor,
           off_t offset) noexcept {
  std::string content;
  if (!Machine::Get().is_on || (flags & MAP_ANONYMOUS) != 0) {
    return Map(address, size, protection, flags, descriptor, offset);
  }
  if (!kio::differential::CopyForMapping(descriptor, size, content)) {
    return MAP_FAILED;
  }
  void* const memory =
      Map(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    return memory;
  }
  std::memcpy(memory, content.data(), size);
  return memory;
}

int socket(int domain, int type, int protocol) noexcept {
  if (!Machine::Get().is_on) {
    return static_cast<int>(syscall(SYS_socket, domain, type, protocol));
  }
  return Machine::Get().no_socket ? Fail(EMFILE) : kio::differential::kSocket;
}

int ioctl(int descriptor, unsigned long request, ...) noexcept {
  va_list arguments;
  va_start(arguments, request);
  auto* const argument = va_arg(arguments, void*);
  va_end(arguments);
  if (!Machine::Get().is_on) {
    return static_cast<int>(syscall(SYS_ioctl, descriptor, request, argument));
  }
  auto* const interface = static_cast<ifreq*>(argument);
  if (descriptor != kio::differential::kSocket || request != SIOCGIFFLAGS) {
    return Fail(EBADF);
  }
  const std::string name = interface->ifr_name;
  if (!name.starts_with("wl") || name.size() < 3) {
    return Fail(ENODEV);
  }
  const unsigned bit = static_cast<unsigned>(name[2] - '0') * 4 +
                       (name.size() > 4 ? static_cast<unsigned>(name[4] - '0') : 0);
  const bool up = bit < 8 && ((Machine::Get().interfaces_up >> bit) & 1) != 0;
  // Every third one that is down does not exist.
  if (!up && bit % 3 == 0) {
    return Fail(ENODEV);
  }
  interface->ifr_flags = static_cast<short>(up ? IFF_UP | IFF_RUNNING : IFF_BROADCAST);
  return 0;
}

void* calloc(std::size_t count, std::size_t size) noexcept {
  if (Machine::Get().is_on && Machine::Get().no_memory) {
    errno = ENOMEM;
    return nullptr;
  }
  return __libc_calloc(count, size);
}

void free(void* memory) noexcept {
  for (const ClientAuthInfo*& client : Machine::Get().clients) {
    if (memory != nullptr && client == memory) {
      const std::string_view password(client->password, sizeof(client->password));
      client = nullptr;
      Event("client is freed with", {password});
    }
  }
  __libc_free(memory);
}

}  // extern "C"
// NOLINTEND(readability-identifier-naming)
