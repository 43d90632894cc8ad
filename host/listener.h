// A listening TCP socket.
#ifndef HOST_LISTENER_H
#define HOST_LISTENER_H

#include <unistd.h>

#include <string>
#include <utility>

#include "status.h"

namespace kiohost {

class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int fd) : fd_(fd) {}
  ~FileDescriptor() { Close(); }
  FileDescriptor(FileDescriptor&& other) noexcept : fd_(other.Release()) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
      Close();
      fd_ = other.Release();
    }
    return *this;
  }

  int get() const { return fd_; }
  bool valid() const { return fd_ >= 0; }
  int Release() { return std::exchange(fd_, -1); }

 private:
  void Close() {
    if (valid()) {
      close(fd_);
    }
  }

  int fd_ = -1;
};

// Listens on a numeric address. Port 0 becomes the free port that was found.
Status Listen(const std::string& address, int* port, FileDescriptor* listener);

// Whether a numeric address is one of the machine to itself.
bool IsLoopback(const std::string& address);

// "127.0.0.1:8080", "[::1]:8080"
std::string HostAndPort(const std::string& address, int port);

}  // namespace kiohost

#endif  // HOST_LISTENER_H
