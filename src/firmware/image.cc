// Checking a firmware image: a 64-byte header, its numbers big-endian, and the data.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "kioapp/firmware.h"
#include "platform/file.h"
#include "platform/text.h"

namespace kio::firmware {
namespace {

using platform::FileDescriptor;
using platform::TextBuffer;
using platform::TextView;

constexpr std::size_t kHeaderSize = 64;
constexpr std::size_t kHeaderCrcOffset = 4;
constexpr std::size_t kDataCrcOffset = 24;
constexpr std::uint32_t kMagic = 0x27051956;

// The message of a refusal, before and behind the path.
struct Reason {
  TextView before;
  TextView after;
};
constexpr Reason kBadSize = {"Bad size: \"", "\" is no valid image\n"};
constexpr Reason kBadMagic = {"Bad Magic Number: \"", "\" is no valid image\n"};
constexpr Reason kBadHeader = {"*** Warning: \"", "\" has bad header checksum!\n"};
constexpr Reason kBadData = {"*** Warning: \"", "\" has corrupted data!\n"};

std::uint32_t LoadBigEndian(const unsigned char* bytes) {
  return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
         static_cast<std::uint32_t>(bytes[2]) << 8 | static_cast<std::uint32_t>(bytes[3]);
}

// The caller's buffer for the message of a refusal.
class Refusal {
 public:
  Refusal(char* message, const char* path)
      : message_(message), path_(platform::ViewOf(path)), size_(path_.size() + kRoomBesidesPath) {}

  [[nodiscard]] int Say(const Reason& reason) const {
    if (message_ != nullptr) {
      TextBuffer(message_, size_).Append(reason.before).Append(path_).Append(reason.after);
    }
    return 0;
  }
  // Tells of a failed call: "Can't WHAT PATH: ERROR".
  [[nodiscard]] int SayError(TextView what, int error) const {
    if (message_ != nullptr) {
      TextBuffer text(message_, size_);
      text.Append("Can't ").Append(what).Append(' ').Append(path_).Append(": ");
      text.Append(std::strerror(error)).Append('\n');
    }
    return 0;
  }

 private:
  // The callers' buffers have room for the path and this, the terminator included.
  static constexpr std::size_t kRoomBesidesPath = 60;

  char* message_;
  TextView path_;
  std::size_t size_;
};

// A whole file, mapped into memory until the object ends.
class Mapping {
 public:
  Mapping(const FileDescriptor& file, std::size_t size)
      : size_(size), memory_(mmap(nullptr, size, PROT_READ, MAP_SHARED, file.get(), 0)) {}
  ~Mapping() {
    if (ok()) {
      munmap(memory_, size_);
    }
  }
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;

  [[nodiscard]] bool ok() const { return memory_ != MAP_FAILED; }

 private:
  std::size_t size_;
  void* memory_;
};

// Reads exactly `size` bytes at `offset`; false when the file does not hold them any more. The
// mapping is not read: when the file is cut meanwhile, reading it would end the process.
bool ReadAt(const FileDescriptor& file, off_t offset, unsigned char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t count = pread(file.get(), data, size, offset);
    if (count > 0) {
      data += count;
      offset += count;
      size -= static_cast<std::size_t>(count);
    } else if (count == 0 || errno != EINTR) {
      return false;
    }
  }
  return true;
}

bool ComputeCrcAt(const FileDescriptor& file, off_t offset, std::size_t size, unsigned int* crc) {
  unsigned char chunk[8192];
  *crc = 0;
  while (size > 0) {
    const std::size_t count = std::min(size, sizeof(chunk));
    if (!ReadAt(file, offset, chunk, count)) {
      return false;
    }
    *crc = crc32(*crc, chunk, static_cast<unsigned int>(count));
    offset += static_cast<off_t>(count);
    size -= count;
  }
  return true;
}

// Checks an image that lay within the file when the size of the file was read.
int CheckImage(const FileDescriptor& file, off_t offset, std::size_t length,
               const Refusal& refusal) {
  unsigned char header[kHeaderSize];
  if (!ReadAt(file, offset, header, sizeof(header))) {
    return refusal.Say(kBadSize);
  }
  if (LoadBigEndian(header) != kMagic) {
    return refusal.Say(kBadMagic);
  }
  const std::uint32_t header_crc = LoadBigEndian(header + kHeaderCrcOffset);
  std::memset(header + kHeaderCrcOffset, 0, sizeof(header_crc));
  if (crc32(0, header, sizeof(header)) != header_crc) {
    return refusal.Say(kBadHeader);
  }
  // Quirk "length-is-the-callers": the size in the header is not looked at.
  unsigned int data_crc = 0;
  if (!ComputeCrcAt(file, offset + static_cast<off_t>(kHeaderSize), length - kHeaderSize,
                    &data_crc)) {
    return refusal.Say(kBadSize);
  }
  if (data_crc != LoadBigEndian(header + kDataCrcOffset)) {
    return refusal.Say(kBadData);
  }
  return 1;
}

}  // namespace
}  // namespace kio::firmware

int check(const char* path, unsigned int offset, unsigned int length, char* message) {
  using kio::firmware::kBadSize;
  const kio::firmware::Refusal refusal(message, path);
  if (length < kio::firmware::kHeaderSize) {
    return refusal.Say(kBadSize);
  }
  // O_NONBLOCK: for a pipe this does not wait for a writer.
  const kio::platform::FileDescriptor file(
      kio::platform::OpenFile(kio::platform::TextOf(path), O_RDONLY | O_NONBLOCK));
  // Quirk "descriptor-0-cannot-be-open": after a failed open it is fstat that fails.
  if (file.get() == 0) {
    return refusal.SayError("open", errno);
  }
  struct stat status = {};
  if (fstat(file.get(), &status) != 0) {
    return refusal.SayError("stat", errno);
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  const kio::firmware::Mapping mapping(file, size);
  if (!mapping.ok()) {
    return refusal.SayError("mmap", errno);
  }
  if (offset > size || length > size - offset) {
    return refusal.Say(kBadSize);
  }
  return kio::firmware::CheckImage(file, static_cast<off_t>(offset), length, refusal);
}
