// Applying the settings of the radios in normal mode.
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "settings/changes.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

class ApplyRadioTest : public SettingsTest {
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

  static RssWlan& Radio() { return rssXmlData.wlan[0]; }
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
    EXPECT_EQ(Radio().restart != 0, restart);
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

TEST_F(ApplyRadioTest, EverySettingInOrder) {
  Radio().wlEnbl = 0;
  Radio().wlSchedule = 1;
  Put(Radio().wirelessName, "New");
  Put(Radio().encryptionMode, "WPA");
  Put(Radio().encryptionType, "TKIP");
  Put(Radio().encryptionKey, "new-key-24");
  Put(Radio().channel, "11");
  Radio().wlAcMode = 0;
  Radio().acRule[0].active = 0;
  Put(Radio().acRule[0].mac, "02:11");
  Put(Radio().acRule[1].mac, "02:22");
  ExpectChanges(
      {Node("wlenbl=0"), Node("wlschedule=1"), Node("wirelessname=New"), Node("encryptionmode=WPA"),
       Node("encryptiontype=TKIP"), Node("encryptionkey=new-key-24"), Node("channel=11"),
       Node("accesscontrol/wlacmode=0"), Node("accesscontrol/acrule:1/active=0"),
       Node("accesscontrol/acrule:1/mac=02:11"), Node("accesscontrol/acrule:2/mac=02:22")});
  EXPECT_EQ(Host().Text("/lan/wireless2.4:1/wirelessbssid"), "02:00:00:00:24:01");
}

TEST_F(ApplyRadioTest, SecondRadioHasItsOwnNodesAndFlag) {
  Put(rssXmlData.wlan[1].wirelessName, "New-5");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(),
            (Texts{kMode24, "/lan/wireless5:1/wirelessname=New-5", kMode5, kNotFactory}));
  EXPECT_EQ(rssXmlData.wlan[0].restart, 0);
  EXPECT_EQ(rssXmlData.wlan[1].restart, 1);
}

TEST_F(ApplyRadioTest, AbsentOrFixedRadiosAreSkipped) {
  Put(Radio().wirelessName, "New");
  rssXmlData.wlan24Feature = 0;
  ExpectChanges({});
  rssXmlData.wlan24Feature = 1;
  Radio().configurable = 0;
  ExpectChanges({});
}

TEST_F(ApplyRadioTest, LockedRadioSwitchIsRefused) {
  for (const int stored : {2, 3}) {
    Reset();
    Host().Set(Node("wlenbl"), stored);
    ExpectRefusal("Device/Wireless2.4/WlEnbl", {});
    Radio().wlEnbl = stored;
    ExpectChanges({kMode24});
  }
}

TEST_F(ApplyRadioTest, OtherStoredRadioSwitchesAreNotLocked) {
  for (const int stored : {-2, 0, 4, 5, 255}) {
    Reset();
    Host().Set(Node("wlenbl"), stored);
    ExpectChanges({Node("wlenbl=1"), kMode24});
  }
  Reset();
  Host().Delete(Node("wlenbl"));
  ExpectChanges({Node("wlenbl=1"), kMode24});
}

TEST_F(ApplyRadioTest, RadioSwitchAboveOneIsRefused) {
  for (const int value : {2, 3}) {
    Radio().wlEnbl = value;
    ExpectRefusal("Device/Wireless2.4/WlEnbl", {});
  }
}

TEST_F(ApplyRadioTest, LockedScheduleIsRefused) {
  Host().Set(Node("wlschedule"), 2);
  Radio().wlEnbl = 0;
  ExpectRefusal("Device/Wireless2.4/WlSchedule", {Node("wlenbl=0")});
  EXPECT_EQ(Radio().restart, 1) << "the flags stay as far as they got";
}

TEST_F(ApplyRadioTest, ScheduleAboveOneIsRefused) {
  Radio().wlSchedule = 2;
  ExpectRefusal("Device/Wireless2.4/WlSchedule", {});
  Host().Set(Node("wlschedule"), 2);
  ExpectChanges({kMode24});
}

TEST_F(ApplyRadioTest, StoredScheduleThreeIsNotLocked) {
  Host().Set(Node("wlschedule"), 3);
  ExpectChanges({Node("wlschedule=0"), kMode24});
}

TEST_F(ApplyRadioTest, OtherStoredSchedulesAreNotLocked) {
  for (const int stored : {-2, 1, 4, 255}) {
    Host().Set(Node("wlschedule"), stored);
    ExpectChanges({Node("wlschedule=0"), kMode24});
  }
}

TEST_F(ApplyRadioTest, RefusalInTheSecondRadioKeepsTheFirstRadiosChanges) {
  Put(Radio().wirelessName, "New");
  rssXmlData.wlan[1].wlSchedule = 2;
  ExpectRefusal("Device/Wireless5/WlSchedule", {Node("wirelessname=New"), kMode24});
}

TEST_F(ApplyRadioTest, Version10WritesAutoAndNoChannelOrAccessControl) {
  rssXmlData.specVer = 100;
  Put(Radio().encryptionType, "TKIP");
  Put(Radio().channel, "11");
  Radio().wlAcMode = 0;
  Put(rssXmlData.wlan[1].channel, "44");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), (Texts{Node("encryptiontype=AUTO"), kNotFactory}));
}

TEST_F(ApplyRadioTest, AccessSwitchOff) {
  Radio().wlAcEnbl = 0;
  Radio().wlAcMode = 0;
  Radio().wlAcRuleNo = 0;
  ExpectChanges({Node("accesscontrol/wlacenbl=0")});
  EXPECT_EQ(Host().Text(Node("accesscontrol/acrule:2/mac")), "02:00:00:00:00:02")
      << "the rules stay";
}

TEST_F(ApplyRadioTest, AccessSwitchOn) {
  Host().Set(Node("accesscontrol/wlacenbl"), 0);
  ExpectChanges({Node("accesscontrol/wlacenbl=1"), kMode24});
  const std::vector<StoreCall> writes = Host().Writes();
  ASSERT_FALSE(writes.empty());
  EXPECT_EQ(writes[0].kind, StoreCall::Kind::kSetInt);
}

TEST_F(ApplyRadioTest, RequestedAccessSwitchTwoIsWritten) {
  Radio().wlAcEnbl = 2;
  ExpectChanges({Node("accesscontrol/wlacenbl=2")});
  EXPECT_EQ(Radio().wlAcEnbl, 2);
}

TEST_F(ApplyRadioTest, LockedOrAbsentAccessSwitchIsRefused) {
  Host().Set(Node("accesscontrol/wlacenbl"), 2);
  Put(Radio().channel, "11");
  ExpectRefusal("Device/Wireless2.4/AccessControl/WlAcEnbl", {Node("channel=11")});
  Reset();
  Host().Delete(Node("accesscontrol/wlacenbl"));
  ExpectRefusal("Device/Wireless2.4/AccessControl/WlAcEnbl", {});
}

TEST_F(ApplyRadioTest, LockedAccessSwitchMayBeSentAsItIs) {
  Radio().wlAcEnbl = 2;
  for (const bool absent : {false, true}) {
    Host().Set(Node("accesscontrol/wlacenbl"), 2);
    if (absent) {
      Host().Delete(Node("accesscontrol/wlacenbl"));
    }
    ExpectChanges({});
  }
}

TEST_F(ApplyRadioTest, AccessModeIsAlwaysWrittenButFlagsOnlyAChange) {
  ExpectChanges({kMode24});
  Radio().wlAcMode = 0;
  ExpectChanges({Node("accesscontrol/wlacmode=0")});
}

TEST_F(ApplyRadioTest, AbsentAccessModeCountsAsZero) {
  Host().Delete("/lan/wireless5:1/accesscontrol/wlacmode");
  Host().ClearCalls();
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), (Texts{kMode24, kMode5}));
  EXPECT_EQ(rssXmlData.wlan[1].restart, 0);
  Host().Delete("/lan/wireless2.4:1/accesscontrol/wlacmode");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Radio().restart, 1);
}

TEST_F(ApplyRadioTest, RulesAreDeletedFromTheHighestDown) {
  Host().Set(Node("accesscontrol/acrule:3/active"), 1);
  Host().Set(Node("accesscontrol/acrule:3/mac"), "02:33");
  Radio().wlAcRuleNo = 1;
  ExpectChanges({kMode24, "delete " + Node("accesscontrol/acrule:3"),
                 "delete " + Node("accesscontrol/acrule:2")});
  EXPECT_EQ(Host().Text(Node("accesscontrol/acrule:2/mac")), std::nullopt);
}

TEST_F(ApplyRadioTest, NoRulesDeleteAll) {
  Radio().wlAcRuleNo = 0;
  ExpectChanges({kMode24, "delete " + Node("accesscontrol/acrule:2"),
                 "delete " + Node("accesscontrol/acrule:1")});
}

TEST_F(ApplyRadioTest, NewRulesAreAdded) {
  Radio().wlAcRuleNo = 3;
  Radio().acRule[2].active = 1;
  Put(Radio().acRule[2].mac, "02:33");
  ExpectChanges(
      {kMode24, Node("accesscontrol/acrule:3/active=1"), Node("accesscontrol/acrule:3/mac=02:33")});
}

TEST_F(ApplyRadioTest, AbsentActiveCountsAsZero) {
  Radio().wlAcRuleNo = 3;
  Radio().acRule[2].active = 0;
  Put(Radio().acRule[2].mac, "02:33");
  ExpectChanges({kMode24, Node("accesscontrol/acrule:3/mac=02:33")});
}

TEST_F(ApplyRadioTest, FortyRules) {
  Radio().wlAcRuleNo = 40;
  for (int i = 0; i < 40; ++i) {
    Radio().acRule[i].active = 1;
    Put(Radio().acRule[i].mac, "02:" + std::to_string(i));
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
