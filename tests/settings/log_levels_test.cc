// The levels of the messages of an exchange.
#include "support/log_levels.h"

#include <string>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"
#include "testing/heap_chars.h"

namespace kio::test {
namespace {

// What actions are to return instead of being run; 0 lets them run.
unsigned int g_failed_actions = 0;

class SettingsLevelsTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreSampleDevice();
  }

  static void ParseSample() {
    ClearRecord();
    Parse(SampleDocument());
  }
  static void VerifyRuleWithoutMac() {
    FillSampleRecord();
    Put(rssXmlData.wlan[0].acRule[0].mac, " ");
    EXPECT_EQ(Verify_RssXml(), 0);
  }
  static void CommitWith(int actions, int previous_actions) {
    rssXmlData.exeflag = actions;
    rssXmlData.pre_exeflag = previous_actions;
    do_RssXml_Commit();
  }
  static void CommitThatFails() {
    g_failed_actions = KIOAPP_SYNC_WLAN;
    CommitWith(KIOAPP_SYNC_WLAN, 0);
    g_failed_actions = 0;
  }
};

TEST_F(SettingsLevelsTest, Documents) {
  const std::string refused = "<root></root>";
  ExpectLevels({
      {"what was received", [&] { Parse(refused); }, kActionLevel,
       "---- Received Rss XML Data Begin ----\n<root></root>\n"
       "---- Received Rss XML Data End ----\n"},
      {"the result", [&] { Parse(refused); }, kDetailLevel, "done, ret=0\n"},
      {"another version", [] { Parse(Version10Document()); }, kFailureLevel,
       "Wrong Spec Version! Device=1.1, XML=1.0\n"},
  });
}

TEST_F(SettingsLevelsTest, Fields) {
  ExpectLevels({
      {"a number", ParseSample, kDetailLevel, "Rss RouterEnbl=1\n"},
      {"the block of a rule", ParseSample, kDetailLevel,
       "do_RssAcRule_Parser]Device/Wireless2.4/AccessControl\n" + std::string(kTimeBefore) +
           "prepareXmlBlockData]\n"},
      {"a word", ParseSample, kDetailLevel, "Rss EncryptionMode='WPA2' -> 4\n"},
      {"the section above",
       [] {
         RssIsp provider = {};
         HeapChars text("<DSL></DSL>");
         do_RssISP_Parser("Above/All", text, 0, &provider, "DSL");
       },
       kDetailLevel, "Above/All\n"},
  });
}

TEST_F(SettingsLevelsTest, VerifyingAndApplying) {
  ExpectLevels({
      {"a valid record",
       [] {
         FillSampleRecord();
         EXPECT_EQ(Verify_RssXml(), 1);
       },
       kDetailLevel, "done, ret=1\n"},
      {"the time before a rule without address", VerifyRuleWithoutMac, kActionLevel, kTimeBefore},
      {"a rule without address", VerifyRuleWithoutMac, kActionLevel, "Invalid Mac=\n"},
      {"an applied record",
       [] {
         FillSampleRecord();
         EXPECT_EQ(Apply_RssXmlToDevice(), 1);
       },
       kActionLevel, "done,ret=1,Restart:wlan2.4=0,wlan5=0,uplink=0,survey=0,roaming=0\n"},
      {"a result", [] { write_RssXml_ResultXml(3, "Device/X", 7); }, kEventLevel,
       "Rss SetResult=3, SetMsg='Device/X', GetWaitSec=7\n"},
      {"an element of a document", [] { write_ResultXmlFile("file", "tag", "value"); },
       kDetailLevel, "<tag>value</tag></root>'"},
  });
}

TEST_F(SettingsLevelsTest, Commit) {
  const auto calculate = [] {
    ClearRecord();
    rssXmlData.upLink.restart = 1;
    calc_RssExeFlag();
  };
  ExpectLevels({
      {"the time before the mask", calculate, kActionLevel, kTimeBefore},
      {"the mask", calculate, kActionLevel, "exeflag=1, exeWaitSec=20\n"},
      {"the mask of the exchange before", [] { CommitWith(0, 4); }, kDetailLevel,
       "Use pre_exeflag, pre_exeflag=4, exeflag=0\n"},
      {"the mask that is run", [] { CommitWith(4, 0); }, kDetailLevel, "exeflag=4\n"},
      {"a failure", CommitThatFails, kFailureLevel, "exe_ExternalCall was fail!"},
      {"the end", [] { CommitWith(4, 0); }, kDetailLevel, "done\n"},
  });
}

TEST_F(SettingsLevelsTest, ChannelUse) {
  const auto move = [] {
    Host().Set("/lan/wireless2.4:1/channel", 6);
    Host().Set("/lan/wireless2.4:1/channelusing", 6);
    checkWlanChannelUsing();
    Host().Set("/lan/wireless2.4:1/channel", 0);
    Host().Set("/lan/wireless2.4:1/channelusing", 11);
    EXPECT_EQ(checkWlanChannelUsing(), 1);
  };
  ExpectLevels(
      {{"a moved channel", move, kDetailLevel, "Wlan_2.4 Channel:0 ChannelUsing:6->11\n"}});
}

TEST_F(SettingsLevelsTest, FailureOfACommitIsItsResult) {
  CommitThatFails();
  g_failed_actions = KIOAPP_SYNC_WLAN;
  rssXmlData.exeflag = KIOAPP_SYNC_WLAN;
  EXPECT_EQ(do_RssXml_Commit(), unsigned{KIOAPP_SYNC_WLAN});
  g_failed_actions = 0;
  EXPECT_EQ(do_RssXml_Commit(), 0U);
}

}  // namespace
}  // namespace kio::test

// The linker chooses these names.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {
unsigned int __real_exe_ExternalCall(unsigned int mask);

unsigned int __wrap_exe_ExternalCall(unsigned int mask) {
  return kio::test::g_failed_actions != 0 ? kio::test::g_failed_actions
                                          : __real_exe_ExternalCall(mask);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
