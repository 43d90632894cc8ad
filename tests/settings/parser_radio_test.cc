// Reading the settings of the radios from a document.
#include <algorithm>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

class ParserRadioTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreSampleDevice();
  }

  static RssWlan& Radio() { return rssXmlData.wlan[0]; }
  static std::string At(const std::string& name) { return "Device/Wireless2.4/" + name; }
  static std::string Node(const std::string& name) { return "/lan/wireless2.4:1/" + name; }

  // A document without rules in the 2.4 GHz radio.
  static Document WithoutRules() {
    Document document = SampleDocument();
    return document.Remove(At("AccessControl/AcRule")).Remove(At("AccessControl/AcRule"));
  }
};

TEST_F(ParserRadioTest, ReadsARadio) {
  Document document = SampleDocument();
  document.Set(At("WlEnbl"), "0").Set(At("WlSchedule"), " 1 ");
  document.Set(At("WirelessBSSID"), "02:AA").Set(At("WirelessName"), "N&amp;N");
  document.Set(At("EncryptionMode"), " wpa ").Set(At("EncryptionType"), "tkip\t");
  document.Set(At("EncryptionKey"), "key&lt;key&gt;").Set(At("Channel"), " 11 ");
  document.Set(At("AccessControl/WlAcMode"), "0");
  EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Radio().wlEnbl, 0);
  EXPECT_EQ(Radio().wlSchedule, 1);
  EXPECT_STREQ(Radio().wirelessBssid, "02:AA");
  EXPECT_STREQ(Radio().wirelessName, "N&N");
  EXPECT_STREQ(Radio().encryptionMode, "WPA");
  EXPECT_EQ(Radio().encryptionModeCode, 2);
  EXPECT_STREQ(Radio().encryptionType, "TKIP");
  EXPECT_EQ(Radio().encryptionTypeCode, 3);
  EXPECT_STREQ(Radio().encryptionKey, "key<key>");
  EXPECT_STREQ(Radio().channel, "11");
  EXPECT_EQ(Radio().wlAcEnbl, 1);
  EXPECT_EQ(Radio().wlAcMode, 0);
  EXPECT_STREQ(Radio().accessControlPath, "Device/Wireless2.4/AccessControl");
  EXPECT_STREQ(rssXmlData.wlan[1].wirelessName, "Home-5");
}

TEST_F(ParserRadioTest, ReadsTheRulesInOrder) {
  EXPECT_EQ(Parse(SampleDocument()), 1);
  EXPECT_EQ(Radio().wlAcRuleNo, 2);
  EXPECT_EQ(Radio().acRule[0].active, 1);
  EXPECT_STREQ(Radio().acRule[0].mac, "02:00:00:00:00:01");
  EXPECT_STREQ(Radio().acRule[0].path, "Device/Wireless2.4/AccessControl/AcRule");
  EXPECT_EQ(Radio().acRule[1].active, 0);
  EXPECT_STREQ(Radio().acRule[1].mac, "02:00:00:00:00:02");
  EXPECT_EQ(rssXmlData.wlan[1].wlAcRuleNo, 1);
  EXPECT_STREQ(rssXmlData.wlan[1].acRule[0].mac, "02:00:00:00:00:05");
}

TEST_F(ParserRadioTest, TextsAreCut) {
  Host().Set(Node("wirelessname_validate"), "2");
  Document document = SampleDocument();
  document.Set(At("WirelessName"), std::string(200, 'w'));
  document.Set(At("EncryptionKey"), std::string(40, 'k'));
  document.Set(At("WirelessBSSID"), std::string(40, 'b'));
  document.Set(At("AccessControl/AcRule/MAC"), std::string(40, 'm'));
  document.Set(At("Channel"), "6" + std::string(60, ' '));
  EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Radio().wirelessName, std::string(127, 'w'));
  EXPECT_EQ(Radio().encryptionKey, std::string(31, 'k'));
  EXPECT_EQ(Radio().wirelessBssid, std::string(17, 'b'));
  EXPECT_EQ(Radio().acRule[0].mac, std::string(17, 'm'));
  EXPECT_EQ(Host().Text(Node("encryptionkey")), std::string(31, 'k'));
}

TEST_F(ParserRadioTest, EmptyEncryptionTypeIsAWord) {
  Document document = SampleDocument();
  document.Set(At("EncryptionMode"), "none").SetMarkup(At("EncryptionType"), "<EncryptionType/>");
  EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Radio().encryptionTypeCode, 5);
  EXPECT_EQ(Host().Text(Node("encryptiontype")), "");
  EXPECT_EQ(Host().Text(Node("encryptionmode")), "None");
}

TEST_F(ParserRadioTest, AccessControlOffReadsNothingMore) {
  Radio().wlAcRuleNo = 2;
  Document document = WithoutRules();
  document.Set(At("AccessControl/WlAcEnbl"), "0").Remove(At("AccessControl/WlAcMode"));
  EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Radio().wlAcRuleNo, 0);
  EXPECT_EQ(Host().Text(Node("accesscontrol/wlacenbl")), "0");
  EXPECT_EQ(Host().Text(Node("accesscontrol/acrule:2/mac")), "02:00:00:00:00:02");
}

TEST_F(ParserRadioTest, NoRulesDeleteTheStoredOnes) {
  EXPECT_EQ(Parse(WithoutRules()), 1);
  EXPECT_EQ(Radio().wlAcRuleNo, 0);
  EXPECT_EQ(Host().Text(Node("accesscontrol/acrule:1/mac")), std::nullopt);
}

class RuleNumberTest : public ParserRadioTest, public ::testing::WithParamInterface<int> {};

TEST_P(RuleNumberTest, FortyRulesAtMost) {
  Document document = WithoutRules();
  for (int i = 0; i < GetParam(); ++i) {
    document.AddRule("Wireless2.4", "1", "mac " + std::to_string(i));
  }
  EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  const int used = std::min(GetParam(), 40);
  EXPECT_EQ(Radio().wlAcRuleNo, used);
  EXPECT_EQ(Radio().acRule[used - 1].mac, "mac " + std::to_string(used - 1));
  EXPECT_EQ(Host().Text(Node("accesscontrol/acrule#")), std::to_string(used));
  EXPECT_STREQ(Radio().accessControlPath, "Device/Wireless2.4/AccessControl");
}

INSTANTIATE_TEST_SUITE_P(Numbers, RuleNumberTest, ::testing::Values(1, 39, 40, 41, 45, 1000));

TEST_F(ParserRadioTest, RulesBeyondTheFortiethAreNotEvenRead) {
  Document document = WithoutRules();
  for (int i = 0; i < 40; ++i) {
    document.AddRule("Wireless2.4", "1", "mac " + std::to_string(i));
  }
  std::string text = document.Text();
  text.insert(text.find("</AccessControl>"), "<AcRule><Active>1</Active></AcRule><AcRule>");
  EXPECT_EQ(Parse(text), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Radio().wlAcRuleNo, 40);
}

TEST_F(ParserRadioTest, RulesMayBeWrapped) {
  std::string text = SampleDocument().Text();
  text.insert(text.find("<AcRule>"), "<AcRules>");
  text.insert(text.find("</AccessControl>"), "</AcRules>");
  EXPECT_EQ(Parse(text), 1);
  EXPECT_EQ(Radio().wlAcRuleNo, 2);
}

TEST_F(ParserRadioTest, UnclosedRuleIsMissing) {
  std::string text = SampleDocument().Text();
  text.insert(text.find("</AccessControl>"), "<AcRule><Active>1</Active><MAC>x</MAC>");
  EXPECT_EQ(Parse(text), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(2, "AcRule", 0));
}

// A rule ends at the first closing tag; an unclosed one before it shares its end.
TEST_F(ParserRadioTest, UnclosedRuleBeforeAnotherSharesItsEnd) {
  std::string text = SampleDocument().Text();
  text.insert(text.find("<AcRule>"), "<AcRule>");
  EXPECT_EQ(Parse(text), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Radio().wlAcRuleNo, 3);
  EXPECT_STREQ(Radio().acRule[0].mac, Radio().acRule[1].mac);
}

// An empty block has length 0, and a search in it covers the rest of the document.
TEST_F(ParserRadioTest, EmptyAccessControlReadsTheNextRadios) {
  Document document = SampleDocument();
  document.SetMarkup(At("AccessControl"), "<AccessControl/>");
  document.Set("Device/Wireless5/AccessControl/WlAcMode", "1");
  EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  EXPECT_EQ(Radio().wlAcEnbl, 1);
  EXPECT_EQ(Radio().wlAcMode, 1);
  EXPECT_EQ(Radio().wlAcRuleNo, 1);
  EXPECT_STREQ(Radio().acRule[0].mac, "02:00:00:00:00:05");
}

TEST_F(ParserRadioTest, EmptyRuleReadsTheNextRule) {
  for (const char* markup : {"<AcRule></AcRule>", "<AcRule/><AcRule></AcRule>"}) {
    Document document = SampleDocument();
    EXPECT_EQ(Parse(document.SetMarkup(At("AccessControl/AcRule"), markup)), 1);
    EXPECT_EQ(Radio().wlAcRuleNo, 2);
    EXPECT_STREQ(Radio().acRule[0].mac, "02:00:00:00:00:02");
    EXPECT_STREQ(Radio().acRule[1].mac, "02:00:00:00:00:02");
  }
}

TEST_F(ParserRadioTest, RadioConfigurableZeroLeavesTheRadioAlone) {
  Document document = SampleDocument();
  document.SetFirst("Device/Configurable", "1");
  document.Remove("Device/Wireless2.4").Set(At("Configurable"), "0");
  document.Set("Device/Wireless5/Channel", "44");
  EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  for (const std::string& change : Changes()) {
    EXPECT_EQ(change.find("wireless2.4"), std::string::npos) << change;
  }
  EXPECT_EQ(Host().Text("/lan/wireless5:1/channel"), "44");
}

TEST_F(ParserRadioTest, RadioThatTheDeviceFixesNeedsNoBlock) {
  Host().Set(Node("configurable"), 0);
  Document document = SampleDocument();
  document.Set(At("Channel"), "99");
  EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  ClearRecord();
  EXPECT_EQ(Parse(document.Remove("Device/Wireless2.4")), 1) << rssXmlData.setMsg;
  EXPECT_STREQ(Radio().accessControlPath, "Device/Wireless2.4/AccessControl");
  EXPECT_EQ(Host().Text(Node("channel")), "6");
}

TEST_F(ParserRadioTest, AbsentRadiosNeedNoBlock) {
  Host().Set(Node("wlenbl"), 2);
  Host().Set("/lan/wireless5:1/wlenbl", 4);
  Document document = SampleDocument();
  EXPECT_EQ(Parse(document.Remove("Device/Wireless2.4").Remove("Device/Wireless5")), 1);
  EXPECT_TRUE(Changes().empty());
}

TEST_F(ParserRadioTest, FaultsAreToldWithTheirSection) {
  Document document = SampleDocument();
  EXPECT_EQ(Parse(document.Set("Device/Wireless5/AccessControl/AcRule/Active", "2")), 0);
  EXPECT_EQ(Host().commands(),
            ResultCommands(3, "Device/Wireless5/AccessControl/AcRule/Active", 0));
}

}  // namespace
}  // namespace kio::test
