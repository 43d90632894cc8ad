// The check of a firmware image, as a plain reading judges it. The input is a line with the offset,
// a line with what is added to the length, a line that says what is put right before ("h" for the
// checksum of the header, "d" for that of the data), and the file.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "input.h"
#include "kioapp/kioapp.h"
#include "testing/plain_crc.h"

namespace {

constexpr std::size_t kHeaderSize = 64;
constexpr std::size_t kHeaderCrc = 4;
constexpr std::size_t kDataCrc = 24;
constexpr std::uint32_t kMagic = 0x27051956;

std::uint32_t NumberAt(const std::string& bytes, std::size_t place) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    number = number << 8 | static_cast<unsigned char>(bytes[place + i]);
  }
  return number;
}

void PutNumber(std::uint32_t number, std::size_t place, std::string* bytes) {
  for (std::size_t i = 4; i-- > 0; number >>= 8) {
    (*bytes)[place + i] = static_cast<char>(number & 0xFF);
  }
}

std::uint32_t HeaderCrcOf(const std::string& image) {
  std::string header = image.substr(0, kHeaderSize);
  PutNumber(0, kHeaderCrc, &header);
  return kio::test::PlainCrc32(0, header);
}

std::uint32_t DataCrcOf(const std::string& image) {
  return kio::test::PlainCrc32(0, std::string_view(image).substr(kHeaderSize));
}

bool IsImage(const std::string& image) {
  return NumberAt(image, 0) == kMagic && NumberAt(image, kHeaderCrc) == HeaderCrcOf(image) &&
         NumberAt(image, kDataCrc) == DataCrcOf(image);
}

// A file in memory, which every run writes anew.
const std::string& Path(const std::string& bytes) {
  static const int file = memfd_create("image", 0);
  static const std::string path = "/proc/self/fd/" + std::to_string(file);
  if (ftruncate(file, 0) != 0 ||
      pwrite(file, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    kio::fuzz::Report("no file in memory");
  }
  return path;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr unsigned int kMostAdded = 100;
  kio::fuzz::Input input(data, size);
  const auto offset = static_cast<unsigned int>(input.Number());
  const auto added = static_cast<unsigned int>(input.Number()) % kMostAdded;
  const std::string mend = input.Line();
  std::string file(input.Bytes());
  // The image with what is to be read behind the file, if anything.
  const unsigned int there = static_cast<unsigned int>(file.size()) -
                             std::min<unsigned int>(offset, static_cast<unsigned int>(file.size()));
  std::string image = file.substr(file.size() - there);
  if (image.size() >= kHeaderSize) {
    if (mend.find('d') != std::string::npos) {
      PutNumber(DataCrcOf(image), kDataCrc, &image);
    }
    if (mend.find('h') != std::string::npos) {
      PutNumber(HeaderCrcOf(image), kHeaderCrc, &image);
    }
    file.replace(file.size() - there, there, image);
  }
  const std::string& path = Path(file);
  const kio::fuzz::GuardedText guarded(path);
  // Room for the path and the longest message.
  const kio::fuzz::GuardedBuffer message(path.size() + 60);
  const unsigned int length = there + added;
  const bool expected = added == 0 && length >= kHeaderSize && IsImage(image);
  if ((check(guarded.get(), offset, length, message.get()) == 1) != expected) {
    kio::fuzz::Report("an image is judged otherwise");
  }
  return 0;
}
