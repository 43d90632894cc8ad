#include "sandbox.h"

#include <fcntl.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "kioapp/attributes.h"

namespace kio::test {

Sandbox& Sandbox::Get() {
  static Sandbox sandbox;
  return sandbox;
}

void Sandbox::Reset() {
  interfaces.clear();
  probed.clear();
  system_log.clear();
  sockets.clear();
  socket_fails = false;
  calloc_fails = false;
  slow_files = false;
  writes_nothing = false;
  for (const auto& entry : std::filesystem::directory_iterator(directory_.path())) {
    std::filesystem::remove_all(entry);
  }
}

std::string Sandbox::PathOf(const std::string& path) const {
  for (const std::string top : {"/var/", "/tmp/"}) {
    if (path.compare(0, top.size(), top) == 0 && path.find('/', top.size()) == std::string::npos) {
      std::string name = path;
      std::replace(name.begin(), name.end(), '/', '_');
      return directory_.File(name);
    }
  }
  return path;
}

void Sandbox::Create(const std::string& path, const std::string& contents) const {
  std::ofstream(PathOf(path), std::ios::binary) << contents;
}

void Sandbox::Remove(const std::string& path) const { std::filesystem::remove(PathOf(path)); }

namespace {

bool Interrupted() {
  static bool interrupted = false;
  interrupted = !interrupted;
  if (interrupted) {
    errno = EINTR;
  }
  return interrupted;
}

}  // namespace
}  // namespace kio::test

using kio::test::Sandbox;

// The linker chooses these names.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

int __real_access(const char* path, int mode);
void* __real_calloc(std::size_t count, std::size_t size);
int __real_open(const char* path, int flags, ...);
ssize_t __real_read(int descriptor, void* data, std::size_t size);
int __real_socket(int domain, int type, int protocol);
int __real_stat(const char* path, struct stat* status);
ssize_t __real_write(int descriptor, const void* data, std::size_t size);

int __wrap_access(const char* path, int mode) {
  return __real_access(Sandbox::Get().PathOf(path).c_str(), mode);
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
  return Sandbox::Get().calloc_fails ? nullptr : __real_calloc(count, size);
}

int __wrap_ioctl(int descriptor, unsigned long request, ...) {
  va_list arguments;
  va_start(arguments, request);
  auto* const interface = va_arg(arguments, ifreq*);
  va_end(arguments);
  Sandbox& sandbox = Sandbox::Get();
  const std::string name(interface->ifr_name, strnlen(interface->ifr_name, IFNAMSIZ));
  sandbox.probed.push_back(name);
  const auto found = sandbox.interfaces.find(name);
  if (descriptor < 0 || request != SIOCGIFFLAGS || found == sandbox.interfaces.end()) {
    errno = ENODEV;
    return -1;
  }
  interface->ifr_flags = found->second;
  return 0;
}

int __wrap_open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  if (Sandbox::Get().slow_files && kio::test::Interrupted()) {
    return -1;
  }
  return __real_open(Sandbox::Get().PathOf(path).c_str(), flags, mode);
}

ssize_t __wrap_read(int descriptor, void* data, std::size_t size) {
  if (!Sandbox::Get().slow_files) {
    return __real_read(descriptor, data, size);
  }
  return kio::test::Interrupted() ? -1
                                  : __real_read(descriptor, data, std::min<std::size_t>(size, 1));
}

int __wrap_socket(int domain, int type, int protocol) {
  Sandbox& sandbox = Sandbox::Get();
  sandbox.sockets.push_back(std::to_string(domain) + " " + std::to_string(type));
  return sandbox.socket_fails ? -1 : __real_socket(domain, type, protocol);
}

int __wrap_stat(const char* path, struct stat* status) {
  return __real_stat(Sandbox::Get().PathOf(path).c_str(), status);
}

KIOAPP_PRINTF(2, 3) void __wrap_syslog(int priority, const char* format, ...) {
  char text[1024];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);
  Sandbox::Get().system_log.push_back(std::to_string(priority) + " " + text);
}

ssize_t __wrap_write(int descriptor, const void* data, std::size_t size) {
  if (Sandbox::Get().writes_nothing) {
    return 0;
  }
  if (!Sandbox::Get().slow_files) {
    return __real_write(descriptor, data, size);
  }
  return kio::test::Interrupted() ? -1
                                  : __real_write(descriptor, data, std::min<std::size_t>(size, 1));
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
