// Texts that clients choose, in what the resync scripts write.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <ostream>
#include <string>
#include <string_view>

#include "documents.h"
#include "held_alarm.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

// The delivered rules keep control characters out of these two; a router may have others.
std::string OpenProfile() {
  return ProfileWith(
      {"/sys/friendlyname_validate = 0,32,1,1", "/uplink/loginusername_validate = 0,64,1,1"});
}

struct HostileText {
  const char* name;
  const char* text;  // at most 32 characters
  const char* line;  // as a script writes it
};

void PrintTo(const HostileText& text, std::ostream* out) { *out << text.name; }

constexpr HostileText kHostileTexts[] = {
    {"RealLineEnd", "a\nrouter=9", "a?router=9"},
    {"EscapedLineEnd", "a\\nrouter=9", "a\\nrouter=9"},
    {"EscapedOctal", "a\\012router=9\\c", "a\\012router=9\\c"},
    {"ControlCharacters", "a\rb\tc\033[2Jd\177e", "a?b?c?[2Jd?e"},
    {"SecondControlCharacters", "a\u0085b\u009B2Jc\u00FCd", "a?b?2Jc\u00FCd"},
    {"CommandSubstitution", "$(touch X)`touch X`", "$(touch X)`touch X`"},
    {"Quotes", "';touch X;'\"$HOME\"", "';touch X;'\"$HOME\""},
    {"PrintfFormats", "%s%n%d %%", "%s%n%d %%"},
    {"EchoOptionN", "-n", "-n"},
    {"EchoOptionE", "-e a\\nb", "-e a\\nb"},
    {"Patterns", "* ? [a-z] ~", "* ? [a-z] ~"},
    {"Operators", "a & b | sed < c > d", "a & b | sed < c > d"},
};

std::string XmlText(std::string_view text) {
  std::string xml;
  for (const char c : text) {
    xml += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
  }
  return xml;
}

class ScriptTextTest : public ::testing::TestWithParam<HostileText> {
 protected:
  std::string State(const std::string& file) const { return ReadFile(host_.dir().File(file)); }

  // Changes the settings and waits for the end of the commit.
  void Exchange(const std::string& document) {
    host_.UseProfile(OpenProfile());
    ASSERT_TRUE(host_.Start());
    ASSERT_THAT(Post(host_.port(), "/settings", document).body,
                HasSubstr("<RssSetResult>0</RssSetResult>"));
    ASSERT_TRUE(host_.WaitForOutput("action CfgSaveToFlash: "));
  }

  void ExpectOneEvent(const std::string& end) const {
    const std::string log = State("events.log");
    EXPECT_THAT(log, EndsWith(end + "\n"));
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
  }

  HostProcess host_;
};

TEST_P(ScriptTextTest, ANameFromADocumentIsOneLine) {
  Exchange(With(FactoryDocument(), "DeviceName", XmlText(GetParam().text)));
  EXPECT_EQ(host_.Node("/sys/friendlyname"), GetParam().text);
  EXPECT_EQ(State("device.state"),
            std::string("name=") + GetParam().line + "\nrouter=1\nroaming=off\n");
  ExpectOneEvent(std::string(" device: ") + GetParam().line);
  EXPECT_FALSE(std::filesystem::exists(host_.dir().File("X")));
  EXPECT_FALSE(std::filesystem::exists("X"));
}

TEST_P(ScriptTextTest, AnUplinkFromADocumentIsOneLine) {
  Exchange(With(FactoryDocument(), "UpLinkConnection",
                "<HardwareType>Ethernet</HardwareType><ConnType>PPPoE</ConnType><LoginUserName>" +
                    XmlText(GetParam().text) +
                    "</LoginUserName><LoginPassword>secret</LoginPassword>"));
  EXPECT_EQ(host_.Node("/uplink/loginusername"), GetParam().text);
  EXPECT_EQ(
      State("uplink.state"),
      std::string("hardware=Ethernet\nconntype=PPPoE\nloginusername=") + GetParam().line + "\n");
  ExpectOneEvent(" uplink: Ethernet, PPPoE");
}

INSTANTIATE_TEST_SUITE_P(Texts, ScriptTextTest, ::testing::ValuesIn(kHostileTexts),
                         [](const auto& text) { return std::string(text.param.name); });

TEST(ScriptFileTest, ANameFromAVariableIsOneLine) {
  HostProcess host;
  host.UseProfile(OpenProfile());
  ASSERT_TRUE(StartWithHeldAlarm(&host));
  EXPECT_EQ(Put(host.port(), "/vars/rss_DeviceName", "a\nrouter=9").status, 200);
  for (const char* const action : {"VerifyAllRssVars", "ApplyAllRssVars", "CommitRssVars"}) {
    EXPECT_EQ(Post(host.port(), std::string("/actions/") + action, "").body, "0 done\n");
  }
  EXPECT_TRUE(RingAlarm(host));
  EXPECT_TRUE(host.WaitForOutput("action CfgSaveToFlash"));
  EXPECT_EQ(host.End(SIGTERM), 0);
  EXPECT_EQ(host.Node("/sys/friendlyname"), "a\nrouter=9");
  EXPECT_EQ(ReadFile(host.dir().File("device.state")), "name=a?router=9\nrouter=1\nroaming=off\n");
}

// A script that cannot read the store must not say that all is well.
TEST(ScriptFileTest, AScriptThatCannotReadTheStoreFails) {
  HostProcess host;
  host.UseScript("uplink.sh", "#!/bin/sh\nexport KIOHOST_STORE=/nonexistent\nexec sh " KIO_HOST_DIR
                              "/scripts/uplink.sh\n");
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(Post(host.port(), "/settings",
                 With(FactoryDocument(), "UpLinkConnection", StaticUplink("192.0.2.77")))
                .status,
            200);
  EXPECT_TRUE(host.WaitForOutput("action WanResync: uplink.sh failed: exit status 1\n"));
  EXPECT_THAT(host.Output(), Not(HasSubstr("ran uplink.sh")));
  EXPECT_FALSE(std::filesystem::exists(host.dir().File("uplink.state")));
}

}  // namespace
