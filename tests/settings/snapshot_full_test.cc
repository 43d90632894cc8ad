// The full snapshot, which mirrors every current setting of the device.
#include <string>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

constexpr const char* kCount24 = "/lan/wireless2.4:1/configurable/acrule#";
constexpr const char* kRules24 = "/lan/wireless2.4:1/accesscontrol/acrule:";

class FullSnapshotTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreSampleDevice();
  }

  static const RssXmlData& With(const std::string& path, const std::string& value) {
    Host().Set(path, value);
    restore_XmlRssStatus(1);
    return rssXmlData;
  }

  static const RssXmlData& Without(const std::string& path) {
    Host().Delete(path);
    restore_XmlRssStatus(1);
    return rssXmlData;
  }

  static void StoreRules(int count) {
    for (int i = 1; i <= count; ++i) {
      Host().Set(kRules24 + std::to_string(i) + "/active", i % 2);
      Host().Set(kRules24 + std::to_string(i) + "/mac", "mac " + std::to_string(i));
    }
  }
};

TEST_F(FullSnapshotTest, ReadsDeviceAndUplink) {
  restore_XmlRssStatus(1);
  const RssUpLink& up = rssXmlData.upLink;
  EXPECT_STREQ(rssXmlData.deviceName, "Kitchen");
  EXPECT_STREQ(rssXmlData.devicePwd, "secret12");
  EXPECT_EQ(rssXmlData.routerEnbl, 1);
  EXPECT_STREQ(rssXmlData.easyRoaming, "roam-1");
  EXPECT_STREQ(up.connType, "DHCP");
  EXPECT_EQ(up.connTypeCode, 0);
  EXPECT_STREQ(up.loginUserName, "line-user");
  EXPECT_STREQ(up.loginPassword, "line-pass");
  EXPECT_STREQ(up.ip, "10.0.0.2");
  EXPECT_STREQ(up.netMask, "255.255.255.0");
  EXPECT_STREQ(up.gateway, "10.0.0.1");
  EXPECT_STREQ(up.dns, "10.0.0.3");
  EXPECT_STREQ(up.dsl.path, "Device/Uplink/DSL");
  EXPECT_STREQ(up.dsl.countryName, "Norway");
  EXPECT_STREQ(up.dsl.ispName, "Fjord DSL");
  EXPECT_STREQ(up.apn.path, "Device/Uplink/APN");
  EXPECT_STREQ(up.apn.countryName, "Sweden");
  EXPECT_STREQ(up.apn.ispName, "Berg Mobile");
}

TEST_F(FullSnapshotTest, ReadsExtenderSiteAndSafetyVyr) {
  const RssExtenderSite& site = With("/uplink/extendersite/survey", "1").upLink.extenderSite;
  EXPECT_STREQ(site.path, "Device/Uplink/ExtenderSite");
  EXPECT_EQ(site.survey, 1);
  EXPECT_STREQ(site.connRefSiteBssid, "02:00:00:00:99:01");
  EXPECT_STREQ(site.wirelessType, "2.4");
  EXPECT_EQ(site.wirelessTypeCode, 0);
  EXPECT_STREQ(site.wirelessName, "Upstream");
  EXPECT_STREQ(site.encryptionKey, "upstream-key");
  const RssSafetyVyr& safety = rssXmlData.safetyVyr;
  EXPECT_STREQ(safety.path, "Device/SafetyVyr");
  EXPECT_EQ(safety.safetyVyrEnbl, 1);
  EXPECT_EQ(safety.urlDetectEnbl, 0);
  EXPECT_EQ(safety.safetyNotifyEnbl, 1);
  EXPECT_EQ(safety.toolRecommendEnbl, 0);
}

TEST_F(FullSnapshotTest, ReadsARadio) {
  restore_XmlRssStatus(1);
  const RssWlan& radio = rssXmlData.wlan[1];
  EXPECT_EQ(radio.wlEnbl, 1);
  EXPECT_EQ(radio.wlSchedule, 1);
  EXPECT_STREQ(radio.wirelessBssid, "02:00:00:00:50:01");
  EXPECT_STREQ(radio.wirelessName, "Home-5");
  EXPECT_STREQ(radio.encryptionMode, "WPAWPA2");
  EXPECT_EQ(radio.encryptionModeCode, 3);
  EXPECT_STREQ(radio.encryptionType, "AUTO");
  EXPECT_EQ(radio.encryptionTypeCode, 0);
  EXPECT_STREQ(radio.encryptionKey, "home-key-50");
  EXPECT_STREQ(radio.channel, "36");
  EXPECT_STREQ(radio.country, "SE");
  EXPECT_STREQ(radio.accessControlPath, "Device/Wireless5/AccessControl");
  EXPECT_EQ(radio.wlAcEnbl, 1);
  EXPECT_STREQ(rssXmlData.wlan[0].accessControlPath, "Device/Wireless2.4/AccessControl");
  EXPECT_EQ(rssXmlData.wlan[0].encryptionModeCode, 4);
  EXPECT_EQ(rssXmlData.wlan[0].encryptionTypeCode, 4);
}

TEST_F(FullSnapshotTest, WordsGetTheirCodesAndSpelling) {
  const RssXmlData& record = With("/uplink/conntype", "pppOA");
  EXPECT_EQ(record.upLink.connTypeCode, 3);
  EXPECT_STREQ(record.upLink.connType, "PPPoA");
  EXPECT_EQ(With("/uplink/extendersite/wirelesstype", "6").upLink.extenderSite.wirelessTypeCode,
            -1);
  EXPECT_EQ(With("/lan/wireless5:1/encryptionmode", "WPA3").wlan[1].encryptionModeCode, -1);
  EXPECT_EQ(Without("/lan/wireless5:1/encryptiontype").wlan[1].encryptionTypeCode, 5);
  EXPECT_EQ(Without("/lan/wireless5:1/encryptionmode").wlan[1].encryptionModeCode, -1);
}

TEST_F(FullSnapshotTest, SwitchesThatCannotBeReadAreTwo) {
  EXPECT_EQ(Without("/sys/routerenbl").routerEnbl, 2);
  EXPECT_EQ(Without("/lan/wireless5:1/wlschedule").wlan[1].wlSchedule, 2);
  EXPECT_EQ(Without("/lan/wireless5:1/accesscontrol/wlacenbl").wlan[1].wlAcEnbl, 2);
  EXPECT_EQ(Without("/lan/wireless5:1/wlenbl").wlan[1].wlEnbl, 2);
  EXPECT_EQ(With("/sys/routerenbl", "-3").routerEnbl, 2);
}

TEST_F(FullSnapshotTest, SwitchesThatMustBeOne) {
  for (const char* value : {"0", "2", "", "true"}) {
    EXPECT_EQ(With("/safetyvyr/safetyvyrenbl", value).safetyVyr.safetyVyrEnbl, 0) << value;
    EXPECT_EQ(With("/safetyvyr/urldetectenbl", value).safetyVyr.urlDetectEnbl, 0) << value;
    EXPECT_EQ(With("/safetyvyr/safetynotifyenbl", value).safetyVyr.safetyNotifyEnbl, 0);
    EXPECT_EQ(With("/safetyvyr/toolrecommendenbl", value).safetyVyr.toolRecommendEnbl, 0);
    EXPECT_EQ(With("/uplink/extendersite/survey", value).upLink.extenderSite.survey, 0) << value;
  }
  EXPECT_EQ(With("/safetyvyr/toolrecommendenbl", "1").safetyVyr.toolRecommendEnbl, 1);
}

TEST_F(FullSnapshotTest, AbsentRadioIsReadAllTheSame) {
  const RssWlan& radio = With("/lan/wireless5:1/wlenbl", "2").wlan[1];
  EXPECT_EQ(rssXmlData.wlan5Feature, 0);
  EXPECT_EQ(radio.configurable, 0);
  EXPECT_EQ(radio.wlEnbl, 2);
  EXPECT_STREQ(radio.wirelessName, "Home-5");
  EXPECT_STREQ(radio.channelList, "0,36,40,44,48,100");
}

// The number of rules is read below the radio's configurable node, where it normally is not.
TEST_F(FullSnapshotTest, RuleCountIsReadBelowTheConfigurableNode) {
  StoreRules(3);
  Put(rssXmlData.wlan[0].acRule[0].mac, "kept");
  Put(rssXmlData.wlan[0].acRule[1].mac, "kept too");
  restore_XmlRssStatus(1);
  EXPECT_LE(rssXmlData.wlan[0].wlAcRuleNo, 0);
  EXPECT_STREQ(rssXmlData.wlan[0].acRule[0].mac, "kept");
  EXPECT_STREQ(rssXmlData.wlan[0].acRule[1].mac, "kept too");
  bool asked = false;
  for (const StoreCall& call : Host().calls()) {
    asked = asked || call.path == kCount24;
  }
  EXPECT_TRUE(asked) << "the count node is " << kCount24;
}

TEST_F(FullSnapshotTest, MissingRuleCountSetsTheModeToZero) {
  EXPECT_EQ(With("/lan/wireless2.4:1/accesscontrol/wlacmode", "1").wlan[0].wlAcMode, 0);
  Host().Set(kCount24, 0);
  EXPECT_EQ(With("/lan/wireless2.4:1/accesscontrol/wlacmode", "1").wlan[0].wlAcMode, 1);
  EXPECT_EQ(Without("/lan/wireless2.4:1/accesscontrol/wlacmode").wlan[0].wlAcMode, 0);
}

// Entries are filled from 1 on; entry 0 is left as it was.
TEST_F(FullSnapshotTest, RulesFillEntriesFromOneOn) {
  StoreRules(3);
  Host().Delete(std::string(kRules24) + "2/active");
  Host().Set(kCount24, 3);
  rssXmlData.wlan[0].acRule[0].active = 9;
  Put(rssXmlData.wlan[0].acRule[0].mac, "entry 0");
  restore_XmlRssStatus(1);
  const RssWlan& radio = rssXmlData.wlan[0];
  EXPECT_EQ(radio.wlAcRuleNo, 3);
  EXPECT_EQ(radio.acRule[0].active, 9);
  EXPECT_STREQ(radio.acRule[0].mac, "entry 0");
  EXPECT_STREQ(radio.acRule[0].path, "");
  EXPECT_EQ(radio.acRule[1].active, 1);
  EXPECT_STREQ(radio.acRule[1].mac, "mac 1");
  EXPECT_STREQ(radio.acRule[1].path, "Device/Wireless2.4/AccessControl/AcRule");
  EXPECT_EQ(radio.acRule[2].active, 0) << "an absent node gives 0";
  EXPECT_STREQ(radio.acRule[3].mac, "mac 3");
  EXPECT_STREQ(radio.acRule[4].mac, "");
}

class RuleCountTest : public FullSnapshotTest, public ::testing::WithParamInterface<int> {};

TEST_P(RuleCountTest, NoEntryBehindThe40thIsWritten) {
  StoreRules(60);
  Host().Set(kCount24, GetParam());
  restore_XmlRssStatus(1);
  const RssWlan& radio = rssXmlData.wlan[0];
  EXPECT_STREQ(radio.acRule[39].mac, "mac 39");
  EXPECT_STREQ(radio.accessControlPath, "Device/Wireless2.4/AccessControl");
  EXPECT_STREQ(radio.path, "Device/Wireless2.4");
  EXPECT_EQ(radio.encryptionModeCode, 4);
  EXPECT_EQ(radio.encryptionTypeCode, 4);
  EXPECT_EQ(radio.restart, 0);
  EXPECT_STREQ(radio.wirelessNameValidate, "0,32,1");
  EXPECT_STREQ(rssXmlData.wlan[1].wirelessName, "Home-5");
  EXPECT_TRUE(UnterminatedMembers().empty());
  // What walks the entries afterwards stays inside them, too.
  log_file::Start(6);
  dump_RssXmlData();
  EXPECT_EQ(log_file::Contents().find("AcRule:41"), std::string::npos);
  Put(rssXmlData.wlan[0].acRule[0].mac, "mac 0");
  EXPECT_EQ(Verify_RssXml(), 1) << rssXmlData.setMsg;
  Host().ClearCalls();
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  for (const StoreCall& call : Host().Writes()) {
    EXPECT_EQ(call.path.find("acrule:41/"), std::string::npos) << call.path;
  }
}

INSTANTIATE_TEST_SUITE_P(Counts, RuleCountTest, ::testing::Values(39, 40, 41, 60, 1000000));

TEST_F(FullSnapshotTest, ShorterTextsLeaveNothingBehind) {
  restore_XmlRssStatus(1);
  EXPECT_STREQ(With("/sys/friendlyname", "K").deviceName, "K");
  EXPECT_STREQ(Without("/sys/friendlyname").deviceName, "");
  EXPECT_STREQ(Without("/uplink/ip").upLink.ip, "");
}

TEST_F(FullSnapshotTest, TextsAreCutToTheirCapacity) {
  const std::string text(200, 'z');
  EXPECT_EQ(std::string(With("/sys/friendlyname", text).deviceName), text.substr(0, 127));
  EXPECT_EQ(std::string(With("/uplink/ip", text).upLink.ip), text.substr(0, 15));
  EXPECT_EQ(std::string(With("/lan/wireless5:1/wirelessbssid", text).wlan[1].wirelessBssid),
            text.substr(0, 17));
  EXPECT_EQ(std::string(With("/lan/wireless5:1/country", text).wlan[1].country),
            text.substr(0, 31));
  EXPECT_EQ(rssXmlData.wlan[1].wlSchedule, 1) << "the neighbours keep their values";
  EXPECT_STREQ(rssXmlData.upLink.netMask, "255.255.255.0");
}

TEST_F(FullSnapshotTest, EverySettingIsReadTheSameTwice) {
  restore_XmlRssStatus(1);
  const std::string first = RecordBytes(rssXmlData);
  restore_XmlRssStatus(1);
  EXPECT_TRUE(RecordBytes(rssXmlData) == first);
}

}  // namespace
}  // namespace kio::test
