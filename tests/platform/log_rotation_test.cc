#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <filesystem>
#include <fstream>
#include <string>

#include "log_fixture.h"

namespace kio::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LogRotationTest : public LogTest {
 protected:
  // A file of `size` bytes where the log is.
  void Fill(std::size_t size) const {
    LogTo(directory_.path());
    std::ofstream(File(), std::ios::binary) << std::string(size, 'x');
  }
  [[nodiscard]] std::string Copy() const {
    return "cp -f \"" + File() + "\" \"" + File() + ".old\"";
  }
  [[nodiscard]] std::string Removal() const { return "rm -f \"" + File() + "\""; }
};

TEST_F(LogRotationTest, RotationAtTheDefaultLimit) {
  InNewProcess([&] {
    Fill(255990);
    host_.run_commands = true;
    const std::string message = std::string(19, 'm') + "\n";
    logPrintf(5, "%s", message.c_str());
    EXPECT_THAT(host_.commands(), ElementsAre(Copy(), Removal()));
    EXPECT_EQ(ReadFile(File() + ".old"), std::string(255990, 'x'));
    EXPECT_EQ(ReadFile(File()), "1000: " + message);
  });
}

TEST_F(LogRotationTest, RotationCommandsOfTheDefaultFile) {
  InNewProcess([&] {
    sandbox_.Create("/tmp/DL_log.txt", std::string(256000, 'x'));
    logPrintf(5, "x\n");
    EXPECT_THAT(host_.commands(), ElementsAre("cp -f \"/tmp/DL_log.txt\" \"/tmp/DL_log.txt.old\"",
                                              "rm -f \"/tmp/DL_log.txt\""));
  });
}

TEST_F(LogRotationTest, RotationStartsExactlyAtTheLimit) {
  InNewProcess([&] {
    Fill(2048 - 11);
    daemon_log_file_size_k = 2;
    logPrintf(5, "0123456789");  // one byte short of the limit; the uptime does not count
    EXPECT_THAT(host_.commands(), IsEmpty());
    Fill(2048 - 10);
    logPrintf(5, "0123456789");
    EXPECT_THAT(host_.commands(), ElementsAre(Copy(), Removal()));
  });
}

TEST_F(LogRotationTest, EachRotationReplacesTheOldGeneration) {
  InNewProcess([&] {
    host_.run_commands = true;
    daemon_log_file_size_k = 1;
    Fill(1024);
    logPrintf(5, "first\n");
    const std::string second(1023, '2');
    logPrintf(5, "%s\n", second.c_str());
    EXPECT_EQ(ReadFile(File() + ".old"), "1000: first\n");
    EXPECT_EQ(ReadFile(File()), "1000: " + second + "\n");
  });
}

TEST_F(LogRotationTest, FailingRotationCommandsAreSilent) {
  InNewProcess([&] {
    host_.system_status = -1;
    Fill(256000);
    logPrintf(5, "x\n");
    EXPECT_EQ(ReadFile(File()), std::string(256000, 'x') + "1000: x\n");
  });
}

TEST_F(LogRotationTest, AbsentFileCountsAsMinusOneByte) {
  InNewProcess([&] {
    LogTo(directory_.path());
    logPrintf(5, "%s", "");  // -1 + 0 is the largest unsigned number
    EXPECT_THAT(host_.commands(), ElementsAre(Copy(), Removal()));
    host_.ClearCommands();
    std::filesystem::remove(File());
    logPrintf(5, "x");  // -1 + 1 is 0
    EXPECT_THAT(host_.commands(), IsEmpty());
    std::filesystem::remove(File());
    daemon_log_file_size_k = 1;
    const std::string longest_without(1024, 'y');  // -1 + 1024 is below 1024
    logPrintf(5, "%s", longest_without.c_str());
    EXPECT_THAT(host_.commands(), IsEmpty());
    std::filesystem::remove(File());
    logPrintf(5, "%s+", longest_without.c_str());
    EXPECT_THAT(host_.commands(), ElementsAre(Copy(), Removal()));
  });
}

TEST_F(LogRotationTest, LargestLimitDoesNotRotate) {
  InNewProcess([&] {
    Fill(300000);
    daemon_log_file_size_k = INT_MAX;
    logPrintf(5, "x\n");
    EXPECT_THAT(host_.commands(), IsEmpty());
  });
}

}  // namespace
}  // namespace kio::test
