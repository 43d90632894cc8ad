// Images made by the tool that firmware is made with.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <tuple>

#include "image_file.h"
#include "kioapp/firmware.h"
#include "support/fake_host.h"
#include "testing/heap_chars.h"

namespace kio::test {
namespace {

class MkimageTest : public ::testing::Test {
 protected:
  // An image of `size` bytes of data, as a file.
  std::string Make(const std::string& options, std::size_t size) {
    const std::string data = directory_.File("data");
    std::string image = directory_.File("image");
    WriteFile(data, SomeBytes(size, static_cast<unsigned int>(size)));
    FakeHost& host = FakeHost::Get();
    host.Reset();
    host.run_commands = true;
    const std::string command = std::string(KIO_MKIMAGE) + " " + options +
                                " -a 0x80000000 -e 0x80000400 -n 'AB12 1.0.8' -d " + data + " " +
                                image + " > /dev/null";
    EXPECT_EQ(host.RunCommand(command.c_str()), 0) << command;
    return image;
  }

  int Check(const std::string& path) {
    return check(path.c_str(), 0, static_cast<unsigned int>(std::filesystem::file_size(path)),
                 message_);
  }

  TemporaryDirectory directory_;
  HeapChars<256> message_;
};

class MadeImageTest : public MkimageTest,
                      public ::testing::WithParamInterface<std::tuple<const char*, std::size_t>> {};

TEST_P(MadeImageTest, IsAccepted) {
  const auto [options, size] = GetParam();
  const std::string image = Make(options, size);
  EXPECT_EQ(Check(image), 1) << message_;
}

INSTANTIATE_TEST_SUITE_P(
    Images, MadeImageTest,
    ::testing::Combine(::testing::Values("-A mips -O linux -T kernel -C lzma",
                                         "-A arm -O linux -T kernel -C none",
                                         "-A arm64 -O linux -T ramdisk -C gzip",
                                         "-A powerpc -O u-boot -T firmware -C none",
                                         "-A x86 -O linux -T filesystem -C none"),
                       ::testing::Values(1, 63, 1000, 65536, 2621440)));

TEST_F(MkimageTest, EachSingleFlippedBitIsRefused) {
  const std::string path = Make("-A mips -O linux -T kernel -C none", 500);
  const std::string image = ReadFile(path);
  ASSERT_EQ(image.size(), 564U);
  for (std::size_t bit = 0; bit < image.size() * 8; ++bit) {
    std::string flipped = image;
    flipped[bit / 8] =
        static_cast<char>(static_cast<unsigned char>(flipped[bit / 8]) ^ (1U << bit % 8));
    WriteFile(path, flipped);
    ASSERT_EQ(Check(path), 0) << "bit " << bit;
    const std::string expected = bit < 32 ? "Bad Magic Number: \"" + path + "\" is no valid image\n"
                                 : bit < std::size_t{64} * 8
                                     ? "*** Warning: \"" + path + "\" has bad header checksum!\n"
                                     : "*** Warning: \"" + path + "\" has corrupted data!\n";
    ASSERT_EQ(message_, expected) << "bit " << bit;
  }
  WriteFile(path, image);
  EXPECT_EQ(Check(path), 1);
}

}  // namespace
}  // namespace kio::test
