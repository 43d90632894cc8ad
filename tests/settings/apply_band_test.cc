// Applying the settings of the radios in normal mode.
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "settings/changes.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

class ApplyBandTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    Reset();
  }

  static void Reset() {
    Host().Reset();
    StoreSampleDevice();
    FillSampleRecord();
  }

  static RssWlan& Band() { return rssXmlData.wlan[0]; }
  static std::string Node(const std::string& name) { return "/lan/wireless2.4:1/" + name; }

  // Applies and expects exactly these changes of the 2.4 GHz radio before the 5 GHz radio's mode.
  static void ExpectChanges(const Texts& changes) {
    Texts expected = changes;
    expected.emplace_back(kMode5);
    const bool restart = changes != Texts{kMode24} && !changes.empty();
    if (restart) {
      expected.emplace_back(kNotFactory);
    }
    Host().ClearCalls();
    EXPECT_EQ(Apply_RssXmlToDevice(), 1);
    EXPECT_EQ(Changes(), expected);
    EXPECT_EQ(Band().restart != 0, restart);
    EXPECT_EQ(rssXmlData.wlan[1].restart, 0);
    EXPECT_EQ(rssXmlData.upLink.restart, 0);
    EXPECT_EQ(rssXmlData.saveflag != 0, restart);
  }

  static void ExpectRefusal(const std::string& message, const Texts& changes) {
    Host().ClearCalls();
    Host().ClearCommands();
    EXPECT_EQ(Apply_RssXmlToDevice(), 0);
    EXPECT_EQ(Host().commands(), ResultCommands(3, message, 0));
    EXPECT_EQ(Changes(), changes);
    EXPECT_EQ(rssXmlData.saveflag, 0);
  }
};

TEST_F(ApplyBandTest, EverySettingInOrder) {
  Band().wlEnbl = 0;
  Band().wlSchedule = 1;
  Put(Band().wirelessName, "New");
  Put(Band().encryptionMode, "WPA");
  Put(Band().encryptionType, "TKIP");
  Put(Band().encryptionKey, "new-key-24");
  Put(Band().channel, "11");
  Band().wlAcMode = 0;
  Band().acRule[0].active = 0;
  Put(Band().acRule[0].mac, "02:11");
  Put(Band().acRule[1].mac, "02:22");
  ExpectChanges(
      {Node("wlenbl=0"), Node("wlschedule=1"), Node("wirelessname=New"), Node("encryptionmode=WPA"),
       Node("encryptiontype=TKIP"), Node("encryptionkey=new-key-24"), Node("channel=11"),
       Node("accesscontrol/wlacmode=0"), Node("accesscontrol/acrule:1/active=0"),
       Node("accesscontrol/acrule:1/mac=02:11"), Node("accesscontrol/acrule:2/mac=02:22")});
  EXPECT_EQ(Host().Text("/lan/wireless2.4:1/wirelessbssid"), "02:00:00:00:24:01");
}

TEST_F(ApplyBandTest, SecondRadioHasItsOwnNodesAndFlag) {
  Put(rssXmlData.wlan[1].wirelessName, "New-5");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(),
            (Texts{kMode24, "/lan/wireless5:1/wirelessname=New-5", kMode5, kNotFactory}));
  EXPECT_EQ(rssXmlData.wlan[0].restart, 0);
  EXPECT_EQ(rssXmlData.wlan[1].restart, 1);
}

TEST_F(ApplyBandTest, AbsentOrFixedRadiosAreSkipped) {
  Put(Band().wirelessName, "New");
  rssXmlData.wlan24Feature = 0;
  ExpectChanges({});
  rssXmlData.wlan24Feature = 1;
  Band().configurable = 0;
  ExpectChanges({});
}

TEST_F(ApplyBandTest, LockedRadioSwitchIsRefused) {
  for (const int stored : {2, 3}) {
    Reset();
    Host().Set(Node("wlenbl"), stored);
    ExpectRefusal("Device/Wireless2.4/WlEnbl", {});
    Band().wlEnbl = stored;
    ExpectChanges({kMode24});
  }
}

TEST_F(ApplyBandTest, OtherStoredRadioSwitchesAreNotLocked) {
  for (const int stored : {-2, 0, 4, 5, 255}) {
    Reset();
    Host().Set(Node("wlenbl"), stored);
    ExpectChanges({Node("wlenbl=1"), kMode24});
  }
  Reset();
  Host().Delete(Node("wlenbl"));
  ExpectChanges({Node("wlenbl=1"), kMode24});
}

TEST_F(ApplyBandTest, RadioSwitchAboveOneIsRefused) {
  for (const int value : {2, 3}) {
    Band().wlEnbl = value;
    ExpectRefusal("Device/Wireless2.4/WlEnbl", {});
  }
}

TEST_F(ApplyBandTest, LockedScheduleIsRefused) {
  Host().Set(Node("wlschedule"), 2);
  Band().wlEnbl = 0;
  ExpectRefusal("Device/Wireless2.4/WlSchedule", {Node("wlenbl=0")});
  EXPECT_EQ(Band().restart, 1) << "the flags stay as far as they got";
}

TEST_F(ApplyBandTest, ScheduleAboveOneIsRefused) {
  Band().wlSchedule = 2;
  ExpectRefusal("Device/Wireless2.4/WlSchedule", {});
  Host().Set(Node("wlschedule"), 2);
  ExpectChanges({kMode24});
}

TEST_F(ApplyBandTest, StoredScheduleThreeIsNotLocked) {
  Host().Set(Node("wlschedule"), 3);
  ExpectChanges({Node("wlschedule=0"), kMode24});
}

TEST_F(ApplyBandTest, OtherStoredSchedulesAreNotLocked) {
  for (const int stored : {-2, 1, 4, 255}) {
    Host().Set(Node("wlschedule"), stored);
    ExpectChanges({Node("wlschedule=0"), kMode24});
  }
}

TEST_F(ApplyBandTest, RefusalInTheSecondRadioKeepsTheFirstRadiosChanges) {
  Put(Band().wirelessName, "New");
  rssXmlData.wlan[1].wlSchedule = 2;
  ExpectRefusal("Device/Wireless5/WlSchedule", {Node("wirelessname=New"), kMode24});
}

TEST_F(ApplyBandTest, Version10WritesAutoAndNoChannelOrAccessControl) {
  rssXmlData.specVer = 100;
  Put(Band().encryptionType, "TKIP");
  Put(Band().channel, "11");
  Band().wlAcMode = 0;
  Put(rssXmlData.wlan[1].channel, "44");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), (Texts{Node("encryptiontype=AUTO"), kNotFactory}));
}

TEST_F(ApplyBandTest, AccessSwitchOff) {
  Band().wlAcEnbl = 0;
  Band().wlAcMode = 0;
  Band().wlAcRuleNo = 0;
  ExpectChanges({Node("accesscontrol/wlacenbl=0")});
  EXPECT_EQ(Host().Text(Node("accesscontrol/acrule:2/mac")), "02:00:00:00:00:02")
      << "the rules stay";
}

TEST_F(ApplyBandTest, AccessSwitchOn) {
  Host().Set(Node("accesscontrol/wlacenbl"), 0);
  ExpectChanges({Node("accesscontrol/wlacenbl=1"), kMode24});
  const std::vector<StoreCall> writes = Host().Writes();
  ASSERT_FALSE(writes.empty());
  EXPECT_EQ(writes[0].kind, StoreCall::Kind::kSetInt);
}

TEST_F(ApplyBandTest, RequestedAccessSwitchTwoIsWritten) {
  Band().wlAcEnbl = 2;
  ExpectChanges({Node("accesscontrol/wlacenbl=2")});
  EXPECT_EQ(Band().wlAcEnbl, 2);
}

TEST_F(ApplyBandTest, LockedOrAbsentAccessSwitchIsRefused) {
  Host().Set(Node("accesscontrol/wlacenbl"), 2);
  Put(Band().channel, "11");
  ExpectRefusal("Device/Wireless2.4/AccessControl/WlAcEnbl", {Node("channel=11")});
  Reset();
  Host().Delete(Node("accesscontrol/wlacenbl"));
  ExpectRefusal("Device/Wireless2.4/AccessControl/WlAcEnbl", {});
}

TEST_F(ApplyBandTest, LockedAccessSwitchMayBeSentAsItIs) {
  Band().wlAcEnbl = 2;
  for (const bool absent : {false, true}) {
    Host().Set(Node("accesscontrol/wlacenbl"), 2);
    if (absent) {
      Host().Delete(Node("accesscontrol/wlacenbl"));
    }
    ExpectChanges({});
  }
}

TEST_F(ApplyBandTest, AccessModeIsAlwaysWrittenButFlagsOnlyAChange) {
  ExpectChanges({kMode24});
  Band().wlAcMode = 0;
  ExpectChanges({Node("accesscontrol/wlacmode=0")});
}

TEST_F(ApplyBandTest, AbsentAccessModeCountsAsZero) {
  Host().Delete("/lan/wireless5:1/accesscontrol/wlacmode");
  Host().ClearCalls();
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), (Texts{kMode24, kMode5}));
  EXPECT_EQ(rssXmlData.wlan[1].restart, 0);
  Host().Delete("/lan/wireless2.4:1/accesscontrol/wlacmode");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Band().restart, 1);
}

TEST_F(ApplyBandTest, RulesAreDeletedFromTheHighestDown) {
  Host().Set(Node("accesscontrol/acrule:3/active"), 1);
  Host().Set(Node("accesscontrol/acrule:3/mac"), "02:33");
  Band().wlAcRuleNo = 1;
  ExpectChanges({kMode24, "delete " + Node("accesscontrol/acrule:3"),
                 "delete " + Node("accesscontrol/acrule:2")});
  EXPECT_EQ(Host().Text(Node("accesscontrol/acrule:2/mac")), std::nullopt);
}

TEST_F(ApplyBandTest, NoRulesDeleteAll) {
  Band().wlAcRuleNo = 0;
  ExpectChanges({kMode24, "delete " + Node("accesscontrol/acrule:2"),
                 "delete " + Node("accesscontrol/acrule:1")});
}

TEST_F(ApplyBandTest, NewRulesAreAdded) {
  Band().wlAcRuleNo = 3;
  Band().acRule[2].active = 1;
  Put(Band().acRule[2].mac, "02:33");
  ExpectChanges(
      {kMode24, Node("accesscontrol/acrule:3/active=1"), Node("accesscontrol/acrule:3/mac=02:33")});
}

TEST_F(ApplyBandTest, AbsentActiveCountsAsZero) {
  Band().wlAcRuleNo = 3;
  Band().acRule[2].active = 0;
  Put(Band().acRule[2].mac, "02:33");
  ExpectChanges({kMode24, Node("accesscontrol/acrule:3/mac=02:33")});
}

TEST_F(ApplyBandTest, FortyRules) {
  Band().wlAcRuleNo = 40;
  for (int i = 0; i < 40; ++i) {
    Band().acRule[i].active = 1;
    Put(Band().acRule[i].mac, "02:" + std::to_string(i));
  }
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Host().Text(Node("accesscontrol/acrule:40/mac")), "02:39");
  EXPECT_EQ(Host().Text(Node("accesscontrol/acrule:1/mac")), "02:0");
  EXPECT_EQ(Host().Text(Node("accesscontrol/acrule:41/mac")), std::nullopt);
  Host().ClearCalls();
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), (Texts{kMode24, kMode5}));
}

}  // namespace
}  // namespace kio::test
