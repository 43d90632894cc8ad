// The result document and the six commands that write it.
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

using ::testing::HasSubstr;

class ResultDocumentTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    Put(rssXmlData.tmpPath, "/var/tmp");
  }
};

TEST_F(ResultDocumentTest, RunsSixCommands) {
  write_RssXml_ResultXml(0, "", 30);
  const std::vector<std::string> expected = {
      "echo '<?xml version=\"1.0\" ?>' > /var/tmp/rssset_result.xml",
      "echo '<root>' >> /var/tmp/rssset_result.xml",
      "echo ' <RssSetResult>0</RssSetResult>' >> /var/tmp/rssset_result.xml",
      "echo ' <RssSetMsg></RssSetMsg>' >> /var/tmp/rssset_result.xml",
      "echo ' <RssGetWaitSec>30</RssGetWaitSec>' >> /var/tmp/rssset_result.xml",
      "echo '</root>' >> /var/tmp/rssset_result.xml",
  };
  EXPECT_EQ(Host().commands(), expected);
}

TEST_F(ResultDocumentTest, NumbersAreDecimalIntegers) {
  write_RssXml_ResultXml(-2147483647, "m", -1);
  EXPECT_EQ(Host().commands(), ResultCommands(-2147483647, "m", -1));
}

TEST_F(ResultDocumentTest, KeepsCodeAndMessage) {
  write_RssXml_ResultXml(11, "Device/DeviceName", 0);
  EXPECT_EQ(rssXmlData.setResult, 11);
  EXPECT_STREQ(rssXmlData.setMsg, "Device/DeviceName");
}

TEST_F(ResultDocumentTest, KeptMessageIsBounded) {
  write_RssXml_ResultXml(3, std::string(5000, 'm').c_str(), 0);
  EXPECT_EQ(std::string(rssXmlData.setMsg), std::string(127, 'm'));
  EXPECT_EQ(rssXmlData.apCloningOnly, 0);
}

TEST_F(ResultDocumentTest, WritesTheSixLines) {
  const TemporaryDirectory directory;
  Put(rssXmlData.tmpPath, directory.path());
  Host().run_commands = true;
  EXPECT_EQ(write_RssXml_ResultXml(0, "", 30), 0);
  const std::string file = directory.File("rssset_result.xml");
  EXPECT_EQ(ReadFile(file), ResultDocument(0, "", 30));
  write_RssXml_ResultXml(3, "Device/Wireless5/WlEnbl", 0);
  EXPECT_EQ(ReadFile(file), ResultDocument(3, "Device/Wireless5/WlEnbl", 0))
      << "an earlier document is replaced";
}

TEST_F(ResultDocumentTest, ReturnsTheStatusOfTheSixthCommand) {
  Host().on_command = [](const std::string&) {
    FakeHost& host = FakeHost::Get();
    host.system_status = host.commands().size() == 6 ? 512 : 256;
  };
  EXPECT_EQ(write_RssXml_ResultXml(0, "", 0), 512);
}

TEST_F(ResultDocumentTest, FailingCommandsDoNotStopTheOthers) {
  Host().system_status = -1;
  EXPECT_EQ(write_RssXml_ResultXml(0, "", 0), -1);
  EXPECT_EQ(Host().commands().size(), 6U);
}

TEST_F(ResultDocumentTest, LogsAtLevelFive) {
  log_file::Start(5);
  write_RssXml_ResultXml(3, "Device/X", 7);
  EXPECT_THAT(log_file::Lines(),
              ::testing::Contains("Rss SetResult=3, SetMsg='Device/X', GetWaitSec=7"));
  log_file::Start(4);
  write_RssXml_ResultXml(3, "Device/X", 7);
  EXPECT_EQ(log_file::Contents(), "");
}

TEST_F(ResultDocumentTest, MessageIsPlacedUnchanged) {
  for (const char* message : {"<&>\"", "100%", "%s%n%d", "a\\b", "$HOME `id`", "&lt;"}) {
    Host().ClearCommands();
    write_RssXml_ResultXml(3, message, 0);
    EXPECT_EQ(Host().commands(), ResultCommands(3, message, 0));
    EXPECT_STREQ(rssXmlData.setMsg, message);
  }
}

class MessageLengthTest : public ResultDocumentTest,
                          public ::testing::WithParamInterface<std::size_t> {};

// 127 characters at most, whatever is lost with the rest.
TEST_P(MessageLengthTest, CommandIsCutAt127Characters) {
  const std::string message(GetParam(), 'm');
  write_RssXml_ResultXml(3, message.c_str(), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(3, message, 0));
}

INSTANTIATE_TEST_SUITE_P(Lengths, MessageLengthTest,
                         ::testing::Values(1, 60, 61, 62, 63, 64, 65, 66, 80, 93, 108, 109, 110,
                                           111, 126, 127));

TEST_F(ResultDocumentTest, LongDirectoriesCutPathAndCommands) {
  for (const std::size_t size : {70U, 100U, 108U, 109U, 110U, 111U, 112U, 126U, 127U}) {
    const std::string directory = "/" + std::string(size - 1, 'd');
    Put(rssXmlData.tmpPath, directory);
    Host().ClearCommands();
    write_RssXml_ResultXml(3, "Device/X", 0);
    EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/X", 0, directory)) << size;
  }
}

TEST_F(ResultDocumentTest, KeyResultJoinsPathAndKey) {
  write_RssXml_KeyResult("Device/Wireless5", "WlEnbl", 21);
  EXPECT_EQ(Host().commands(), ResultCommands(21, "Device/Wireless5/WlEnbl", 0));
}

TEST_F(ResultDocumentTest, KeyResultWithoutPathIsTheKey) {
  write_RssXml_KeyResult("", "specVersion", 2);
  EXPECT_EQ(Host().commands(), ResultCommands(2, "specVersion", 0));
  Host().ClearCommands();
  write_RssXml_KeyResult(nullptr, "Device", 2);
  EXPECT_EQ(Host().commands(), ResultCommands(2, "Device", 0));
}

TEST_F(ResultDocumentTest, KeyResultMessageIsCutAt127Characters) {
  const std::string path(100, 'p');
  const std::string key(100, 'k');
  write_RssXml_KeyResult(path.c_str(), key.c_str(), 3);
  EXPECT_EQ(std::string(rssXmlData.setMsg), (path + "/" + key).substr(0, 127));
  write_RssXml_KeyResult(nullptr, std::string(300, 'q').c_str(), 3);
  EXPECT_EQ(std::string(rssXmlData.setMsg), std::string(127, 'q'));
}

TEST_F(ResultDocumentTest, PercentSignsInPathAndKeyAreOrdinary) {
  write_RssXml_KeyResult("%s%n", "%d", 3);
  EXPECT_EQ(Host().commands(), ResultCommands(3, "%s%n/%d", 0));
}

TEST_F(ResultDocumentTest, VerifyErrorIsCodeThree) {
  write_RssXml_VerifyError("Device", "RouterEnbl");
  EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/RouterEnbl", 0));
}

TEST_F(ResultDocumentTest, LostKeyErrorIsCodeTwo) {
  write_RssXml_LostKeyError("Device", "DeviceName");
  EXPECT_EQ(Host().commands(), ResultCommands(2, "Device/DeviceName", 0));
}

// Messages with single quotes, run by the real shell.
class QuotedMessageTest : public ResultDocumentTest {
 protected:
  void SetUp() override {
    ResultDocumentTest::SetUp();
    // A relative path: what a cut leaves of it is a file below the test's own directory.
    Put(rssXmlData.tmpPath, kDirectory);
    std::filesystem::create_directory(directory_.File(kDirectory));
    Host().run_commands = true;
    before_ = std::filesystem::current_path();
    std::filesystem::current_path(directory_.path());
  }

  void TearDown() override { std::filesystem::current_path(before_); }

  [[nodiscard]] std::string Document() const {
    return ReadFile(directory_.File(std::string(kDirectory) + "/" + kName));
  }

  // Length of the message's command when each quote needs four characters.
  [[nodiscard]] std::size_t CommandLength(const std::string& message) const {
    const auto quotes = std::count(message.begin(), message.end(), '\'');
    return ResultCommands(3, "", 0, kDirectory)[3].size() + message.size() +
           3 * static_cast<std::size_t>(quotes);
  }

  static constexpr const char* kDirectory = "results";
  static constexpr const char* kName = "rssset_result.xml";
  TemporaryDirectory directory_;
  std::filesystem::path before_;
};

TEST_F(QuotedMessageTest, QuotesReachTheDocument) {
  for (const char* message : {"'", "it's", "''", "a'b'c", "'x", "x'"}) {
    write_RssXml_ResultXml(3, message, 0);
    EXPECT_EQ(Document(), ResultDocument(3, message, 0)) << message;
  }
}

// A quote counts as one character for the cut, however many its escape takes.
TEST_F(QuotedMessageTest, QuotesAreEscapedBehindTheCut) {
  const std::size_t room = 127 - ResultCommands(3, "", 0, kDirectory)[3].size();
  const std::string message = "'" + std::string(room - 2, 'm') + "'";
  write_RssXml_ResultXml(3, message.c_str(), 0);
  ASSERT_EQ(Host().commands().size(), 6U);
  EXPECT_EQ(Host().commands()[3].size(), 127U + 2 * 3);
  EXPECT_EQ(Document(), ResultDocument(3, message, 0));
}

// Backslashes are left to the shell's echo: one may interpret them, another may not.
TEST_F(QuotedMessageTest, BackslashesAreInterpretedByTheShellsEcho) {
  write_RssXml_ResultXml(3, R"(a\tb)", 0);
  EXPECT_THAT(Document(),
              ::testing::AnyOf(ResultDocument(3, "a\tb", 0), ResultDocument(3, R"(a\tb)", 0)));
}

class HostileMessageTest : public QuotedMessageTest,
                           public ::testing::WithParamInterface<const char*> {};

TEST_P(HostileMessageTest, NothingRunsAtAnyLengthAroundTheCut) {
  const std::string tail = GetParam();
  for (std::size_t size = 0; size <= 127; ++size) {
    const std::string message = std::string(size, 'm') + tail;
    write_RssXml_ResultXml(3, message.c_str(), 9);
    ASSERT_FALSE(FileExists(directory_.File("X"))) << message;
    const bool has_backslash = message.find('\\') != std::string::npos;  // the shell's echo eats it
    if (CommandLength(message) <= 127 && !has_backslash) {
      ASSERT_EQ(Document(), ResultDocument(3, message, 9)) << message;
    }
    ASSERT_THAT(Document(), HasSubstr("<RssGetWaitSec>9</RssGetWaitSec>\n</root>\n"));
    ASSERT_THAT(Document(), HasSubstr("<root>\n <RssSetResult>3</RssSetResult>\n"));
  }
}

INSTANTIATE_TEST_SUITE_P(Tails, HostileMessageTest,
                         ::testing::Values("';touch X;'", "'$(touch X)'", "'`touch X`'",
                                           "'&touch X&'", "'\ntouch X\n'", "'|touch X",
                                           "''';touch X", "';touch X;echo '", "'\\';touch X;'",
                                           "$(touch X)`touch X`", "\";touch X;\""));

TEST_F(QuotedMessageTest, QuotesAtEveryPositionAroundTheCutRunNothing) {
  for (std::size_t size = 20; size <= 127; ++size) {
    const std::string message = std::string(size, '\'') + ";touch X;" + std::string(20, '\'');
    write_RssXml_ResultXml(3, message.c_str(), 9);
    ASSERT_FALSE(FileExists(directory_.File("X"))) << size;
  }
}

}  // namespace
}  // namespace kio::test
