// File descriptors, closed at the end of a scope.
#ifndef KIO_PLATFORM_FILE_H
#define KIO_PLATFORM_FILE_H

#include <cstddef>

namespace kio::platform {

class FileDescriptor {
 public:
  // Takes over `descriptor`; a negative one stands for a failed open.
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  ~FileDescriptor();
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  [[nodiscard]] bool ok() const { return descriptor_ >= 0; }
  [[nodiscard]] int get() const { return descriptor_; }

 private:
  int descriptor_;
};

// As `open`, closed in child processes and tried again when a signal interrupts it. A file that is
// created may be read and written by everyone, but for the umask. Negative on failure.
int OpenFile(const char* path, int flags);

// Reads at most `size` bytes; 0 at the end of the file and on failure.
std::size_t ReadSome(const FileDescriptor& file, char* data, std::size_t size);

// Writes all bytes, unless an error ends it.
void WriteAll(const FileDescriptor& file, const char* data, std::size_t size);

bool FileExists(const char* path);

}  // namespace kio::platform

#endif
