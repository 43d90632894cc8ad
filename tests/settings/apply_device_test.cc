// Applying the device's, the uplink's and the security service's settings.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "settings/changes.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

class ApplyDeviceTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreSampleDevice();
    FillSampleRecord();
  }

  static RssXmlData& Rec() { return rssXmlData; }
  static RssUpLink& Up() { return rssXmlData.upLink; }

  static void SetHardware(int code, const char* word) {
    Up().hardwareTypeCode = code;
    Put(Up().hardwareType, word);
    Host().Set("/uplink/hardwaretype", word);
  }

  // Applies and expects exactly these changes of the uplink, between what is always written.
  static void ExpectUplinkChanges(const Texts& changes) {
    Host().ClearCalls();
    EXPECT_EQ(Apply_RssXmlToDevice(), 1);
    const Texts end = changes.empty() ? Texts{} : Texts{kNotFactory};
    EXPECT_EQ(Changes(), Join({changes, kAlways, end}));
    EXPECT_EQ(Up().restart != 0, !changes.empty());
    EXPECT_EQ(Rec().saveflag != 0, !changes.empty());
    EXPECT_EQ(Rec().deviceRestart, 0);
    EXPECT_EQ(Rec().wlan[0].restart, 0);
    EXPECT_EQ(Rec().wlan[1].restart, 0);
  }
};

TEST_F(ApplyDeviceTest, SameSettingsWriteOnlyTheAccessModes) {
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), kAlways);
  EXPECT_EQ(Rec().deviceRestart, 0);
  EXPECT_EQ(Up().restart, 0);
  EXPECT_EQ(Rec().wlan[0].restart, 0);
  EXPECT_EQ(Rec().wlan[1].restart, 0);
  EXPECT_EQ(Rec().safetyVyr.restart, 0);
  EXPECT_EQ(Rec().saveflag, 0);
  EXPECT_TRUE(Host().commands().empty());
}

TEST_F(ApplyDeviceTest, NothingConfigurableWritesNothingButClearsTheFlags) {
  log_file::Start(6);
  Rec().configurable = 0;
  Put(Rec().deviceName, "Hall");
  Rec().deviceRestart = 1;
  Rec().saveflag = 1;
  Rec().wlanSurveyRestart = 1;
  Rec().roamingRestart = 1;
  Up().restart = 1;
  Rec().wlan[0].restart = 1;
  Rec().wlan[1].restart = 1;
  Rec().safetyVyr.restart = 1;
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_TRUE(Changes().empty());
  EXPECT_EQ(log_file::Contents(), "");
  EXPECT_EQ(Rec().deviceRestart, 0);
  EXPECT_EQ(Rec().saveflag, 0);
  EXPECT_EQ(Rec().wlanSurveyRestart, 0);
  EXPECT_EQ(Rec().roamingRestart, 0);
  EXPECT_EQ(Up().restart, 0);
  EXPECT_EQ(Rec().wlan[0].restart, 0);
  EXPECT_EQ(Rec().wlan[1].restart, 0);
  EXPECT_EQ(Rec().safetyVyr.restart, 0);
}

TEST_F(ApplyDeviceTest, NameAndPassword) {
  Put(Rec().deviceName, "Hall");
  Put(Rec().devicePwd, "other");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(
      Changes(),
      Join({{"/sys/friendlyname=Hall", "/sys/user:1/password=other"}, kAlways, {kNotFactory}}));
  EXPECT_EQ(Rec().deviceRestart, 1);
  EXPECT_EQ(Rec().saveflag, 1);
  EXPECT_EQ(Up().restart, 0);
}

TEST_F(ApplyDeviceTest, RouterSwitch) {
  Rec().routerEnbl = 0;
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), Join({{"/sys/routerenbl=0"}, kAlways, {kNotFactory}}));
  EXPECT_EQ(Rec().deviceRestart, 1);
}

TEST_F(ApplyDeviceTest, LockedRouterSwitchIsRefused) {
  for (const int stored : {2, 3}) {
    StoreSampleDevice();
    FillSampleRecord();
    log_file::Start(6);
    Host().Set("/sys/routerenbl", stored);
    Put(Rec().deviceName, "Hall");
    Host().ClearCalls();
    Host().ClearCommands();
    EXPECT_EQ(Apply_RssXmlToDevice(), 0);
    EXPECT_EQ(Changes(), (Texts{"/sys/friendlyname=Hall"})) << "there is no rollback";
    EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/RouterEnbl", 0));
    EXPECT_EQ(Rec().deviceRestart, 1);
    EXPECT_EQ(Rec().saveflag, 0);
    EXPECT_THAT(log_file::Contents(), ::testing::Not(::testing::HasSubstr("done,ret=1")));
  }
}

TEST_F(ApplyDeviceTest, OtherStoredRouterSwitchesAreNotLocked) {
  for (const int stored : {-2, 0, 4, 5, 255}) {
    StoreSampleDevice();
    Host().Set("/sys/routerenbl", stored);
    Host().ClearCalls();
    EXPECT_EQ(Apply_RssXmlToDevice(), 1);
    EXPECT_EQ(Changes(), Join({{"/sys/routerenbl=1"}, kAlways, {kNotFactory}})) << stored;
  }
}

TEST_F(ApplyDeviceTest, LockedRouterSwitchMayBeSentAsItIs) {
  Host().Set("/sys/routerenbl", 2);
  Rec().routerEnbl = 2;
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), kAlways);
}

TEST_F(ApplyDeviceTest, RouterSwitchAboveOneIsRefused) {
  for (const int value : {2, 3, 100}) {
    Rec().routerEnbl = value;
    Host().ClearCommands();
    EXPECT_EQ(Apply_RssXmlToDevice(), 0);
    EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/RouterEnbl", 0));
  }
  EXPECT_TRUE(Changes().empty());
}

TEST_F(ApplyDeviceTest, RouterSwitchHasNoLowerBound) {
  Rec().routerEnbl = -4;
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Host().Text("/sys/routerenbl"), "-4");
}

TEST_F(ApplyDeviceTest, AbsentRouterSwitchIsWritten) {
  Host().Delete("/sys/routerenbl");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), Join({{"/sys/routerenbl=1"}, kAlways, {kNotFactory}}));
}

TEST_F(ApplyDeviceTest, UplinkThatIsNotConfigurableIsLeftAlone) {
  Up().configurable = 0;
  Put(Up().hardwareType, "ADSL");
  Put(Up().connType, "Static");
  Up().connTypeCode = 1;
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), kAlways);
}

TEST_F(ApplyDeviceTest, HardwareAndConnectionType) {
  Put(Up().hardwareType, "Unknown");
  Up().hardwareTypeCode = -1;
  Put(Up().connType, "Other");
  Up().connTypeCode = -1;
  ExpectUplinkChanges({"/uplink/hardwaretype=Unknown", "/uplink/conntype=Other"});
}

TEST_F(ApplyDeviceTest, HardwareTypeIsNotWrittenInVersion10) {
  Rec().specVer = 100;
  Rec().wlan24Feature = 0;
  Rec().wlan5Feature = 0;
  Put(Up().hardwareType, "Unknown");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_TRUE(Changes().empty());
}

TEST_F(ApplyDeviceTest, Logins) {
  for (const int code : {2, 3}) {
    StoreSampleDevice();
    Up().connTypeCode = code;
    Put(Up().loginUserName, "new-user");
    Put(Up().loginPassword, "new-pass");
    ExpectUplinkChanges({"/uplink/loginusername=new-user", "/uplink/loginpassword=new-pass"});
  }
}

TEST_F(ApplyDeviceTest, StaticAddresses) {
  Up().connTypeCode = 1;
  Put(Up().ip, "10.1.0.2");
  Put(Up().netMask, "255.255.0.0");
  Put(Up().gateway, "10.1.0.1");
  Put(Up().dns, "8.8.8.8");
  Put(Up().loginUserName, "not written");
  ExpectUplinkChanges({"/uplink/ip=10.1.0.2", "/uplink/netmask=255.255.0.0",
                       "/uplink/gateway=10.1.0.1", "/uplink/dns=8.8.8.8"});
  ExpectUplinkChanges({});
}

TEST_F(ApplyDeviceTest, AddressesOfDhcpAreNotWritten) {
  Put(Up().ip, "10.1.0.2");
  Put(Up().loginUserName, "x");
  Up().mtu = 3;
  ExpectUplinkChanges({});
}

TEST_F(ApplyDeviceTest, Dsl) {
  for (const int code : {1, 2}) {
    StoreSampleDevice();
    SetHardware(code, code == 1 ? "ADSL" : "VDSL");
    Put(Up().dsl.countryName, "Finland");
    Put(Up().dsl.ispName, "Lake");
    Put(Up().apn.ispName, "not written");
    Up().dsl.vpi = 1;
    ExpectUplinkChanges({"/uplink/dsl/countryname=Finland", "/uplink/dsl/ispname=Lake"});
  }
}

TEST_F(ApplyDeviceTest, Apn) {
  SetHardware(4, "WWanAPN");
  Put(Up().apn.countryName, "Finland");
  Put(Up().apn.ispName, "Lake");
  Put(Up().dsl.ispName, "not written");
  ExpectUplinkChanges({"/uplink/apn/countryname=Finland", "/uplink/apn/ispname=Lake"});
}

TEST_F(ApplyDeviceTest, PlainDslWritesNothingMoreInVersion11) {
  SetHardware(5, "DSL");
  Put(Up().dsl.countryName, "Finland");
  Up().dsl.vci = 99;
  ExpectUplinkChanges({});
}

TEST_F(ApplyDeviceTest, PlainDslOfVersion10) {
  Rec().specVer = 100;
  Rec().wlan24Feature = 0;
  Rec().wlan5Feature = 0;
  Up().hardwareTypeCode = 5;
  Up().dsl.vpi = 1;
  Up().dsl.vci = 99;
  Put(Up().dsl.encapsulationMode, "VcMux");
  Up().mtu = 1000;
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), (Texts{"/uplink/dsl/vpi=1", "/uplink/dsl/vci=99",
                              "/uplink/dsl/encapsulationmode=VcMux", kNotFactory}));
}

TEST_F(ApplyDeviceTest, ExtenderSite) {
  SetHardware(3, "WWan802.11");
  Put(Up().extenderSite.connRefSiteBssid, "02:98");
  Put(Up().extenderSite.wirelessType, "5");
  Put(Up().extenderSite.wirelessName, "Other");
  Put(Up().extenderSite.encryptionKey, "other-key");
  ExpectUplinkChanges(
      {"/uplink/extendersite/connrefsitebssid=02:98", "/uplink/extendersite/wirelesstype=5",
       "/uplink/extendersite/wirelessname=Other", "/uplink/extendersite/encryptionkey=other-key"});
}

TEST_F(ApplyDeviceTest, ExtenderSiteOfVersion10NeedsExtenderOneOrThree) {
  for (const int extender : {0, 1, 2, 3, 4}) {
    StoreSampleDevice();
    Rec().specVer = 100;
    Rec().wlan24Feature = 0;
    Rec().wlan5Feature = 0;
    Rec().extenderEnbl = extender;
    Put(Up().extenderSite.wirelessName, "Other");
    Host().ClearCalls();
    EXPECT_EQ(Apply_RssXmlToDevice(), 1);
    const bool written = extender == 1 || extender == 3;
    EXPECT_EQ(Changes().size(), written ? 2U : 0U) << extender;
  }
}

TEST_F(ApplyDeviceTest, EthernetOfVersion11WritesNoExtenderSite) {
  Rec().extenderEnbl = 1;
  Put(Up().extenderSite.wirelessName, "Other");
  ExpectUplinkChanges({});
}

TEST_F(ApplyDeviceTest, EasyRoaming) {
  Put(Rec().easyRoaming, "roam-2");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), Join({{"/zentrolinks/easyroaminginfo=roam-2"}, kAlways, {kNotFactory}}));
  EXPECT_EQ(Rec().deviceRestart, 1);
  EXPECT_EQ(Rec().roamingRestart, 0);
}

TEST_F(ApplyDeviceTest, EasyRoamingNeedsFeatureAndVersion) {
  Put(Rec().easyRoaming, "roam-2");
  Rec().easyRoamingFeature = 0;
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  Rec().easyRoamingFeature = 1;
  Rec().specVer = 100;
  Host().Set("/lan/wireless2.4:1/encryptiontype", "AUTO");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Host().Text("/zentrolinks/easyroaminginfo"), "roam-1");
}

TEST_F(ApplyDeviceTest, SafetyVyr) {
  RssSafetyVyr& safety = Rec().safetyVyr;
  safety.safetyVyrEnbl = 0;
  safety.urlDetectEnbl = 1;
  safety.safetyNotifyEnbl = 0;
  safety.toolRecommendEnbl = 1;
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), Join({kAlways,
                             {"/safetyvyr/safetyvyrenbl=0", "/safetyvyr/urldetectenbl=1",
                              "/safetyvyr/safetynotifyenbl=0", "/safetyvyr/toolrecommendenbl=1"},
                             {kNotFactory}}));
  EXPECT_EQ(safety.restart, 1);
  EXPECT_EQ(Rec().saveflag, 1);
  EXPECT_EQ(Rec().deviceRestart, 0);
}

TEST_F(ApplyDeviceTest, SafetyVyrNeedsTheFeature) {
  Rec().safetyVyr.urlDetectEnbl = 1;
  Rec().safetyVyrFeature = 0;
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), kAlways);
}

TEST_F(ApplyDeviceTest, ClosingLog) {
  log_file::Start(6);
  Rec().wlan[1].wlSchedule = 0;
  Up().connTypeCode = 1;
  Put(Up().dns, "10.0.0.9");
  Rec().roamingRestart = 1;
  Apply_RssXmlToDevice();
  EXPECT_THAT(
      log_file::Contents(),
      ::testing::HasSubstr("done,ret=1,Restart:wlan2.4=0,wlan5=1,uplink=1,survey=0,roaming=0\n"));
}

}  // namespace
}  // namespace kio::test
