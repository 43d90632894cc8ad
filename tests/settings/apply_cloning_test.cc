// Applying settings copied from another access point.
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "settings/changes.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

class ApplyCloningTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    Reset();
  }

  static void Reset() {
    Host().Reset();
    StoreSampleDevice();
    FillSampleRecord();
    rssXmlData.apCloningOnly = 1;
  }

  static RssWlan& Radio() { return rssXmlData.wlan[0]; }
  static std::string Node(const std::string& name) { return "/lan/wireless2.4:1/" + name; }

  static Texts Apply() {
    Host().ClearCalls();
    EXPECT_EQ(Apply_RssXmlToDevice(), 1);
    EXPECT_TRUE(Host().commands().empty()) << "cloning refuses nothing";
    return Changes();
  }
};

TEST_F(ApplyCloningTest, DeviceUplinkAndSafetyVyrAreLeftAlone) {
  Put(rssXmlData.deviceName, "Hall");
  Put(rssXmlData.devicePwd, "other");
  rssXmlData.routerEnbl = 0;
  Put(rssXmlData.upLink.connType, "Static");
  rssXmlData.safetyVyr.urlDetectEnbl = 1;
  EXPECT_EQ(Apply(), (Texts{kMode24, kMode5}));
}

TEST_F(ApplyCloningTest, EasyRoamingIsApplied) {
  Put(rssXmlData.easyRoaming, "roam-2");
  EXPECT_EQ(Apply(), (Texts{"/zentrolinks/easyroaminginfo=roam-2", kMode24, kMode5, kNotFactory}));
  EXPECT_EQ(rssXmlData.deviceRestart, 1);
}

TEST_F(ApplyCloningTest, NotConfigurableWritesNothing) {
  rssXmlData.configurable = 0;
  Put(Radio().wirelessName, "New");
  EXPECT_TRUE(Apply().empty());
}

TEST_F(ApplyCloningTest, StoredLockedSwitchEndsTheRadios) {
  for (const int stored : {2, 3}) {
    Reset();
    Host().Set(Node("wlenbl"), stored);
    Put(Radio().wirelessName, "New");
    Put(rssXmlData.wlan[1].wirelessName, "New-5");
    EXPECT_TRUE(Apply().empty()) << stored;
  }
}

TEST_F(ApplyCloningTest, OtherStoredSwitchesAreNotLocked) {
  for (const int stored : {-2, 0, 4, 5, 255}) {
    Reset();
    Host().Set(Node("wlenbl"), stored);
    EXPECT_EQ(Apply(), (Texts{Node("wlenbl=1"), kMode24, kMode5, kNotFactory})) << stored;
  }
}

TEST_F(ApplyCloningTest, LockedSwitchOfTheSecondRadioKeepsTheFirst) {
  Host().Set("/lan/wireless5:1/wlenbl", 2);
  Put(Radio().wirelessName, "New");
  Put(rssXmlData.wlan[1].wirelessName, "New-5");
  EXPECT_EQ(Apply(), (Texts{Node("wirelessname=New"), kMode24, kNotFactory}));
}

TEST_F(ApplyCloningTest, RequestedSwitchTwoEndsTheRadios) {
  Radio().wlEnbl = 2;
  Put(Radio().wirelessName, "New");
  Put(rssXmlData.wlan[1].wirelessName, "New-5");
  EXPECT_TRUE(Apply().empty());
}

TEST_F(ApplyCloningTest, EqualLockedSwitchGoesOn) {
  Host().Set(Node("wlenbl"), 2);
  Radio().wlEnbl = 2;
  Put(Radio().wirelessName, "New");
  EXPECT_EQ(Apply(), (Texts{Node("wirelessname=New"), kMode24, kMode5, kNotFactory}));
}

TEST_F(ApplyCloningTest, RequestedSwitchThreeBecomesOne) {
  Radio().wlEnbl = 3;
  EXPECT_EQ(Apply(), (Texts{kMode24, kMode5})) << "1 is stored already";
  EXPECT_EQ(Radio().wlEnbl, 1);
  EXPECT_EQ(Radio().restart, 0);
  Host().Set(Node("wlenbl"), 0);
  Radio().wlEnbl = 3;
  EXPECT_EQ(Apply(), (Texts{Node("wlenbl=1"), kMode24, kMode5, kNotFactory}));
  EXPECT_EQ(Radio().restart, 1);
}

TEST_F(ApplyCloningTest, SwitchIsWritten) {
  Radio().wlEnbl = 0;
  EXPECT_EQ(Apply(), (Texts{Node("wlenbl=0"), kMode24, kMode5, kNotFactory}));
}

TEST_F(ApplyCloningTest, StoredScheduleTwoIsLeftAlone) {
  Host().Set(Node("wlschedule"), 2);
  Radio().wlSchedule = 1;
  EXPECT_EQ(Apply(), (Texts{kMode24, kMode5}));
}

TEST_F(ApplyCloningTest, OtherStoredSchedulesAreWritten) {
  for (const int stored : {-2, 0, 3, 4, 255}) {
    Reset();
    Host().Set(Node("wlschedule"), stored);
    Radio().wlSchedule = 1;
    EXPECT_EQ(Apply(), (Texts{Node("wlschedule=1"), kMode24, kMode5, kNotFactory})) << stored;
  }
}

TEST_F(ApplyCloningTest, RequestedScheduleTwoBecomesZero) {
  Radio().wlSchedule = 2;
  EXPECT_EQ(Apply(), (Texts{kMode24, kMode5})) << "0 is stored already";
  EXPECT_EQ(Radio().wlSchedule, 0);
  Host().Set(Node("wlschedule"), 1);
  Radio().wlSchedule = 2;
  EXPECT_EQ(Apply(), (Texts{Node("wlschedule=0"), kMode24, kMode5, kNotFactory}));
}

TEST_F(ApplyCloningTest, ScheduleIsWrittenWithoutAMaximum) {
  Radio().wlSchedule = 1;
  EXPECT_EQ(Apply(), (Texts{Node("wlschedule=1"), kMode24, kMode5, kNotFactory}));
}

TEST_F(ApplyCloningTest, StoredAccessSwitchTwoSkipsAccessControl) {
  for (const bool absent : {false, true}) {
    Reset();
    Host().Set(Node("accesscontrol/wlacenbl"), 2);
    if (absent) {
      Host().Delete(Node("accesscontrol/wlacenbl"));
    }
    Put(Radio().acRule[0].mac, "02:77");
    Put(Radio().channel, "11");
    EXPECT_EQ(Apply(), (Texts{Node("channel=11"), kMode5, kNotFactory}));
  }
}

TEST_F(ApplyCloningTest, RequestedAccessSwitchTwoBecomesZero) {
  Radio().wlAcEnbl = 2;
  EXPECT_EQ(Apply(), (Texts{Node("accesscontrol/wlacenbl=0"), kMode5, kNotFactory}));
  EXPECT_EQ(Radio().wlAcEnbl, 0);
  EXPECT_EQ(Radio().restart, 1);
}

TEST_F(ApplyCloningTest, OtherAccessSwitchesAreWrittenAsTheyAre) {
  Host().Set(Node("accesscontrol/wlacenbl"), 1);
  Radio().wlAcEnbl = 0;
  EXPECT_EQ(Apply(), (Texts{Node("accesscontrol/wlacenbl=0"), kMode5, kNotFactory}));
  EXPECT_EQ(Radio().wlAcEnbl, 0);
  EXPECT_EQ(Radio().restart, 1);
}

// The comparison comes before the replacement: 0 is written over 0.
TEST_F(ApplyCloningTest, RequestedAccessSwitchTwoIsWrittenOverAnEqualZero) {
  Host().Set(Node("accesscontrol/wlacenbl"), 0);
  Radio().wlAcEnbl = 2;
  EXPECT_EQ(Apply(), (Texts{Node("accesscontrol/wlacenbl=0"), kMode5, kNotFactory}));
  EXPECT_EQ(Radio().restart, 1);
}

Texts CloningInfo(const Texts& values) {
  static const Texts kNames = {"wirelesstype",   "wirelessbssid", "wirelessname", "encryptionmode",
                               "encryptiontype", "encryptionkey", "channel"};
  Texts changes;
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    changes.push_back("/runtime/apcloninginfo/extendersite/" + kNames[i] + "=" + values[i]);
  }
  return changes;
}

const Texts kSite24 = {"/uplink/extendersite/connrefsitebssid=02:00:00:00:24:01",
                       "/uplink/extendersite/wirelessname=Home",
                       "/uplink/extendersite/encryptionkey=home-key-24"};
const Texts kInfo24 =
    CloningInfo({"2.4", "02:00:00:00:24:01", "Home", "WPA2", "AES", "home-key-24", "6"});
const Texts kSite5 = {"/uplink/extendersite/connrefsitebssid=02:00:00:00:50:01",
                      "/uplink/extendersite/wirelesstype=5",
                      "/uplink/extendersite/wirelessname=Home-5",
                      "/uplink/extendersite/encryptionkey=home-key-50"};
const Texts kInfo5 =
    CloningInfo({"5", "02:00:00:00:50:01", "Home-5", "WPAWPA2", "AUTO", "home-key-50", "36"});

class CloningExtenderTest : public ApplyCloningTest {
 protected:
  void SetUp() override {
    ApplyCloningTest::SetUp();
    rssXmlData.upLink.hardwareTypeCode = 3;
  }
};

TEST_F(CloningExtenderTest, BothRadiosAreWrittenAndTheSecondWins) {
  EXPECT_EQ(Apply(), Join({{kMode24}, kSite24, kInfo24, {kMode5}, kSite5, kInfo5, {kNotFactory}}));
  EXPECT_EQ(Host().Text("/uplink/extendersite/wirelesstype"), "5");
  EXPECT_EQ(rssXmlData.upLink.extenderSite.wirelessTypeCode, 1);
  EXPECT_NE(rssXmlData.upLink.restart, 0);
  EXPECT_EQ(rssXmlData.wlan[0].restart, 0);
  EXPECT_EQ(rssXmlData.wlan[1].restart, 0);
}

TEST_F(CloningExtenderTest, OneRadio) {
  rssXmlData.wlan5Feature = 0;
  rssXmlData.upLink.extenderSite.wirelessTypeCode = 7;
  EXPECT_EQ(Apply(), Join({{kMode24}, kSite24, kInfo24, {kNotFactory}}));
  EXPECT_EQ(rssXmlData.upLink.extenderSite.wirelessTypeCode, 0);
}

TEST_F(CloningExtenderTest, CloningInformationIsWrittenEvenWhenNothingDiffers) {
  rssXmlData.wlan5Feature = 0;
  Apply();
  EXPECT_EQ(Apply(), Join({{kMode24}, kInfo24}));
  EXPECT_EQ(rssXmlData.upLink.restart, 0);
  EXPECT_EQ(rssXmlData.saveflag, 0);
}

TEST_F(CloningExtenderTest, EachTextThatDiffersRestartsTheUplink) {
  rssXmlData.wlan5Feature = 0;
  for (const std::string node :
       {"connrefsitebssid", "wirelesstype", "wirelessname", "encryptionkey"}) {
    Apply();
    Apply();
    ASSERT_EQ(rssXmlData.upLink.restart, 0);
    Host().Set("/uplink/extendersite/" + node, "other");
    Apply();
    EXPECT_EQ(rssXmlData.upLink.restart, 1) << node;
  }
}

TEST_F(CloningExtenderTest, SkippedAccessControlStillComesHere) {
  rssXmlData.wlan5Feature = 0;
  Host().Set(Node("accesscontrol/wlacenbl"), 2);
  EXPECT_EQ(Apply(), Join({kSite24, kInfo24, {kNotFactory}}));
  Reset();
  rssXmlData.upLink.hardwareTypeCode = 3;
  rssXmlData.wlan5Feature = 0;
  Host().Set(Node("accesscontrol/wlacenbl"), 0);
  Radio().wlAcEnbl = 0;
  EXPECT_EQ(Apply(), Join({kSite24, kInfo24, {kNotFactory}}));
}

TEST_F(CloningExtenderTest, Version10ComesHereToo) {
  rssXmlData.specVer = 100;
  rssXmlData.wlan5Feature = 0;
  Host().Set(Node("encryptiontype"), "AUTO");
  EXPECT_EQ(Apply(), Join({kSite24, kInfo24, {kNotFactory}}));
}

TEST_F(CloningExtenderTest, EndedRadiosDoNotComeHere) {
  Host().Set(Node("wlenbl"), 3);
  EXPECT_TRUE(Apply().empty());
}

TEST_F(CloningExtenderTest, NormalModeDoesNotComeHere) {
  rssXmlData.apCloningOnly = 0;
  EXPECT_EQ(Apply(), (Texts{kMode24, kMode5}));
}

TEST_F(CloningExtenderTest, OtherHardwareDoesNotComeHere) {
  for (const int code : {0, 1, 2, 4, 5, -1}) {
    rssXmlData.upLink.hardwareTypeCode = code;
    EXPECT_EQ(Apply(), (Texts{kMode24, kMode5})) << code;
  }
}

}  // namespace
}  // namespace kio::test
