// The check of an image, step by step, and files that are not what they seem.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include "image_file.h"
#include "kioapp/firmware.h"
#include "support/fake_host.h"

namespace kio::test {
namespace {

// What happens around the library's calls.
struct Calls {
  bool fstat_fails = false;
  std::function<void()> after_fstat;
  std::function<void()> after_mmap;
  std::function<void(int)> before_pread;  // with the number of the call
  std::map<int, int> pread_errors;        // by the number of the call; no other one fails
  std::size_t pread_limit = static_cast<std::size_t>(-1);  // bytes that a call reads at most
  int preads = 0;
  int mapped = 0;
  int opened = 0;
  std::size_t mapped_bytes = 0;
};
Calls g_calls;

constexpr std::size_t kHeader = 64;

class ImageTest : public ::testing::Test {
 protected:
  ImageTest() { g_calls = {}; }
  ~ImageTest() override {
    EXPECT_EQ(g_calls.mapped, 0) << "mappings left";
    EXPECT_EQ(g_calls.mapped_bytes, 0U) << "parts of mappings left";
    EXPECT_EQ(g_calls.opened, 0) << "descriptors left";
  }

  // Writes a file and returns its path.
  std::string File(const std::string& contents, const std::string& name = "image") const {
    WriteFile(directory_.File(name), contents);
    return directory_.File(name);
  }

  // "1", or the message of a refusal.
  static std::string Check(const std::string& path, unsigned int offset, unsigned int length) {
    std::string message(path.size() + 60, '#');
    const std::string untouched = message;
    if (check(path.c_str(), offset, length, message.data()) == 1) {
      EXPECT_EQ(message, untouched);
      return "1";
    }
    return message.c_str();
  }
  static std::string CheckWhole(const std::string& path) {
    return Check(path, 0, static_cast<unsigned int>(std::filesystem::file_size(path)));
  }

  static std::string BadSize(const std::string& path) {
    return "Bad size: \"" + path + "\" is no valid image\n";
  }
  static std::string BadMagic(const std::string& path) {
    return "Bad Magic Number: \"" + path + "\" is no valid image\n";
  }
  static std::string BadHeader(const std::string& path) {
    return "*** Warning: \"" + path + "\" has bad header checksum!\n";
  }
  static std::string BadData(const std::string& path) {
    return "*** Warning: \"" + path + "\" has corrupted data!\n";
  }

  TemporaryDirectory directory_;
};

TEST_F(ImageTest, IntactImagesAreAccepted) {
  for (const std::size_t size : {0U, 1U, 3U, 64U, 4096U, 8191U, 8192U, 8193U, 100000U}) {
    EXPECT_EQ(CheckWhole(File(MakeImage(SomeBytes(size)))), "1") << size;
  }
}

TEST_F(ImageTest, ShortLengthIsRefusedBeforeTheFileIsOpened) {
  const std::string missing = directory_.File("missing");
  for (const unsigned int length : {0U, 1U, 63U}) {
    EXPECT_EQ(Check(missing, 0, length), BadSize(missing));
    EXPECT_EQ(Check(missing, 0xFFFFFFFF, length), BadSize(missing));
  }
}

TEST_F(ImageTest, MissingFileIsToldByStat) {
  const std::string missing = directory_.File("missing");
  EXPECT_EQ(Check(missing, 0, 64), "Can't stat " + missing + ": Bad file descriptor\n");
}

TEST_F(ImageTest, DescriptorZeroCountsAsNotOpen) {
  const std::string path = File(MakeImage("data"));
  const int kept = dup(0);
  close(0);
  g_calls = {};
  const std::string message = CheckWhole(path);
  EXPECT_EQ(g_calls.opened, 0);
  EXPECT_EQ(fcntl(0, F_GETFD), -1) << "closed again";
  dup2(kept, 0);
  close(kept);
  g_calls.opened = 0;
  EXPECT_EQ(message.find("Can't open " + path + ": "), 0U) << message;
  EXPECT_EQ(message.back(), '\n');
}

TEST_F(ImageTest, RefusalsNeedNoMessage) {
  const std::string image = MakeImage("data");
  std::string broken = image;
  broken.back() = '#';
  const std::string good = File(image, "good");
  const std::string bad = File(broken, "bad");
  const auto length = static_cast<unsigned int>(image.size());
  EXPECT_EQ(check(good.c_str(), 0, length, nullptr), 1);
  EXPECT_EQ(check(bad.c_str(), 0, length, nullptr), 0);
  EXPECT_EQ(check(good.c_str(), 0, 63, nullptr), 0);
  EXPECT_EQ(check(directory_.File("missing").c_str(), 0, length, nullptr), 0);
}

TEST_F(ImageTest, FailedStatIsTold) {
  const std::string path = File(MakeImage("data"));
  g_calls.fstat_fails = true;
  EXPECT_EQ(Check(path, 0, 68), "Can't stat " + path + ": Input/output error\n");
}

TEST_F(ImageTest, WhatCannotBeMappedIsTold) {
  EXPECT_EQ(Check(directory_.path(), 0, 64),
            "Can't mmap " + directory_.path() + ": No such device\n");
  const std::string empty = File("");
  EXPECT_EQ(Check(empty, 0, 64), "Can't mmap " + empty + ": Invalid argument\n");
  const std::string pipe = directory_.File("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(Check(pipe, 0, 64), "Can't mmap " + pipe + ": Invalid argument\n");
  EXPECT_EQ(Check("/dev/null", 0, 64), "Can't mmap /dev/null: Invalid argument\n");
}

TEST_F(ImageTest, RangesThatTheFileDoesNotHoldAreRefused) {
  const std::string image = MakeImage(SomeBytes(1000));
  const std::string path = File(image);
  const auto size = static_cast<unsigned int>(image.size());
  struct Range {
    unsigned int offset;
    unsigned int length;
  };
  for (const Range range :
       {Range{0, size + 1}, Range{1, size}, Range{size, 64}, Range{size - 63, 64},
        Range{size + 1, 64}, Range{0, 0xFFFFFFFF}, Range{0xFFFFFFFF, 64},
        Range{0xFFFFFFFF, 0xFFFFFFFF}, Range{64, 0xFFFFFFFF}, Range{0xFFFFFFC0, 64},
        Range{0xFFFFFFC0, 0x00000040 + 1000}, Range{0x80000000, 0x80000000},
        Range{size, 0xFFFFFFFF - size + 1}}) {
    EXPECT_EQ(Check(path, range.offset, range.length), BadSize(path))
        << range.offset << " " << range.length;
  }
  EXPECT_EQ(Check(path, 0, size), "1");
  const std::string tiny = File("x", "tiny");
  EXPECT_EQ(Check(tiny, 0, 64), BadSize(tiny));
}

TEST_F(ImageTest, EachStepHasItsMessage) {
  const std::string image = MakeImage(SomeBytes(100));
  std::string wrong_magic = image;
  wrong_magic[3] = 'x';
  EXPECT_EQ(CheckWhole(File(wrong_magic)), BadMagic(File(wrong_magic)));
  std::string wrong_header = image;
  wrong_header[40] = 'x';
  EXPECT_EQ(CheckWhole(File(wrong_header)), BadHeader(File(wrong_header)));
  std::string wrong_data = image;
  wrong_data[100] = static_cast<char>(wrong_data[100] + 1);
  EXPECT_EQ(CheckWhole(File(wrong_data)), BadData(File(wrong_data)));
  // The first fault is told.
  wrong_header[0] = 'x';
  wrong_header[100] = static_cast<char>(wrong_header[100] + 1);
  EXPECT_EQ(CheckWhole(File(wrong_header)), BadMagic(File(wrong_header)));
}

TEST_F(ImageTest, ImageMayLieAnywhereInTheFile) {
  const std::string image = MakeImage(SomeBytes(5000));
  const auto size = static_cast<unsigned int>(image.size());
  for (const unsigned int offset : {0U, 1U, 3U, 4095U, 4096U, 10001U}) {
    const std::string path = File(std::string(offset, 'b') + image + "trailing bytes");
    EXPECT_EQ(Check(path, offset, size), "1") << offset;
    EXPECT_EQ(Check(path, offset, size + 1), BadData(path));
    EXPECT_EQ(Check(path, offset, size - 1), BadData(path));
    EXPECT_EQ(Check(path, offset + 1, size), BadMagic(path));
  }
}

// The length is the caller's; the size in the header is not looked at.
TEST_F(ImageTest, SizeInTheHeaderDoesNotCount) {
  std::string image = MakeImage(SomeBytes(100));
  image.replace(12, 4, BigEndian(0xFFFFFFFF));
  image.replace(4, 4, BigEndian(0));
  image.replace(4, 4, BigEndian(PlainCrc32(image.substr(0, kHeader))));
  EXPECT_EQ(CheckWhole(File(image)), "1");
}

TEST_F(ImageTest, FileCutMeanwhileIsRefused) {
  const std::string image = MakeImage(SomeBytes(30000));
  const std::string path = File(image);
  const auto cut = [&] { std::filesystem::resize_file(path, 100); };
  g_calls.after_fstat = cut;
  EXPECT_EQ(Check(path, 0, 30064), BadSize(path));

  File(image);
  g_calls = {};
  g_calls.after_mmap = cut;
  EXPECT_EQ(Check(path, 0, 30064), BadSize(path));

  for (int call = 1; call <= 4; ++call) {
    File(image);
    g_calls = {};
    g_calls.before_pread = [&](int number) {
      if (number == call) {
        cut();
        // Left by an earlier call: the end of a file is no error.
        errno = EINTR;
      }
    };
    EXPECT_EQ(Check(path, 0, 30064), BadSize(path)) << call;
  }

  File(image);
  g_calls = {};
  g_calls.after_fstat = [&] { std::filesystem::resize_file(path, 0); };
  EXPECT_EQ(Check(path, 0, 30064), BadSize(path));
}

// Every call fails in turn and would go on if it were made again: what cannot be read is not asked
// for once more.
TEST_F(ImageTest, ReadThatFailsIsRefused) {
  const std::string path = File(MakeImage(SomeBytes(30000)));
  ASSERT_EQ(Check(path, 0, 30064), "1");
  const int calls = g_calls.preads;
  ASSERT_EQ(calls, 5) << "the header and four pieces of the data";
  for (const int error : {EIO, EISDIR, EAGAIN}) {
    for (int call = 1; call <= calls; ++call) {
      g_calls = {};
      g_calls.pread_errors = {{call, error}};
      EXPECT_EQ(Check(path, 0, 30064), BadSize(path)) << "call " << call << ", error " << error;
      EXPECT_EQ(g_calls.preads, call) << "it is the last one";
    }
  }
}

TEST_F(ImageTest, InterruptedReadIsMadeAgain) {
  const std::string path = File(MakeImage(SomeBytes(30000)));
  for (int call = 1; call <= 5; ++call) {
    g_calls = {};
    g_calls.pread_errors = {{call, EINTR}, {call + 1, EINTR}};
    EXPECT_EQ(Check(path, 0, 30064), "1") << call;
    EXPECT_EQ(g_calls.preads, 7);
  }
  g_calls = {};
  g_calls.pread_limit = 63;
  EXPECT_EQ(Check(path, 0, 30064), "1") << "a read of a part goes on behind it";
}

TEST_F(ImageTest, LongPathsFitTheRoomThatCallersProvide) {
  std::string path = directory_.path();
  for (int i = 0; i < 10; ++i) {
    path += "/" + std::string(200, static_cast<char>('a' + i));
    std::filesystem::create_directory(path);
  }
  path += "/image";
  std::string image = MakeImage("data");
  WriteFile(path, image);
  EXPECT_EQ(CheckWhole(path), "1");
  image[70] = image[67];
  image[66] = 'x';
  WriteFile(path, image);
  EXPECT_EQ(CheckWhole(path), BadData(path));
  EXPECT_EQ(Check(path + "x", 0, 64), "Can't stat " + path + "x: Bad file descriptor\n");
}

TEST_F(ImageTest, PercentSignsInAPathAreOrdinary) {
  const std::string path = File("no image", "%s%n%d");
  EXPECT_EQ(Check(path, 0, 10), BadSize(path));
  EXPECT_EQ(Check(path, 0, 64), BadSize(path));
}

std::size_t CountEntries(const char* directory) {
  const std::filesystem::directory_iterator entries(directory);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

// Whether any part of a file below the directory is mapped.
bool IsMapped(const std::string& directory) {
  return ReadFile("/proc/self/maps").find(directory + "/") != std::string::npos;
}

// On every path: accepted, refused at each step, not to be mapped, not to be opened.
TEST_F(ImageTest, HundredThousandChecksLeaveNothingBehind) {
  const std::string good = File(MakeImage(SomeBytes(200)), "good");
  std::string image = MakeImage(SomeBytes(200));
  image[0] = 'x';
  const std::string magic = File(image, "magic");
  image = MakeImage(SomeBytes(200));
  image[63] = 'x';
  const std::string header = File(image, "header");
  image = MakeImage(SomeBytes(200));
  image[64] = static_cast<char>(image[64] + 1);
  const std::string data = File(image, "data");
  const std::string empty = File("", "empty");
  const std::string missing = directory_.File("missing");
  std::string message(missing.size() + 200, '\0');
  const std::size_t descriptors = CountEntries("/proc/self/fd");
  int accepted = 0;
  for (int i = 0; i < 100000 / 8; ++i) {
    for (const std::string* const path : {&good, &magic, &header, &data, &empty, &missing}) {
      accepted += check(path->c_str(), 0, 264, message.data());
    }
    accepted += check(good.c_str(), 4, 264, message.data());
    accepted += check(good.c_str(), 0, 263, message.data());
  }
  EXPECT_EQ(accepted, 100000 / 8);
  EXPECT_EQ(CountEntries("/proc/self/fd"), descriptors);
  EXPECT_FALSE(IsMapped(directory_.path()));
}

}  // namespace
}  // namespace kio::test

using kio::test::g_calls;

// The linker chooses these names.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

int __real_fstat(int descriptor, struct stat* status);
void* __real_mmap(void* address, size_t size, int protection, int flags, int descriptor,
                  off_t offset);
int __real_munmap(void* address, size_t size);
int __real_open(const char* path, int flags, ...);
int __real_close(int descriptor);
ssize_t __real_pread(int descriptor, void* data, size_t size, off_t offset);

int __wrap_fstat(int descriptor, struct stat* status) {
  if (g_calls.fstat_fails) {
    errno = EIO;
    return -1;
  }
  const int result = __real_fstat(descriptor, status);
  if (g_calls.after_fstat) {
    g_calls.after_fstat();
  }
  return result;
}

void* __wrap_mmap(void* address, size_t size, int protection, int flags, int descriptor,
                  off_t offset) {
  void* const memory = __real_mmap(address, size, protection, flags, descriptor, offset);
  if (memory != MAP_FAILED) {
    ++g_calls.mapped;
    g_calls.mapped_bytes += size;
    if (g_calls.after_mmap) {
      g_calls.after_mmap();
    }
  }
  return memory;
}

int __wrap_munmap(void* address, size_t size) {
  --g_calls.mapped;
  g_calls.mapped_bytes -= size;
  return __real_munmap(address, size);
}

int __wrap_open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  const int descriptor = __real_open(path, flags, mode);
  g_calls.opened += descriptor >= 0 ? 1 : 0;
  return descriptor;
}

int __wrap_close(int descriptor) {
  --g_calls.opened;
  return __real_close(descriptor);
}

ssize_t __wrap_pread(int descriptor, void* data, size_t size, off_t offset) {
  ++g_calls.preads;
  if (g_calls.before_pread) {
    g_calls.before_pread(g_calls.preads);
  }
  const auto error = g_calls.pread_errors.find(g_calls.preads);
  if (error != g_calls.pread_errors.end()) {
    errno = error->second;
    return -1;
  }
  return __real_pread(descriptor, data, std::min(size, g_calls.pread_limit), offset);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
