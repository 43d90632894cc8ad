#include "kioapp/log.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <string>

#include "log_fixture.h"
#include "platform/log.h"

namespace kio::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kDefaultFile = "/tmp/DL_log.txt";

TEST_F(LogTest, SettingsBeforeTheFirstMessage) {
  InNewProcess([&] {
    EXPECT_STREQ(daemon_log_path, "");
    EXPECT_STREQ(daemon_log_header, "");
    EXPECT_EQ(daemon_log_level, 5);
    EXPECT_EQ(daemon_log_file_size_k, 250);
    EXPECT_EQ(sizeof(daemon_log_path), 64U);
    EXPECT_EQ(sizeof(daemon_log_header), 32U);
  });
}

TEST_F(LogTest, FirstMessageWithDefaults) {
  InNewProcess([&] {
    host_.uptime = 4711;
    EXPECT_EQ(logPrintf(5, "%s is %d\n", "answer", 42), 0);
    EXPECT_EQ(sandbox_.Contents(kDefaultFile), "4711: answer is 42\n");
    EXPECT_STREQ(daemon_log_path, "/tmp");
    EXPECT_STREQ(daemon_log_header, "DL");
    EXPECT_THAT(host_.calls(),
                ElementsAre(StoreCall{StoreCall::Kind::kGetText, "/zentrolinks/tempdirecory", ""}));
    EXPECT_THAT(host_.commands(), IsEmpty());
  });
}

TEST_F(LogTest, EmptyStoreTextMeansTmp) {
  InNewProcess([&] {
    host_.Set("/zentrolinks/tempdirecory", "");
    logPrintf(4, "x\n");
    EXPECT_EQ(sandbox_.Contents(kDefaultFile), "1000: x\n");
  });
}

TEST_F(LogTest, DirectoryFromTheStore) {
  InNewProcess([&] {
    host_.Set("/zentrolinks/tempdirecory", directory_.path());
    logPrintf(5, "x\n");
    EXPECT_EQ(ReadFile(File()), "1000: x\n");
    EXPECT_EQ(daemon_log_path, directory_.path());
  });
}

TEST_F(LogTest, DirectoryOfOneCharacter) {
  InNewProcess([&] {
    std::filesystem::current_path(directory_.path());
    std::filesystem::create_directory("d");
    host_.Set("/zentrolinks/tempdirecory", "/elsewhere");
    LogTo("d");
    logPrintf(5, "x\n");
    EXPECT_EQ(ReadFile(directory_.File("d/DL_log.txt")), "1000: x\n");
    EXPECT_STREQ(daemon_log_path, "d");
    EXPECT_THAT(host_.calls(), IsEmpty());
  });
}

TEST_F(LogTest, DirectoryOfOneCharacterFromTheStore) {
  InNewProcess([&] {
    std::filesystem::current_path(directory_.path());
    std::filesystem::create_directory("d");
    host_.Set("/zentrolinks/tempdirecory", "d");
    logPrintf(5, "x\n");
    EXPECT_EQ(ReadFile(directory_.File("d/DL_log.txt")), "1000: x\n");
  });
}

TEST_F(LogTest, HeaderOfOneCharacter) {
  InNewProcess([&] {
    LogTo(directory_.path());
    std::snprintf(daemon_log_header, sizeof(daemon_log_header), "h");
    logPrintf(5, "x\n");
    EXPECT_EQ(ReadFile(directory_.File("h_log.txt")), "1000: x\n");
  });
}

TEST_F(LogTest, LongStoreTextIsCutToTheDirectory) {
  InNewProcess([&] {
    host_.text_for_every_node = std::string(4000, 'd');
    logPrintf(5, "x\n");
    EXPECT_EQ(daemon_log_path, std::string(63, 'd'));
    EXPECT_STREQ(daemon_log_header, "DL");
  });
}

TEST_F(LogTest, HostSettingsAreUsed) {
  InNewProcess([&] {
    host_.Set("/zentrolinks/tempdirecory", "/elsewhere");
    LogTo(directory_.path());
    std::snprintf(daemon_log_header, sizeof(daemon_log_header), "%s", std::string(31, 'h').c_str());
    logPrintf(5, "x\n");
    EXPECT_EQ(ReadFile(directory_.File(std::string(31, 'h') + "_log.txt")), "1000: x\n");
    EXPECT_THAT(host_.calls(), IsEmpty());
  });
}

TEST_F(LogTest, FileStaysForTheLifeOfTheProcess) {
  InNewProcess([&] {
    LogTo(directory_.path());
    logPrintf(5, "one\n");
    std::filesystem::create_directory(directory_.File("other"));
    LogTo(directory_.File("other"));
    std::snprintf(daemon_log_header, sizeof(daemon_log_header), "new");
    logPrintf(5, "two\n");
    EXPECT_EQ(ReadFile(File()), "1000: one\n1000: two\n");
    EXPECT_TRUE(std::filesystem::is_empty(directory_.File("other")));
    EXPECT_FALSE(FileExists(directory_.File("new_log.txt")));
  });
}

// It is no error, whatever the call before has left.
TEST_F(LogTest, DescriptorZeroIsUsedOnce) {
  InNewProcess([&] {
    LogTo(directory_.path());
    logPrintf(5, "x\n");
    close(STDIN_FILENO);
    errno = EINTR;
    logPrintf(5, "y\n");
    EXPECT_EQ(open("/dev/null", O_RDONLY), STDIN_FILENO);
    EXPECT_EQ(ReadFile(File()), "1000: x\n1000: y\n");
  });
}

TEST_F(LogTest, AMessageThatTheDiskRefusesIsLost) {
  InNewProcess([&] {
    LogTo(directory_.path());
    std::filesystem::create_symlink("/dev/full", File());
    EXPECT_EQ(logPrintf(5, "x\n"), 0);
    EXPECT_EQ(logPrintf(5, "y\n"), 0);
  });
}

TEST_F(LogTest, NoFormatIsAnEmptyMessage) {
  InNewProcess([&] {
    LogTo(directory_.path());
    EXPECT_EQ(logPrintf(5, nullptr), 0);
    EXPECT_EQ(ReadFile(File()), "1000: ");
  });
}

TEST_F(LogTest, LevelsAboveTheLimitWriteNothing) {
  InNewProcess([&] {
    logPrintf(6, "no\n");
    logPrintf(7, "no\n");
    daemon_log_level = 3;
    logPrintf(4, "no\n");
    EXPECT_FALSE(FileExists(sandbox_.PathOf(kDefaultFile)));
    // The file is not chosen yet either.
    EXPECT_STREQ(daemon_log_path, "");
    EXPECT_THAT(host_.calls(), IsEmpty());
    logPrintf(3, "three\n");
    logPrintf(-1, "below\n");
    daemon_log_level = 7;
    logPrintf(7, "seven\n");
    EXPECT_EQ(sandbox_.Contents(kDefaultFile), "1000: three\n1000: below\n1000: seven\n");
  });
}

TEST_F(LogTest, DroppedMessageLeavesTheLineOpen) {
  InNewProcess([&] {
    logPrintf(5, "begun");
    logPrintf(6, "dropped\n");
    logPrintf(5, " and ended\n");
    EXPECT_EQ(sandbox_.Contents(kDefaultFile), "1000: begun and ended\n");
  });
}

TEST_F(LogTest, CallersTimeIsContinuedOnOneLine) {
  InNewProcess([&] {
    daemon_log_level = 7;
    logPrintf(5, "%ld:", 999L);
    logPrintf(5, "text\n");
    platform::LogTime(platform::kLogEvent);
    logPrintf(5, "more\n");
    platform::LogEntry("do_something");
    EXPECT_EQ(sandbox_.Contents(kDefaultFile),
              "1000: 999:text\n1000: 1000:more\n1000: 1000:do_something]\n");
  });
}

TEST_F(LogTest, EmptyMessageClearsLineStart) {
  InNewProcess([&] {
    logPrintf(5, "x\n");
    host_.uptime = 1001;
    logPrintf(5, "%s", "");
    host_.uptime = 1002;
    logPrintf(5, "y\n");
    EXPECT_EQ(sandbox_.Contents(kDefaultFile), "1000: x\n1001: y\n");
  });
}

TEST_F(LogTest, NullFormatIsAnEmptyMessage) {
  InNewProcess([&] {
    logPrintf(5, "x");
    EXPECT_EQ(logPrintf(5, nullptr), 0);
    logPrintf(5, "y\n");
    EXPECT_EQ(sandbox_.Contents(kDefaultFile), "1000: xy\n");
  });
}

TEST_F(LogTest, NewlineInsideAMessageDoesNotEndIt) {
  InNewProcess([&] {
    logPrintf(5, "a\nb");
    logPrintf(5, "c\n");
    logPrintf(5, "d\n");
    EXPECT_EQ(sandbox_.Contents(kDefaultFile), "1000: a\nbc\n1000: d\n");
  });
}

TEST_F(LogTest, MessageIsCutAt5119Characters) {
  InNewProcess([&] {
    const std::string fits = std::string(5118, 'a') + "\n";
    const std::string cut = std::string(5119, 'b') + "\n";
    logPrintf(5, "%s", fits.c_str());
    logPrintf(5, "%s", cut.c_str());
    logPrintf(5, "c\n");  // continues the line whose end was cut off
    EXPECT_EQ(sandbox_.Contents(kDefaultFile),
              "1000: " + fits + "1000: " + std::string(5119, 'b') + "c\n");
  });
}

TEST_F(LogTest, FileIsOpenedForEveryMessage) {
  InNewProcess([&] {
    logPrintf(5, "one\n");
    sandbox_.Remove(kDefaultFile);
    logPrintf(5, "two\n");
    EXPECT_EQ(sandbox_.Contents(kDefaultFile), "1000: two\n");
  });
}

TEST_F(LogTest, FileIsAppendedTo) {
  InNewProcess([&] {
    sandbox_.Create(kDefaultFile, "from before\n");
    logPrintf(5, "x\n");
    EXPECT_EQ(sandbox_.Contents(kDefaultFile), "from before\n1000: x\n");
  });
}

TEST_F(LogTest, SignalsAndShortWritesLoseNothing) {
  InNewProcess([&] {
    sandbox_.slow_files = true;
    logPrintf(5, "not a byte is lost\n");
    sandbox_.slow_files = false;
    EXPECT_EQ(sandbox_.Contents(kDefaultFile), "1000: not a byte is lost\n");
  });
}

TEST_F(LogTest, LongestUptime) {
  InNewProcess([&] {
    host_.uptime = LONG_MAX;
    logPrintf(5, "x\n");
    EXPECT_EQ(sandbox_.Contents(kDefaultFile), std::to_string(LONG_MAX) + ": x\n");
  });
}

// Console and failures.

TEST_F(LogTest, NoFileWhenTheSizeLimitIsNotPositive) {
  for (const int limit : {0, -1, INT_MIN}) {
    InNewProcess([&] {
      daemon_log_file_size_k = limit;
      ::testing::internal::CaptureStdout();
      logPrintf(0, "seen\n");
      logPrintf(4, "unseen\n");
      EXPECT_EQ(::testing::internal::GetCapturedStdout(), "DL> seen\n");
      EXPECT_FALSE(FileExists(sandbox_.PathOf(kDefaultFile)));
      EXPECT_THAT(host_.commands(), IsEmpty());
    });
  }
}

TEST_F(LogTest, OnlyLevelZeroReachesTheConsole) {
  InNewProcess([&] {
    daemon_log_level = 7;
    std::snprintf(daemon_log_header, sizeof(daemon_log_header), "router");
    ::testing::internal::CaptureStdout();
    for (const int level : {-1, 1, 2, 3, 4, 5, 6, 7}) {
      logPrintf(level, "unseen\n");
    }
    logPrintf(0, "one\n");
    logPrintf(0, "two");
    logPrintf(5, " hidden ");
    logPrintf(0, "three\n");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "router> one\nrouter> twothree\n");
  });
}

TEST_F(LogTest, ContinuationIsNoFormat) {
  InNewProcess([&] {
    ::testing::internal::CaptureStdout();
    logPrintf(0, "%s", "100%s ");
    logPrintf(0, "%s", "%n%s%d\n");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "DL> 100%s %n%s%d\n");
    EXPECT_EQ(sandbox_.Contents(kDefaultFile), "1000: 100%s %n%s%d\n");
  });
}

TEST_F(LogTest, MissingDirectoryIsSilent) {
  InNewProcess([&] {
    LogTo(directory_.File("absent"));
    ::testing::internal::CaptureStdout();
    logPrintf(0, "still");
    logPrintf(0, " seen\n");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "DL> still seen\n");
    EXPECT_TRUE(std::filesystem::is_empty(directory_.path()));
  });
}

TEST_F(LogTest, UnwritableFileIsSilent) {
  InNewProcess([&] {
    std::filesystem::create_directory(sandbox_.PathOf(kDefaultFile));
    ::testing::internal::CaptureStdout();
    logPrintf(0, "seen\n");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "DL> seen\n");
  });
}

// The printers and the library's own macro.

TEST(Printers, MsgPrintfPrintsAndCounts) {
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(msgPrintf("%s-%d", "abc", 12), 6);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "abc-12");
}

TEST(Printers, MsgPrintfPrintsNothingOfANullFormat) {
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(msgPrintf(nullptr), 0);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST(Printers, DbgPrintfDoesNothing) {
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(dbgPrintf("%s-%d", "abc", 12), 0);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST(LogMacro, DroppedMessageEvaluatesNoArgument) {
  int evaluated = 0;
  log_file::Start(5);
  KIO_LOG(platform::kLogAction, "%d", ++evaluated);
  KIO_LOG(platform::kLogDetail, "%d", ++evaluated);
  EXPECT_EQ(evaluated, 0);
  KIO_LOG(platform::kLogEvent, "%d\n", ++evaluated);
  KIO_LOG(platform::kLogFailure, "%d\n", ++evaluated);
  EXPECT_EQ(evaluated, 2);
  EXPECT_THAT(log_file::Lines(), ElementsAre("1", "2"));
}

}  // namespace
}  // namespace kio::test
