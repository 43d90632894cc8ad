// Store texts that are longer than any field of the record.
#include <algorithm>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

const std::string kLong(4000, 'L');

class StoreTextTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreSampleDevice();
  }

  // The settings that are texts: nodes whose value is not a number.
  static std::vector<std::string> TextNodes() {
    std::vector<std::string> nodes;
    for (const auto& [path, value] : Host().nodes()) {
      const bool is_number = value.find_first_not_of("0123456789") == std::string::npos;
      const bool is_channel = path.find("/channel") != std::string::npos;
      if (!is_number || is_channel || path.find("wirelesstype") != std::string::npos) {
        nodes.push_back(path);
      }
    }
    return nodes;
  }

  static void ExpectSound(const std::string& what) {
    EXPECT_EQ(UnterminatedMembers(), std::vector<std::string>()) << what;
    EXPECT_EQ(rssXmlData.specVer, 101) << what;
    EXPECT_EQ(rssXmlData.wlan24Feature, 1) << what;
    EXPECT_EQ(rssXmlData.wlan5Feature, 1) << what;
  }
};

TEST_F(StoreTextTest, EveryTextAtOnce) {
  for (const int full : {0, 1}) {
    ClearRecord();
    Host().text_for_every_node = kLong;
    restore_XmlRssStatus(full);
    ExpectSound("every node");
    EXPECT_EQ(rssXmlData.deviceType, std::string(127, 'L'));
    EXPECT_EQ(rssXmlData.upLink.hardwareType, std::string(31, 'L'));
    EXPECT_EQ(rssXmlData.upLink.hardwareTypeCode, -1);
    EXPECT_EQ(rssXmlData.upLink.hardwareSupport, std::string(127, 'L'));
    EXPECT_EQ(rssXmlData.wlan[1].channelList, std::string(127, 'L'));
    EXPECT_EQ(rssXmlData.wlan[1].encryptionKeyValidate, std::string(127, 'L'));
    EXPECT_EQ(rssXmlData.friendlyNameValidate, std::string(127, 'L'));
    EXPECT_EQ(rssXmlData.tmpPath, std::string(127, 'L'));
    EXPECT_EQ(rssXmlData.configurable, 1);
    EXPECT_EQ(rssXmlData.upLink.configurable, 0);
    EXPECT_STREQ(rssXmlData.upLink.path, "Device/Uplink");
    EXPECT_STREQ(rssXmlData.wlan[1].path, "Device/Wireless5");
  }
  EXPECT_EQ(rssXmlData.upLink.ip, std::string(15, 'L'));
  EXPECT_EQ(rssXmlData.upLink.dns, std::string(15, 'L'));
  EXPECT_EQ(rssXmlData.wlan[0].wirelessBssid, std::string(17, 'L'));
  EXPECT_EQ(rssXmlData.wlan[0].encryptionMode, std::string(31, 'L'));
  EXPECT_EQ(rssXmlData.wlan[0].encryptionModeCode, -1);
  EXPECT_EQ(rssXmlData.upLink.extenderSite.connRefSiteBssid, std::string(17, 'L'));
  EXPECT_EQ(rssXmlData.wlan[0].wlEnbl, 1);
  EXPECT_EQ(rssXmlData.wlan[0].wlSchedule, 0);
}

TEST_F(StoreTextTest, WholeExchangeOverLongTexts) {
  Host().text_for_every_node = kLong;
  Parse(SampleDocument());
  ExpectSound("parse");
  ParseCloning(SampleDocument());
  ExpectSound("cloning");
  FillSampleRecord();
  Verify_RssXml();
  Apply_RssXmlToDevice();
  calc_RssExeFlag();
  rssXmlData.exeflag = 1 + 4 + 8 + 16 + 32 + 64;
  do_RssXml_Commit();
  ExpectSound("commit");
  log_file::Start(7);
  restore_XmlRssStatus(1);
  dump_RssXmlData();
  ExpectSound("dump");
}

TEST_F(StoreTextTest, EachTextInTurn) {
  for (const std::string& path : TextNodes()) {
    Host().Reset();
    StoreSampleDevice();
    Host().Set(path, kLong);
    ClearRecord();
    Parse(SampleDocument());
    ExpectSound(path);
    ParseCloning(SampleDocument());
    ExpectSound(path);
    restore_XmlRssStatus(1);
    ExpectSound(path);
    FillSampleRecord();
    Apply_RssXmlToDevice();
    ExpectSound(path);
    rssXmlData.exeflag = 17;
    do_RssXml_Commit();
    ExpectSound(path);
  }
}

// A text that is longer than what the record holds is not equal to its own beginning.
TEST_F(StoreTextTest, CutTextsAreNotEqualToTheStored) {
  FillSampleRecord();
  Host().Set("/sys/friendlyname", "Kitchen" + kLong);
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "Kitchen");
}

TEST_F(StoreTextTest, EntitiesAtTheCutOfARule) {
  for (std::size_t before = 118; before < 132; ++before) {
    Host().Set("/sys/friendlyname_validate",
               std::string(before, 'r') + "&lt;&amp;" + kLong.substr(200));
    restore_XmlRssStatus(0);
    EXPECT_EQ(UnterminatedMembers(), std::vector<std::string>());
    EXPECT_EQ(
        std::string(rssXmlData.friendlyNameValidate).substr(0, std::min<std::size_t>(before, 127)),
        std::string(std::min<std::size_t>(before, 127), 'r'));
    EXPECT_STREQ(rssXmlData.passwordValidate, "0,32,4");
  }
}

TEST_F(StoreTextTest, AbsentNodesDoNotShowTheNodeBefore) {
  for (const bool untouched : {true, false}) {
    Host().Reset();
    Host().absent_leaves_buffer = untouched;
    Host().Set("/zentrolinks/scriptdirecory", kLong);
    ClearRecord();
    restore_XmlRssStatus(1);
    for (const TextMember& member : TextMembers(rssXmlData)) {
      const bool is_path = member.name.find("ath") != std::string::npos;
      EXPECT_TRUE(is_path || std::string(member.text).empty()) << member.name;
    }
    EXPECT_EQ(rssXmlData.scriptPath, std::string(127, 'L'));
    EXPECT_STREQ(rssXmlData.tmpPath, "");
  }
}

}  // namespace
}  // namespace kio::test
