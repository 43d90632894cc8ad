// The list of flash partitions, and the commands that write to flash.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <cstdarg>
#include <string>
#include <vector>

#include "image_file.h"
#include "kioapp/kioapp.h"
#include "support/fake_host.h"

namespace kio::test {
namespace {

// Where files of /proc lie for the library; empty for where they are.
std::string g_proc;

class FlashTest : public ::testing::Test {
 protected:
  FlashTest() {
    host_.Reset();
    g_proc = directory_.path();
  }
  ~FlashTest() override { g_proc.clear(); }

  void SetPartitions(const std::string& lines) const { WriteFile(directory_.File("mtd"), lines); }

  FakeHost& host_ = FakeHost::Get();
  TemporaryDirectory directory_;
};

constexpr const char* kPartitions =
    "dev:    size   erasesize  name\n"
    "mtd0: 00800000 00010000 \"ALL\"\n"
    "mtd1: 00030000 00010000 \"Bootloader\"\n"
    "mtd2: 00010000 00010000 \"Config\"\n"
    "mtd3: 0079FfAb 00010000 \"Kernel\"\n"
    "mtd4: 80000000 00010000 \"Half\"\n"
    "mtd5: 00000001 00010000 \"Two Words\"\n"
    "mtd6: 00000002 00010000 \"Kernel\"\n";

TEST_F(FlashTest, SizeOfAPartition) {
  SetPartitions(kPartitions);
  EXPECT_EQ(getMTDPartSize("\"ALL\""), 0x800000);
  EXPECT_EQ(getMTDPartSize("\"Bootloader\""), 0x30000);
  EXPECT_EQ(getMTDPartSize("\"Kernel\""), 0x79FFAB) << "the first of the name";
  EXPECT_EQ(getMTDPartSize("\"Half\""), -0x7FFFFFFF - 1) << "signed";
}

TEST_F(FlashTest, NamesAreComparedExactly) {
  SetPartitions(kPartitions);
  for (const char* const name :
       {"ALL", "\"all\"", "\"ALL", "", "\"\"", "\"Two Words\"", "name", "mtd0:", "\"Kern\""}) {
    EXPECT_EQ(getMTDPartSize(name), 0) << name;
  }
  EXPECT_EQ(getMTDPartSize("\"Two"), 1) << "a name ends at a blank";
}

TEST_F(FlashTest, LinesThatAreNoPartitions) {
  SetPartitions(
      "\n   \nmtd0:\nmtd1: 10\nmtd2: 10 20\n\tmtd3:\t30  40 \t \"A\" more\nmtd4: zz 10 \"B\"\n"
      "mtd5: 50 10 \"C\"");
  EXPECT_EQ(getMTDPartSize("\"A\""), 0x30);
  EXPECT_EQ(getMTDPartSize("\"B\""), 0);
  EXPECT_EQ(getMTDPartSize("\"C\""), 0x50) << "the last line has no end";
  EXPECT_EQ(getMTDPartSize(""), 0);
}

// Of a line of more than 127 characters the rest is a line of its own.
TEST_F(FlashTest, LongLinesAreReadInPieces) {
  SetPartitions("mtd0: 10 10 " + std::string(115, 'x') + "a 20 b \"N\"\n");
  EXPECT_EQ(getMTDPartSize("\"N\""), 0x20);
  EXPECT_EQ(getMTDPartSize(std::string(115, 'x').c_str()), 0x10);
  SetPartitions("mtd0: 10 10 " + std::string(5000, '"') + "\nmtd1: 30 10 \"N\"\n");
  EXPECT_EQ(getMTDPartSize("\"N\""), 0x30);
}

TEST_F(FlashTest, EmptyListHasNoPartition) {
  SetPartitions("");
  EXPECT_EQ(getMTDPartSize("\"ALL\""), 0);
}

TEST_F(FlashTest, MissingListIsToldOnStandardError) {
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(getMTDPartSize("\"ALL\""), 0);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "mtd support not enable?");
}

TEST_F(FlashTest, BootloaderIsWrittenByTheTool) {
  host_.system_status = 256;
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(mtd_write_bootloader("/tmp/boot.bin", 64, 196608), 256);
  EXPECT_EQ(mtd_write_bootloader("%s%n", -1, -2147483647 - 1), 256);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "write bootloaderwrite bootloader");
  const std::vector<std::string> expected = {
      "/bin/mtd_write -o 64 -l 196608 write /tmp/boot.bin Bootloader",
      "/bin/mtd_write -o -1 -l -2147483648 write %s%n Bootloader"};
  EXPECT_EQ(host_.commands(), expected);
}

TEST_F(FlashTest, BootloaderCommandIsCutAt511Characters) {
  ::testing::internal::CaptureStdout();
  const std::string file(600, 'f');
  mtd_write_bootloader(file.c_str(), 1, 2);
  ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(host_.commands()[0], ("/bin/mtd_write -o 1 -l 2 write " + file).substr(0, 511));
}

TEST_F(FlashTest, WritingFirmwareDoesNothing) {
  EXPECT_EQ(mtd_write_firmware(), 0);
  EXPECT_TRUE(host_.commands().empty());
  EXPECT_TRUE(host_.calls().empty());
}

TEST_F(FlashTest, KernelVersionIsRemembered) {
  WriteFile(directory_.File("version"), "Linux version 2.6.36 (me@here) (gcc 3.4.2) #1\nmore\n");
  host_.system_status = 512;
  EXPECT_EQ(write_flash_kernel_version(), 512);
  EXPECT_EQ(host_.commands()[0],
            "nvram_set 2860 old_firmware \"Linux version 2.6.36 (me@here) (gcc 3.4.2) #1\n\"");
}

TEST_F(FlashTest, KernelVersionOf511Characters) {
  WriteFile(directory_.File("version"), std::string(600, 'v') + "\n");
  write_flash_kernel_version();
  EXPECT_EQ(host_.commands()[0], "nvram_set 2860 old_firmware \"" + std::string(511, 'v') + "\"");
  WriteFile(directory_.File("version"), std::string(600, '$') + "\n");
  write_flash_kernel_version();
  std::string escaped;
  for (int i = 0; i < 511; ++i) {
    escaped += "\\$";
  }
  EXPECT_EQ(host_.commands()[1], "nvram_set 2860 old_firmware \"" + escaped + "\"");
}

TEST_F(FlashTest, KernelVersionRunsNothing) {
  WriteFile(directory_.File("version"), "\"; touch X; $(touch X) `touch X` \\");
  write_flash_kernel_version();
  EXPECT_EQ(host_.commands()[0],
            "nvram_set 2860 old_firmware \"\\\"; touch X; \\$(touch X) \\`touch X\\` \\\\\"");
}

TEST_F(FlashTest, MissingKernelVersionRunsNothing) {
  EXPECT_EQ(write_flash_kernel_version(), -1);
  EXPECT_TRUE(host_.commands().empty());
}

}  // namespace
}  // namespace kio::test

// The linker chooses these names.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

int __real_open(const char* path, int flags, ...);

int __wrap_open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  const std::string name(path);
  const std::string proc = "/proc/";
  if (!kio::test::g_proc.empty() && name.compare(0, proc.size(), proc) == 0) {
    return __real_open((kio::test::g_proc + "/" + name.substr(proc.size())).c_str(), flags, mode);
  }
  return __real_open(path, flags, mode);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
