// Verification as a whole: the order of its tests, its modes, and what it leaves in the record.
#include <gmock/gmock.h>

#include <cerrno>
#include <functional>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

using Change = std::function<void(RssXmlData&)>;

struct Step {
  const char* message;
  Change spoil;
};

using Steps = std::vector<Step>;

class VerifyOrderTest : public SettingsTest {
 protected:
  // Spoils every pair of steps; the message must be the earlier one's.
  static void ExpectOrder(const Change& base, const Steps& steps) {
    for (std::size_t first = 0; first < steps.size(); ++first) {
      for (std::size_t second = first; second < steps.size(); ++second) {
        FillSampleRecord();
        base(rssXmlData);
        steps[second].spoil(rssXmlData);
        steps[first].spoil(rssXmlData);
        Host().ClearCommands();
        EXPECT_EQ(Verify_RssXml(), 0);
        EXPECT_STREQ(rssXmlData.setMsg, steps[first].message) << "before " << steps[second].message;
        EXPECT_EQ(Host().commands().size(), 6U) << "one fault is reported";
      }
    }
  }
};

const Step kName = {"Device/DeviceName", [](RssXmlData& r) { Put(r.deviceName, ""); }};
const Step kPassword = {"Device/DevicePwd", [](RssXmlData& r) { Put(r.devicePwd, ""); }};
const Step kHardware = {"Device/Uplink/HardwareType",
                        [](RssXmlData& r) { r.upLink.hardwareTypeCode = -1; }};
const Step kConnection = {"Device/Uplink/ConnType",
                          [](RssXmlData& r) { r.upLink.connTypeCode = -1; }};
const Steps kRadio24 = {
    {"Device/Wireless2.4/WlEnbl", [](RssXmlData& r) { r.wlan[0].wlEnbl = 4; }},
    {"Device/Wireless2.4/WlSchedule", [](RssXmlData& r) { r.wlan[0].wlSchedule = 3; }},
    {"Device/Wireless2.4/WirelessBSSID", [](RssXmlData& r) { Put(r.wlan[0].wirelessBssid, ""); }},
    {"Device/Wireless2.4/WirelessName", [](RssXmlData& r) { Put(r.wlan[0].wirelessName, ""); }},
    {"Device/Wireless2.4/EncryptionMode", [](RssXmlData& r) { r.wlan[0].encryptionModeCode = -1; }},
    {"Device/Wireless2.4/EncryptionType", [](RssXmlData& r) { r.wlan[0].encryptionTypeCode = -1; }},
    {"Device/Wireless2.4/EncryptionKey",
     [](RssXmlData& r) { Put(r.wlan[0].encryptionKey, "short"); }},
    {"Device/Wireless2.4/Channel", [](RssXmlData& r) { Put(r.wlan[0].channel, "99"); }},
    {"Device/Wireless2.4/AccessControl/WlEnbl", [](RssXmlData& r) { r.wlan[0].wlAcEnbl = 3; }},
};
const Steps kRadio24Access = {
    {"Device/Wireless2.4/Channel", [](RssXmlData& r) { Put(r.wlan[0].channel, "99"); }},
    {"Device/Wireless2.4/AccessControl/WlAcMode", [](RssXmlData& r) { r.wlan[0].wlAcMode = 2; }},
    {"Device/Wireless2.4/AccessControl/AcRule/Active",
     [](RssXmlData& r) { r.wlan[0].acRule[0].active = 2; }},
    {"Device/Wireless2.4/AccessControl/AcRule/MAC",
     [](RssXmlData& r) { Put(r.wlan[0].acRule[0].mac, ""); }},
    {"Rule 2/Active",
     [](RssXmlData& r) {
       r.wlan[0].acRule[1].active = 2;
       Put(r.wlan[0].acRule[1].path, "Rule 2");
     }},
    {"Rule 2/MAC",
     [](RssXmlData& r) {
       Put(r.wlan[0].acRule[1].mac, "");
       Put(r.wlan[0].acRule[1].path, "Rule 2");
     }},
    {"Device/Wireless5/WlEnbl", [](RssXmlData& r) { r.wlan[1].wlEnbl = 4; }},
    {"Device/Wireless5/AccessControl/WlAcMode", [](RssXmlData& r) { r.wlan[1].wlAcMode = 2; }},
    {"Device/SafetyVyr/SafetyVyrEnbl", [](RssXmlData& r) { r.safetyVyr.safetyVyrEnbl = 2; }},
    {"Device/SafetyVyr/UrlDetectEnbl", [](RssXmlData& r) { r.safetyVyr.urlDetectEnbl = 2; }},
    {"Device/SafetyVyr/SafetyNotifyEnbl", [](RssXmlData& r) { r.safetyVyr.safetyNotifyEnbl = 2; }},
    {"Device/SafetyVyr/ToolRecommendEnbl",
     [](RssXmlData& r) { r.safetyVyr.toolRecommendEnbl = 2; }},
};

void Nothing(RssXmlData& record) { (void)record; }

TEST_F(VerifyOrderTest, DeviceThenUplinkThenRadio) {
  Steps steps = {kName, kPassword, kHardware, kConnection};
  steps.insert(steps.end(), kRadio24.begin(), kRadio24.end());
  ExpectOrder(Nothing, steps);
}

TEST_F(VerifyOrderTest, AccessControlThenNextRadioThenSafetyVyr) {
  ExpectOrder(Nothing, kRadio24Access);
}

TEST_F(VerifyOrderTest, PppoeWithDsl) {
  const Change base = [](RssXmlData& r) {
    r.upLink.connTypeCode = 2;
    r.upLink.hardwareTypeCode = 2;
    Put(r.upLink.hardwareType, "VDSL");
  };
  ExpectOrder(
      base,
      {{"Device/Uplink/LoginUserName", [](RssXmlData& r) { Put(r.upLink.loginUserName, ""); }},
       {"Device/Uplink/LoginPassword", [](RssXmlData& r) { Put(r.upLink.loginPassword, ""); }},
       {"Device/Uplink/DSL/CountryName", [](RssXmlData& r) { Put(r.upLink.dsl.countryName, ""); }},
       {"Device/Uplink/DSL/IspName", [](RssXmlData& r) { Put(r.upLink.dsl.ispName, ""); }},
       kRadio24[0]});
}

TEST_F(VerifyOrderTest, StaticWithDslOfVersion10) {
  const Change base = [](RssXmlData& r) {
    r.specVer = 100;
    r.upLink.connTypeCode = 1;
    r.upLink.hardwareTypeCode = 5;
  };
  ExpectOrder(base, {{"Device/Uplink/IP", [](RssXmlData& r) { Put(r.upLink.ip, ""); }},
                     {"Device/Uplink/NetMask", [](RssXmlData& r) { Put(r.upLink.netMask, ""); }},
                     {"Device/Uplink/Gateway", [](RssXmlData& r) { Put(r.upLink.gateway, ""); }},
                     {"Device/Uplink/DNS", [](RssXmlData& r) { Put(r.upLink.dns, "x"); }},
                     {"Device/Uplink/DSL/MTU", [](RssXmlData& r) { r.upLink.mtu = 0; }},
                     {"Device/Uplink/DSL/VPI", [](RssXmlData& r) { r.upLink.dsl.vpi = 9; }},
                     {"Device/Uplink/DSL/VCI", [](RssXmlData& r) { r.upLink.dsl.vci = 0; }},
                     {"Device/Uplink/DSL/EncryptionMode",
                      [](RssXmlData& r) { r.upLink.dsl.encapModeCode = -1; }},
                     kRadio24[0]});
}

TEST_F(VerifyOrderTest, ExtenderSite) {
  const Change base = [](RssXmlData& r) {
    r.upLink.hardwareTypeCode = 3;
    Put(r.upLink.hardwareType, "WWan802.11");
  };
  ExpectOrder(base, {{"Device/Uplink/ExtenderSite/Survey",
                      [](RssXmlData& r) { r.upLink.extenderSite.survey = 2; }},
                     {"Device/Uplink/ExtenderSite/ConnRefSiteBSSID",
                      [](RssXmlData& r) { Put(r.upLink.extenderSite.connRefSiteBssid, " "); }},
                     {"Device/Uplink/ExtenderSite/WirelessType",
                      [](RssXmlData& r) { r.upLink.extenderSite.wirelessTypeCode = -1; }},
                     {"Device/Uplink/ExtenderSite/WirelessName",
                      [](RssXmlData& r) { Put(r.upLink.extenderSite.wirelessName, ""); }},
                     {"Device/Uplink/ExtenderSite/EncryptionKey",
                      [](RssXmlData& r) { Put(r.upLink.extenderSite.encryptionKey, "x"); }},
                     kRadio24[0]});
}

class VerifyTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    FillSampleRecord();
  }
};

TEST_F(VerifyTest, TextsAreTrimmedInPlace) {
  RssUpLink& up = rssXmlData.upLink;
  Put(rssXmlData.deviceName, " \tKitchen two\t ");
  Put(rssXmlData.devicePwd, " secret12");
  up.connTypeCode = 1;
  Put(up.ip, " 10.0.0.2 ");
  Put(up.netMask, "\t255.0.0.0");
  Put(up.gateway, " 10.0.0.1 ");
  Put(up.dns, " 10.0.0.3 ");
  up.hardwareTypeCode = 1;
  Put(up.hardwareType, "ADSL");
  Put(up.dsl.countryName, " Norway ");
  Put(up.dsl.ispName, " Fjord DSL ");
  RssWlan& radio = rssXmlData.wlan[1];
  Put(radio.wirelessBssid, " 02:00 ");
  Put(radio.wirelessName, " Home 5 ");
  Put(radio.encryptionKey, " home-key-50 ");
  Put(radio.channel, " 36\t");
  Put(radio.acRule[0].mac, "\t02:05 ");
  ASSERT_EQ(Verify_RssXml(), 1) << rssXmlData.setMsg;
  EXPECT_STREQ(rssXmlData.deviceName, "Kitchen two");
  EXPECT_STREQ(rssXmlData.devicePwd, "secret12");
  EXPECT_STREQ(up.ip, "10.0.0.2");
  EXPECT_STREQ(up.netMask, "255.0.0.0");
  EXPECT_STREQ(up.gateway, "10.0.0.1");
  EXPECT_STREQ(up.dns, "10.0.0.3");
  EXPECT_STREQ(up.dsl.countryName, "Norway");
  EXPECT_STREQ(up.dsl.ispName, "Fjord DSL");
  EXPECT_STREQ(radio.wirelessBssid, "02:00");
  EXPECT_STREQ(radio.wirelessName, "Home 5");
  EXPECT_STREQ(radio.encryptionKey, "home-key-50");
  EXPECT_STREQ(radio.channel, "36");
  EXPECT_STREQ(radio.acRule[0].mac, "02:05");
}

TEST_F(VerifyTest, LoginsApnAndSiteAreTrimmedInPlace) {
  RssUpLink& up = rssXmlData.upLink;
  up.connTypeCode = 2;
  Put(up.loginUserName, " user ");
  Put(up.loginPassword, " pass ");
  up.hardwareTypeCode = 4;
  Put(up.hardwareType, "WWanAPN");
  Put(up.apn.countryName, " Sweden ");
  Put(up.apn.ispName, " Berg ");
  ASSERT_EQ(Verify_RssXml(), 1) << rssXmlData.setMsg;
  EXPECT_STREQ(up.loginUserName, "user");
  EXPECT_STREQ(up.loginPassword, "pass");
  EXPECT_STREQ(up.apn.countryName, "Sweden");
  EXPECT_STREQ(up.apn.ispName, "Berg");
  up.hardwareTypeCode = 3;
  Put(up.hardwareType, "WWan802.11");
  Put(up.extenderSite.connRefSiteBssid, " 02:99 ");
  Put(up.extenderSite.wirelessName, " Up ");
  Put(up.extenderSite.encryptionKey, " abcde ");
  ASSERT_EQ(Verify_RssXml(), 1) << rssXmlData.setMsg;
  EXPECT_STREQ(up.extenderSite.connRefSiteBssid, "02:99");
  EXPECT_STREQ(up.extenderSite.wirelessName, "Up");
  EXPECT_STREQ(up.extenderSite.encryptionKey, "abcde");
}

TEST_F(VerifyTest, EmptyDnsBecomesTheDefault) {
  rssXmlData.upLink.connTypeCode = 1;
  for (const char* dns : {"", "  ", "\t"}) {
    Put(rssXmlData.upLink.dns, dns);
    EXPECT_EQ(Verify_RssXml(), 1);
    EXPECT_STREQ(rssXmlData.upLink.dns, "8.8.8.8");
  }
  rssXmlData.upLink.connTypeCode = 0;
  Put(rssXmlData.upLink.dns, "");
  EXPECT_EQ(Verify_RssXml(), 1);
  EXPECT_STREQ(rssXmlData.upLink.dns, "") << "only of a static uplink";
}

TEST_F(VerifyTest, CloningResetsAnUnusableChannel) {
  rssXmlData.apCloningOnly = 1;
  for (const char* channel : {"", "99", "-1"}) {
    Put(rssXmlData.wlan[0].channel, channel);
    Put(rssXmlData.wlan[1].channel, "40");
    EXPECT_EQ(Verify_RssXml(), 1);
    EXPECT_STREQ(rssXmlData.wlan[0].channel, "0");
    EXPECT_STREQ(rssXmlData.wlan[1].channel, "40");
  }
}

TEST_F(VerifyTest, CheckingGoesOnAfterAChannelReset) {
  rssXmlData.apCloningOnly = 1;
  Put(rssXmlData.wlan[0].channel, "99");
  rssXmlData.wlan[0].wlAcMode = 2;
  EXPECT_EQ(Verify_RssXml(), 0);
  EXPECT_STREQ(rssXmlData.setMsg, "Device/Wireless2.4/AccessControl/WlAcMode");
}

TEST_F(VerifyTest, CloningSkipsDeviceUplinkAndSafetyVyr) {
  rssXmlData.apCloningOnly = 1;
  Put(rssXmlData.deviceName, "");
  rssXmlData.upLink.connTypeCode = -1;
  rssXmlData.safetyVyr.safetyVyrEnbl = 9;
  EXPECT_EQ(Verify_RssXml(), 1);
}

// The test of the device's own switch belongs to the part that cloning skips.
TEST_F(VerifyTest, CloningVerifiesRadiosOfADeviceThatIsNotConfigurable) {
  rssXmlData.apCloningOnly = 1;
  rssXmlData.configurable = 0;
  rssXmlData.wlan[1].wlEnbl = 4;
  EXPECT_EQ(Verify_RssXml(), 0);
  EXPECT_STREQ(rssXmlData.setMsg, "Device/Wireless5/WlEnbl");
}

TEST_F(VerifyTest, Version10SkipsWhatItDoesNotHave) {
  rssXmlData.specVer = 100;
  RssWlan& radio = rssXmlData.wlan[0];
  Put(radio.wirelessBssid, "");
  radio.encryptionTypeCode = -1;
  Put(radio.channel, "");
  radio.wlAcEnbl = 9;
  EXPECT_EQ(Verify_RssXml(), 1);
  Put(radio.encryptionKey, "short");
  EXPECT_EQ(Verify_RssXml(), 0) << "the key is verified in every version";
  EXPECT_STREQ(rssXmlData.setMsg, "Device/Wireless2.4/EncryptionKey");
}

TEST_F(VerifyTest, EmptyPathLeavesTheFieldNameAlone) {
  Put(rssXmlData.safetyVyr.path, "");
  rssXmlData.safetyVyr.urlDetectEnbl = 2;
  EXPECT_EQ(Verify_RssXml(), 0);
  EXPECT_EQ(Host().commands(), ResultCommands(3, "UrlDetectEnbl", 0));
}

// The result of each rule stays behind in errno.
TEST_F(VerifyTest, RuleResultsAreLeftInErrno) {
  int seen = -1;
  Host().on_command = [&seen](const std::string&) { seen = seen < 0 ? errno : seen; };
  Put(rssXmlData.devicePwd, "x");
  errno = 77;
  EXPECT_EQ(Verify_RssXml(), 0);
  EXPECT_EQ(seen, 10);
  Put(rssXmlData.devicePwd, "secret12");
  errno = 77;
  EXPECT_EQ(Verify_RssXml(), 1);
  EXPECT_EQ(errno, 0);
  rssXmlData.configurable = 0;
  errno = 77;
  EXPECT_EQ(Verify_RssXml(), 1);
  EXPECT_EQ(errno, 77) << "no rule was applied";
}

TEST_F(VerifyTest, LogsEntryAndSuccess) {
  log_file::Start(7);
  Verify_RssXml();
  EXPECT_THAT(log_file::Contents(), ::testing::HasSubstr("1000:Verify_RssXml]\n"));
  EXPECT_THAT(log_file::Contents(), ::testing::HasSubstr("1000:Verify_RssXml]done, ret=1\n"));
}

TEST_F(VerifyTest, EarlyReturnsLogNoEnd) {
  log_file::Start(7);
  rssXmlData.upLink.hardwareTypeCode = 3;
  Put(rssXmlData.upLink.hardwareType, "WWan802.11");
  rssXmlData.upLink.extenderSite.survey = 1;
  EXPECT_EQ(Verify_RssXml(), 1);
  rssXmlData.configurable = 0;
  EXPECT_EQ(Verify_RssXml(), 1);
  EXPECT_THAT(log_file::Contents(), ::testing::Not(::testing::HasSubstr("done, ret=1")));
}

TEST_F(VerifyTest, BadMacIsLogged) {
  log_file::Start(6);
  Put(rssXmlData.wlan[0].acRule[1].mac, "  ");
  EXPECT_EQ(Verify_RssXml(), 0);
  EXPECT_THAT(log_file::Lines(), ::testing::Contains("1000:Invalid Mac="));
}

}  // namespace
}  // namespace kio::test
