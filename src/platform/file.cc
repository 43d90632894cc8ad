#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "kioapp/platform.h"

namespace kio::platform {

FileDescriptor::~FileDescriptor() {
  if (ok()) {
    close(descriptor_);
  }
}

int OpenFile(const char* path, int flags) {
  constexpr mode_t kEveryone = 0666;
  int descriptor = -1;
  do {
    descriptor = open(path, flags | O_CLOEXEC, kEveryone);
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

std::size_t ReadSome(const FileDescriptor& file, char* data, std::size_t size) {
  ssize_t count = -1;
  do {
    count = read(file.get(), data, size);
  } while (count < 0 && errno == EINTR);
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void WriteAll(const FileDescriptor& file, const char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t count = write(file.get(), data, size);
    if (count > 0) {
      data += count;
      size -= static_cast<std::size_t>(count);
    } else if (count == 0 || errno != EINTR) {
      return;
    }
  }
}

bool FileExists(const char* path) { return access(path, F_OK) == 0; }

}  // namespace kio::platform

unsigned int getFileSize(const char* path) {
  constexpr unsigned int kUnknownSize = 0xFFFFFFFF;
  struct stat status = {};
  if (path == nullptr || stat(path, &status) != 0) {
    return kUnknownSize;
  }
  return static_cast<unsigned int>(status.st_size);
}
