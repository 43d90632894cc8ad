// The snapshot of the device that every exchange starts with: capabilities, paths and rules.
#include <string>
#include <utility>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

class SnapshotTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreSampleDevice();
  }

  static void Restore() {
    ClearRecord();
    restore_XmlRssStatus(0);
  }

  static const RssXmlData& With(const std::string& path, const std::string& value) {
    Host().Set(path, value);
    Restore();
    return rssXmlData;
  }

  static const RssXmlData& Without(const std::string& path) {
    Host().Delete(path);
    Restore();
    return rssXmlData;
  }
};

TEST_F(SnapshotTest, ReadsCapabilitiesPathsAndRules) {
  Restore();
  EXPECT_EQ(rssXmlData.specMajor, 1);
  EXPECT_EQ(rssXmlData.specMinor, 1);
  EXPECT_EQ(rssXmlData.specVer, 101);
  EXPECT_EQ(rssXmlData.configurable, 1);
  EXPECT_STREQ(rssXmlData.deviceType, "Router");
  EXPECT_STREQ(rssXmlData.devicePath, "Device");
  EXPECT_STREQ(rssXmlData.tmpPath, "/var/tmp");
  EXPECT_STREQ(rssXmlData.scriptPath, "/etc/scripts");
  EXPECT_STREQ(rssXmlData.friendlyNameValidate, "0,32,1");
  EXPECT_STREQ(rssXmlData.passwordValidate, "0,32,4");
  EXPECT_STREQ(rssXmlData.loginUserNameValidate, "0,64,1");
  EXPECT_STREQ(rssXmlData.loginPasswordValidate, "0,64,1");
  EXPECT_EQ(rssXmlData.upLink.configurable, 1);
  EXPECT_STREQ(rssXmlData.upLink.path, "Device/Uplink");
  EXPECT_STREQ(rssXmlData.upLink.hardwareType, "Ethernet");
  EXPECT_EQ(rssXmlData.upLink.hardwareTypeCode, 0);
  EXPECT_STREQ(rssXmlData.upLink.hardwareSupport, "Ethernet,ADSL,VDSL,WWan802.11,WWanAPN,DSL");
}

TEST_F(SnapshotTest, ReadsTheRadios) {
  Restore();
  const RssWlan& radio = rssXmlData.wlan[1];
  EXPECT_EQ(rssXmlData.wlan24Feature, 1);
  EXPECT_EQ(rssXmlData.wlan5Feature, 1);
  EXPECT_EQ(rssXmlData.wlan[0].configurable, 1);
  EXPECT_EQ(radio.configurable, 1);
  EXPECT_STREQ(rssXmlData.wlan[0].path, "Device/Wireless2.4");
  EXPECT_STREQ(radio.path, "Device/Wireless5");
  EXPECT_STREQ(radio.channelList, "0,36,40,44,48,100");
  EXPECT_STREQ(radio.wirelessNameValidate, "0,31,1");
  EXPECT_STREQ(radio.encryptionKeyValidate, "0,63,0");
  EXPECT_STREQ(rssXmlData.wlan[0].wirelessNameValidate, "0,32,1");
}

TEST_F(SnapshotTest, LeavesCurrentSettingsAlone) {
  FillSampleRecord();
  const RssXmlData before = rssXmlData;
  Put(rssXmlData.deviceName, "stale name");
  Put(rssXmlData.upLink.connType, "stale type");
  Put(rssXmlData.wlan[0].wirelessName, "stale wifi");
  Put(rssXmlData.wlan[1].channel, "77");
  rssXmlData.routerEnbl = 55;
  rssXmlData.wlan[0].wlEnbl = 66;
  rssXmlData.safetyVyr.urlDetectEnbl = 44;
  rssXmlData.exeflag = 33;
  rssXmlData.pre_exeflag = 34;
  restore_XmlRssStatus(0);
  EXPECT_STREQ(rssXmlData.deviceName, "stale name");
  EXPECT_STREQ(rssXmlData.upLink.connType, "stale type");
  EXPECT_STREQ(rssXmlData.wlan[0].wirelessName, "stale wifi");
  EXPECT_STREQ(rssXmlData.wlan[1].channel, "77");
  EXPECT_EQ(rssXmlData.routerEnbl, 55);
  EXPECT_EQ(rssXmlData.wlan[0].wlEnbl, 66);
  EXPECT_EQ(rssXmlData.safetyVyr.urlDetectEnbl, 44);
  EXPECT_EQ(rssXmlData.exeflag, 33);
  EXPECT_EQ(rssXmlData.pre_exeflag, 34);
  EXPECT_STREQ(rssXmlData.devicePwd, before.devicePwd);
  EXPECT_STREQ(rssXmlData.wlan[0].acRule[1].mac, before.wlan[0].acRule[1].mac);
}

TEST_F(SnapshotTest, MissingVersionPartsBecomeOne) {
  EXPECT_EQ(Without("/zentrolinks/specversion/major").specVer, 101);
  EXPECT_EQ(rssXmlData.specMajor, 1);
  EXPECT_EQ(Without("/zentrolinks/specversion/minor").specVer, 101);
  EXPECT_EQ(rssXmlData.specMinor, 1);
  EXPECT_EQ(With("/zentrolinks/specversion/major", "-4").specMajor, 1);
  EXPECT_EQ(With("/zentrolinks/specversion/minor", "-1").specMinor, 1);
  EXPECT_EQ(With("/zentrolinks/specversion/major", "2").specVer, 201);
  EXPECT_EQ(With("/zentrolinks/specversion/minor", "0").specVer, 200);
}

TEST_F(SnapshotTest, CloningFeatureIsAnUnsignedByteBelowThree) {
  const std::vector<std::pair<std::string, int>> rows = {
      {"0", 0},  {"1", 1},   {"2", 2},   {"3", 0},   {"7", 0},
      {"-1", 0}, {"256", 0}, {"257", 1}, {"258", 2}, {"259", 0}};
  for (const auto& [value, feature] : rows) {
    EXPECT_EQ(With("/zentrolinks/apcloning", value).apCloningFeature, feature) << value;
  }
  EXPECT_EQ(Without("/zentrolinks/apcloning").apCloningFeature, 0);
}

TEST_F(SnapshotTest, Version10HasNeitherCloningNorRoaming) {
  EXPECT_EQ(With("/zentrolinks/specversion/minor", "0").specVer, 100);
  EXPECT_EQ(rssXmlData.apCloningFeature, 0);
  EXPECT_EQ(rssXmlData.easyRoamingFeature, 0);
}

TEST_F(SnapshotTest, SwitchesThatMustBeOne) {
  for (const char* value : {"0", "2", "", "01", "yes", "1 "}) {
    EXPECT_EQ(With("/zentrolinks/easyroaming", value).easyRoamingFeature, 0) << value;
    EXPECT_EQ(With("/zentrolinks/safetyvyr", value).safetyVyrFeature, 0) << value;
    EXPECT_EQ(With("/uplink/configurable", value).upLink.configurable, 0) << value;
  }
  EXPECT_EQ(With("/zentrolinks/easyroaming", "1").easyRoamingFeature, 1);
  EXPECT_EQ(With("/zentrolinks/safetyvyr", "1").safetyVyrFeature, 1);
  EXPECT_EQ(With("/uplink/configurable", "1").upLink.configurable, 1);
  EXPECT_EQ(Without("/zentrolinks/easyroaming").easyRoamingFeature, 0);
  EXPECT_EQ(Without("/zentrolinks/safetyvyr").safetyVyrFeature, 0);
  EXPECT_EQ(Without("/uplink/configurable").upLink.configurable, 0);
}

TEST_F(SnapshotTest, SwitchesThatMustBeZero) {
  for (const char* value : {"1", "2", "", "00", "no", "0 "}) {
    EXPECT_EQ(With("/zentrolinks/fwupgrade", value).fwUpgradeFeature, 1) << value;
    EXPECT_EQ(With("/zentrolinks/configurable", value).configurable, 1) << value;
    EXPECT_EQ(With("/lan/wireless5:1/configurable", value).wlan[1].configurable, 1) << value;
  }
  EXPECT_EQ(With("/zentrolinks/fwupgrade", "0").fwUpgradeFeature, 0);
  EXPECT_EQ(With("/zentrolinks/configurable", "0").configurable, 0);
  EXPECT_EQ(With("/lan/wireless5:1/configurable", "0").wlan[1].configurable, 0);
  EXPECT_EQ(rssXmlData.wlan5Feature, 1) << "the radio exists all the same";
  EXPECT_EQ(Without("/zentrolinks/fwupgrade").fwUpgradeFeature, 1);
  EXPECT_EQ(Without("/zentrolinks/configurable").configurable, 1);
  EXPECT_EQ(Without("/lan/wireless5:1/configurable").wlan[1].configurable, 1);
}

TEST_F(SnapshotTest, RadioExistsByTheSignedByteOfItsSwitch) {
  const std::vector<std::pair<std::string, int>> rows = {
      {"0", 1},  {"1", 1},   {"2", 0},   {"3", 1},   {"4", 0},   {"5", 0},   {"127", 0},
      {"-1", 0}, {"255", 0}, {"256", 1}, {"257", 1}, {"258", 0}, {"259", 1}, {"-253", 1}};
  for (const auto& [value, exists] : rows) {
    EXPECT_EQ(With("/lan/wireless5:1/wlenbl", value).wlan5Feature, exists) << value;
    EXPECT_EQ(rssXmlData.wlan[1].configurable, exists) << value;
    EXPECT_EQ(With("/lan/wireless2.4:1/wlenbl", value).wlan24Feature, exists) << value;
    EXPECT_EQ(rssXmlData.wlan[0].configurable, exists) << value;
  }
  EXPECT_EQ(Without("/lan/wireless5:1/wlenbl").wlan5Feature, 0);
}

TEST_F(SnapshotTest, AbsentRadioIsNotReadFurther) {
  FillSampleRecord();
  Host().Set("/lan/wireless5:1/wlenbl", "2");
  Host().Set("/lan/wireless5:1/channellist", "1");
  restore_XmlRssStatus(0);
  EXPECT_EQ(rssXmlData.wlan5Feature, 0);
  EXPECT_EQ(rssXmlData.wlan[1].configurable, 0);
  EXPECT_STREQ(rssXmlData.wlan[1].channelList, "0,36,40,44,48,100");
  EXPECT_STREQ(rssXmlData.wlan[1].path, "Device/Wireless5");
}

TEST_F(SnapshotTest, ChannelListIsTrimmed) {
  EXPECT_STREQ(With("/lan/wireless2.4:1/channellist", " \t1, 2\t ").wlan[0].channelList, "1, 2");
}

TEST_F(SnapshotTest, RulesAreDecoded) {
  const std::string rule = "0,64,0,0,0,&lt;,&amp;,&#39;";
  const char* decoded = "0,64,0,0,0,<,&,'";
  EXPECT_STREQ(With("/sys/friendlyname_validate", rule).friendlyNameValidate, decoded);
  EXPECT_STREQ(With("/sys/user:1/password_validate", rule).passwordValidate, decoded);
  EXPECT_STREQ(With("/uplink/loginusername_validate", rule).loginUserNameValidate, decoded);
  EXPECT_STREQ(With("/uplink/loginpassword_validate", rule).loginPasswordValidate, decoded);
  EXPECT_STREQ(With("/lan/wireless5:1/wirelessname_validate", rule).wlan[1].wirelessNameValidate,
               decoded);
  EXPECT_STREQ(With("/lan/wireless5:1/encryptionkey_validate", rule).wlan[1].encryptionKeyValidate,
               decoded);
}

TEST_F(SnapshotTest, OtherTextsAreNotDecoded) {
  EXPECT_STREQ(With("/uplink/hardwaresupport", "a&lt;b").upLink.hardwareSupport, "a&lt;b");
  EXPECT_STREQ(With("/sys/devicetype", " R&amp;D ").deviceType, " R&amp;D ");
}

TEST_F(SnapshotTest, HardwareTypeGetsItsCodeAndSpelling) {
  EXPECT_EQ(With("/uplink/hardwaretype", "vdsl").upLink.hardwareTypeCode, 2);
  EXPECT_STREQ(rssXmlData.upLink.hardwareType, "VDSL");
  EXPECT_EQ(With("/uplink/hardwaretype", "Fibre").upLink.hardwareTypeCode, -1);
  EXPECT_STREQ(rssXmlData.upLink.hardwareType, "Fibre");
  EXPECT_EQ(Without("/uplink/hardwaretype").upLink.hardwareTypeCode, -1);
}

TEST_F(SnapshotTest, EmptyStoreGivesTheDefaults) {
  Host().Reset();
  FillSampleRecord();
  restore_XmlRssStatus(0);
  EXPECT_EQ(rssXmlData.specVer, 101);
  EXPECT_EQ(rssXmlData.configurable, 1);
  EXPECT_EQ(rssXmlData.apCloningFeature, 0);
  EXPECT_EQ(rssXmlData.fwUpgradeFeature, 1);
  EXPECT_EQ(rssXmlData.easyRoamingFeature, 0);
  EXPECT_EQ(rssXmlData.safetyVyrFeature, 0);
  EXPECT_EQ(rssXmlData.wlan24Feature, 0);
  EXPECT_EQ(rssXmlData.wlan5Feature, 0);
  EXPECT_STREQ(rssXmlData.tmpPath, "");
  EXPECT_STREQ(rssXmlData.scriptPath, "");
  EXPECT_STREQ(rssXmlData.deviceType, "");
  EXPECT_STREQ(rssXmlData.friendlyNameValidate, "");
  EXPECT_STREQ(rssXmlData.loginPasswordValidate, "");
  EXPECT_STREQ(rssXmlData.upLink.hardwareSupport, "");
  EXPECT_STREQ(rssXmlData.upLink.path, "Device/Uplink");
}

TEST_F(SnapshotTest, LogsItsName) {
  log_file::Start(7);
  Restore();
  EXPECT_NE(log_file::Contents().find("restore_XmlRssStatus"), std::string::npos);
}

}  // namespace
}  // namespace kio::test
