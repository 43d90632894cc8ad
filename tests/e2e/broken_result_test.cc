// Result documents that could not be written in full: nothing is changed, and nobody is told that
// it was.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <ostream>
#include <string>
#include <vector>

#include "documents.h"
#include "host_process.h"
#include "http_client.h"
#include "preload.h"

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr int kCommands = 6;

// How one of the commands goes wrong, and the host's options.
struct Fault {
  const char* name;
  const char* how;
  std::vector<std::string> options;
};

[[maybe_unused]] void PrintTo(const Fault& fault, std::ostream* stream) { *stream << fault.name; }

class BrokenResultTest : public ::testing::TestWithParam<Fault> {
 protected:
  void SetUp() override {
    WriteFile(file_, "");
    const Preload preload(KIO_FAKE_COMMAND, "KIO_TEST_COMMAND", file_);
    ASSERT_TRUE(host_.Start(GetParam().options));
    before_ = host_.Dump();
  }

  // Of the commands to come, this one goes wrong.
  void Break(int command) {
    WriteFile(file_, std::to_string(command) + " " + GetParam().how);
    command_ = command;
  }

  void ExpectFailure(const HttpResponse& answer) {
    EXPECT_EQ(answer.status, 500) << "command " << command_ << ": " << answer.body;
    EXPECT_THAT(answer.body, HasSubstr("rssset_result.xml could not be written in full"));
    EXPECT_EQ(host_.Dump(), before_) << "command " << command_;
    EXPECT_EQ(Get(host_.port(), "/result").status, 404) << "command " << command_;
  }

  HostProcess host_;
  std::string before_;

 private:
  std::string file_ = host_.dir().File("command");
  int command_ = 0;
};

std::string RenamedDocument() { return With(FactoryDocument(), "DeviceName", "Renamed"); }

TEST_P(BrokenResultTest, OfAnAcceptedDocumentChangesNothing) {
  for (int command = 1; command <= kCommands; ++command) {
    Break(command);
    ExpectFailure(Post(host_.port(), "/settings?cloning=1&full=1", RenamedDocument()));
    Break(command);
    ExpectFailure(Post(host_.port(), "/settings", RenamedDocument()));
  }
  // A document that changes nothing would repeat actions that the library still has in mind.
  EXPECT_EQ(Post(host_.port(), "/settings", FactoryDocument()).body, ResultDocument(0, "", 0));
  EXPECT_EQ(Get(host_.port(), "/result").body, ResultDocument(0, "", 0));
  EXPECT_THAT(host_.Output(), Not(HasSubstr("action")));
  EXPECT_EQ(Post(host_.port(), "/settings", RenamedDocument()).body, ResultDocument(0, "", 5));
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_THAT(host_.Output(), HasSubstr("action DeviceResync"));
}

TEST_P(BrokenResultTest, OfARefusedDocumentIsNotServed) {
  const std::string refused = WithIn(RenamedDocument(), "Wireless2.4", "Channel", "99");
  for (int command = 1; command <= kCommands; ++command) {
    Break(command);
    ExpectFailure(Post(host_.port(), "/settings", refused));
  }
  EXPECT_EQ(Post(host_.port(), "/settings", refused).body,
            ResultDocument(3, "Device/Wireless2.4/Channel", 0));
}

TEST_P(BrokenResultTest, OfABatchChangesNothing) {
  const std::string batch = "rss_DeviceName=Attic&rss_Act_ApplyAllRssVars=";
  for (int command = 1; command <= kCommands; ++command) {
    Break(command);
    ExpectFailure(Post(host_.port(), "/vars", batch));
    Break(command);
    ExpectFailure(Post(host_.port(), "/actions/SetRssVars", batch));
    Break(command);
    ExpectFailure(Post(host_.port(), "/vars", "rss_Upl_IP=nonsense"));
    Break(command);
    ExpectFailure(Post(host_.port(), "/actions/VerifyAllRssVars", ""));
  }
  EXPECT_EQ(Post(host_.port(), "/vars", batch).body, "0 done\n");
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Attic");
  EXPECT_EQ(Get(host_.port(), "/result").body, ResultDocument(0, "", 0));
}

TEST_P(BrokenResultTest, OfARefusedApplyIsNotServed) {
  EXPECT_EQ(Put(host_.port(), "/vars/rss_RouterEnbl", "7").status, 200);
  for (int command = 1; command <= kCommands; ++command) {
    Break(command);
    ExpectFailure(Post(host_.port(), "/actions/ApplyAllRssVars", ""));
  }
  EXPECT_EQ(Post(host_.port(), "/actions/ApplyAllRssVars", "").status, 422);
  EXPECT_EQ(Get(host_.port(), "/result").body, ResultDocument(3, "Device/RouterEnbl", 0));
}

INSTANTIATE_TEST_SUITE_P(
    Commands, BrokenResultTest,
    ::testing::Values(Fault{"ShellCannotBeStarted", "start", {"--shell=always"}},
                      Fault{"ShellFindsNoRoom", "write", {"--shell=always"}},
                      Fault{"HostFindsNoRoom", "line", {}}),
    [](const ::testing::TestParamInfo<Fault>& test) { return std::string(test.param.name); });

// A name that a client chose stands in the document as it is, whatever the shell would make of it.
TEST(ResultMessageTest, AnyNameOfABatchIsToldAsItIs) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  std::vector<std::string> names = {"a'b''c", "$(date)`x`", "<&>\"#!", "x\\ty", "x\\cy",
                                    "x\\",    "\\0101",     "%s%n%d",  "-n",    "*?[]~"};
  std::string bytes;
  for (int byte = 1; byte < 256; ++byte) {
    if (byte != '=' && byte != '&' && byte != '\\') {
      bytes += static_cast<char>(byte);
    }
    constexpr size_t kPiece = 20;
    if (bytes.size() == kPiece || byte == 255) {
      names.push_back("b" + bytes + "e");
      bytes.clear();
    }
  }
  for (const std::string& name : names) {
    const std::string full = "rss_" + name;
    EXPECT_EQ(Post(host.port(), "/vars", full + "=1").status, 404) << full;
    EXPECT_EQ(Get(host.port(), "/result").body, ResultDocument(2, full, 0)) << full;
  }
}

TEST(ResultMessageTest, NoShellWritesTheDocument) {
  HostProcess host;
  const std::string file = host.dir().File("command");
  WriteFile(file, "");
  const Preload preload(KIO_FAKE_COMMAND, "KIO_TEST_COMMAND", file);
  ASSERT_TRUE(host.Start());
  WriteFile(file, "1 start");
  EXPECT_EQ(Post(host.port(), "/settings", FactoryDocument()).body, ResultDocument(0, "", 0));
  EXPECT_EQ(Post(host.port(), "/vars", "rss_a\\tb'c=1").status, 404);
  EXPECT_EQ(ReadFile(host.dir().File("rssset_result.xml")), ResultDocument(2, "rss_a\\tb'c", 0));
  EXPECT_EQ(Post(host.port(), "/firmware/9", "").status, 200);
  EXPECT_EQ(ReadFile(file), "1 start");
}

// A message that the commands do not hold is no document that an app could read.
TEST(ResultMessageTest, OneThatALongDirectoryCutsIsAFailure) {
  HostProcess host;
  const std::string longer = host.dir().MakeDirectory(std::string(40, 'd'));
  ASSERT_TRUE(host.Start({"--temp-dir", longer}));
  const std::string site =
      "<HardwareType>WWan802.11</HardwareType><ConnType>DHCP</ConnType>"
      "<ExtenderSite><Survey>0</Survey></ExtenderSite>";
  const HttpResponse answer =
      Post(host.port(), "/settings", With(RenamedDocument(), "UpLinkConnection", site));
  EXPECT_EQ(answer.status, 500);
  EXPECT_THAT(answer.body, HasSubstr("could not be written in full"));
  EXPECT_EQ(Get(host.port(), "/result").status, 404);
  EXPECT_EQ(Post(host.port(), "/settings", RenamedDocument()).body, ResultDocument(0, "", 5));
}

TEST(ResultMessageTest, TheDocumentOfAnotherProcessIsNotServed) {
  HostProcess host;
  WriteFile(host.dir().File("rssset_result.xml"), ResultDocument(0, "", 5));
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(Get(host.port(), "/result").status, 404);
  const std::string refused = WithIn(RenamedDocument(), "Wireless2.4", "Channel", "99");
  const std::string answer = Post(host.port(), "/settings", refused).body;
  WriteFile(host.dir().File("rssset_result.xml"), ResultDocument(0, "", 5));
  EXPECT_EQ(Get(host.port(), "/result").body, answer);
}

}  // namespace
