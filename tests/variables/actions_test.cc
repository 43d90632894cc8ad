// The action variables, but for the commit.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "testing/heap_chars.h"
#include "variables/variables.h"

namespace kio::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr int kActionModes[] = {0,         kRead, kRead | kPath,  kWrite,
                                kValidate, kPath, kRead | kWrite, kWrite | kValidate};

class ActionTest : public VariableTest {
 protected:
  void SetUp() override {
    VariableTest::SetUp();
    StoreSampleDevice();
    Host().Set("/sys/factorydefault", 0);
    Host().Set("/lan/wireless2.4:1/accesscontrol/acrule#", 2);
    Host().Set("/lan/wireless5:1/accesscontrol/acrule#", 1);
  }
};

TEST_F(ActionTest, OtherNamesAreUnknown) {
  for (const char* name :
       {"rss_Act_", "rss_Act_X", "rss_Act_sitesurvey", "rss_Act_SiteSurvey_",
        "rss_Act_SiteSurvey_X", "rss_Act_SetRssVars_", "rss_Act_VerifyAllRssVars_X",
        "rss_Act_ApplyAllRssVars_", "rss_Act_CommitRssVars_X", "rss_Act_VerifyAllRssVar",
        "rss_Act_CommitRssVarsX", "rss_Act__SiteSurvey"}) {
    for (const int mode : kActionModes) {
      EXPECT_EQ(Call(name, mode, "rss_DeviceName=Attic"), (Answer{2, "rss_DeviceName=Attic"}))
          << name;
    }
  }
  EXPECT_THAT(Host().calls(), IsEmpty());
  EXPECT_THAT(Host().commands(), IsEmpty());
}

class SiteSurveyTest : public ActionTest {
 protected:
  void SetUp() override {
    ActionTest::SetUp();
    rssXmlData.upLink.hardwareTypeCode = 3;
  }
};

TEST_F(SiteSurveyTest, NeedsAWirelessUplink) {
  for (const int hardware : {0, 1, 2, 4, 5, -1, 6}) {
    rssXmlData.upLink.hardwareTypeCode = hardware;
    for (const int mode : kActionModes) {
      EXPECT_EQ(Call("rss_Act_SiteSurvey", mode, "left"), (Answer{2, ""})) << hardware;
    }
  }
  EXPECT_THAT(Host().calls(), IsEmpty());
}

TEST_F(SiteSurveyTest, StartsInEveryMode) {
  rssXmlData.upLink.configurable = 0;
  for (const int mode : kActionModes) {
    Host().Set("/uplink/extendersite/survey", 0);
    Host().ClearCalls();
    const RecordWatch record;
    EXPECT_EQ(Call("rss_Act_SiteSurvey", mode, "left"), (Answer{0, ""})) << mode;
    EXPECT_EQ(Changes(), (std::vector<std::string>{"/uplink/extendersite/survey=1"})) << mode;
    record.ExpectUnchanged("site survey");
  }
  EXPECT_THAT(Host().commands(), IsEmpty());
}

TEST_F(SiteSurveyTest, ForgetsTheEarlierSite) {
  Host().Set("/runtime/apcloninginfo/extendersite/wirelesstype", "5");
  Host().Set("/runtime/apcloninginfo/extendersite/wirelessname", "Old");
  EXPECT_EQ(Call("rss_Act_SiteSurvey", kWrite, "left"), (Answer{0, ""}));
  EXPECT_EQ(Changes(), (std::vector<std::string>{"/uplink/extendersite/survey=1",
                                                 "delete /runtime/apcloninginfo/extendersite"}));
  EXPECT_EQ(Host().Text("/runtime/apcloninginfo/extendersite/wirelessname"), std::nullopt);
}

TEST_F(SiteSurveyTest, KeepsASiteWithoutType) {
  Host().Set("/runtime/apcloninginfo/extendersite/wirelessname", "Old");
  EXPECT_EQ(Call("rss_Act_SiteSurvey", kWrite, "").code, 0U);
  EXPECT_EQ(Changes(), (std::vector<std::string>{"/uplink/extendersite/survey=1"}));
}

TEST_F(SiteSurveyTest, AsksTheStoreInOrder) {
  const auto calls = [] {
    EXPECT_EQ(Call("rss_Act_SiteSurvey", kWrite, "").code, 0U);
    std::vector<StoreCall> all = Host().calls();
    // What follows belongs to the external call.
    std::erase_if(all,
                  [](const StoreCall& call) { return call.path == "/zentrolinks/scriptdirecory"; });
    Host().ClearCalls();
    return all;
  };
  EXPECT_THAT(calls(),
              ElementsAre(StoreCall{Kind::kGetInt, "/uplink/extendersite/survey", "0"},
                          StoreCall{Kind::kSetInt, "/uplink/extendersite/survey", "1"},
                          StoreCall{Kind::kGetText,
                                    "/runtime/apcloninginfo/extendersite/wirelesstype", ""}));
  EXPECT_THAT(calls(), ElementsAre(StoreCall{Kind::kGetInt, "/uplink/extendersite/survey", "1"}));
  Host().Delete("/uplink/extendersite/survey");
  EXPECT_EQ(calls().size(), 3U) << "an absent node is no running survey";
  Host().Set("/uplink/extendersite/survey", 2);
  EXPECT_EQ(calls().size(), 3U);
}

TEST_F(SiteSurveyTest, RunningSurveyIsTriggeredAgain) {
  Host().Set("/uplink/extendersite/survey", 1);
  Host().Set("/runtime/apcloninginfo/extendersite/wirelesstype", "5");
  log_file::Start(7);
  EXPECT_EQ(Call("rss_Act_SiteSurvey", kRead, "left"), (Answer{0, ""}));
  EXPECT_THAT(Host().Writes(), IsEmpty());
  EXPECT_THAT(log_file::Lines(), Contains("Trigger Site Survey ..."));
  EXPECT_THAT(log_file::Lines(), Contains("[exe_ExternalCall,WlanSiteSurvey]"));
}

TEST_F(SiteSurveyTest, RefusedSurveyIsNotLogged) {
  rssXmlData.upLink.hardwareTypeCode = 0;
  log_file::Start(7);
  EXPECT_EQ(Call("rss_Act_SiteSurvey", kRead, "left").code, 2U);
  EXPECT_THAT(log_file::Lines(), Not(Contains("Trigger Site Survey ...")));
  EXPECT_THAT(log_file::Lines(), Not(Contains("[exe_ExternalCall,WlanSiteSurvey]")));
}

TEST_F(ActionTest, VerifyWritesTheResultOfASoundRecord) {
  for (const int mode : kActionModes) {
    Host().ClearCommands();
    Host().ClearCalls();
    EXPECT_EQ(Call("rss_Act_VerifyAllRssVars", mode, "left"), (Answer{0, ""})) << mode;
    EXPECT_EQ(Host().commands(), ResultCommands(0, "", 0)) << mode;
    EXPECT_THAT(Host().Writes(), IsEmpty());
  }
  EXPECT_EQ(rssXmlData.setResult, 0);
}

TEST_F(ActionTest, VerifyTellsTheFault) {
  for (const int mode : kActionModes) {
    Host().ClearCommands();
    Put(rssXmlData.deviceName, "");
    EXPECT_EQ(Call("rss_Act_VerifyAllRssVars", mode, "left"), (Answer{10, "Device/DeviceName"}));
    EXPECT_EQ(Host().commands(), ResultCommands(10, "Device/DeviceName", 0)) << "written once";
  }
  Put(rssXmlData.deviceName, "x");
  rssXmlData.wlan[1].wlSchedule = 3;
  EXPECT_EQ(Call("rss_Act_VerifyAllRssVars", kRead, ""),
            (Answer{3, "Device/Wireless5/WlSchedule"}));
  EXPECT_EQ(rssXmlData.setResult, 3);
  EXPECT_STREQ(rssXmlData.setMsg, "Device/Wireless5/WlSchedule");
}

TEST_F(ActionTest, ApplyOfAnUnchangedRecordChangesNothing) {
  rssXmlData.upLink.configurable = 1;
  EXPECT_EQ(Call("rss_Act_ApplyAllRssVars", kWrite, "left"), (Answer{0, ""}));
  EXPECT_EQ(rssXmlData.exeflag, 0);
  EXPECT_EQ(rssXmlData.exeWaitSec, 0);
  EXPECT_THAT(Host().commands(), IsEmpty());
}

TEST_F(ActionTest, ApplyWritesTheStoreAndWorksOutTheActions) {
  ASSERT_EQ(Write("rss_DeviceName", "Attic").code, 0U);
  ASSERT_EQ(Write("rss_Wl5_WirelessName", "Attic-5").code, 0U);
  EXPECT_THAT(Host().Writes(), IsEmpty()) << "nothing is applied before";
  rssXmlData.exeWaitSec = 99;
  rssXmlData.exeflag = 1;
  EXPECT_EQ(Call("rss_Act_ApplyAllRssVars", kRead, "left"), (Answer{0, ""}));
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "Attic");
  EXPECT_EQ(Host().Text("/lan/wireless5:1/wirelessname"), "Attic-5");
  EXPECT_EQ(rssXmlData.exeflag, 8 | 16 | 32);
  EXPECT_EQ(rssXmlData.pre_exeflag, 1) << "actions that were never committed";
  EXPECT_EQ(rssXmlData.exeWaitSec, 15);
  EXPECT_THAT(Host().commands(), IsEmpty()) << "no result document, and nothing is run";
}

TEST_F(ActionTest, ApplyTellsTheRefusal) {
  Host().Set("/sys/routerenbl", 2);
  rssXmlData.exeflag = 4;
  for (const int mode : kActionModes) {
    Host().ClearCommands();
    EXPECT_EQ(Call("rss_Act_ApplyAllRssVars", mode, "left"), (Answer{3, "Device/RouterEnbl"}));
    EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/RouterEnbl", 0));
  }
  EXPECT_EQ(rssXmlData.exeflag, 4);
  EXPECT_EQ(rssXmlData.pre_exeflag, 0);
}

TEST_F(ActionTest, ApplyDoesNotVerify) {
  Put(rssXmlData.deviceName, "");
  EXPECT_EQ(Call("rss_Act_ApplyAllRssVars", kWrite, ""), (Answer{0, ""}));
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "");
}

TEST_F(ActionTest, SetRssVarsSetsAndVerifies) {
  for (const int mode : kActionModes) {
    Put(rssXmlData.deviceName, "Kitchen");
    Host().ClearCommands();
    Host().ClearCalls();
    EXPECT_EQ(Call("rss_Act_SetRssVars", mode,
                   "rss_DeviceName=Attic&rss_Upl_IP=1.2.3.4&&rss_Vyr_UrlDetectEnbl=1"),
              (Answer{0, ""}))
        << mode;
    EXPECT_STREQ(rssXmlData.deviceName, "Attic");
    EXPECT_STREQ(rssXmlData.upLink.ip, "1.2.3.4");
    EXPECT_EQ(rssXmlData.safetyVyr.urlDetectEnbl, 1);
    EXPECT_EQ(Host().commands(), ResultCommands(0, "", 0));
    EXPECT_THAT(Host().Writes(), IsEmpty()) << "nothing is applied";
  }
}

TEST_F(ActionTest, SetRssVarsTellsTheVariableThatWasRefused) {
  EXPECT_EQ(Call("rss_Act_SetRssVars", kWrite, "rss_Upl_IP=1.2.3.4&rss_Upl_DNS=x&rss_DeviceName=A"),
            (Answer{2, "rss_Upl_DNS"}));
  EXPECT_EQ(Host().commands(), ResultCommands(2, "rss_Upl_DNS", 0));
  EXPECT_STREQ(rssXmlData.upLink.ip, "1.2.3.4") << "set before the refusal";
  EXPECT_STREQ(rssXmlData.deviceName, "Kitchen");
}

TEST_F(ActionTest, SetRssVarsTellsTheFaultOfTheRecord) {
  rssXmlData.wlan[0].wlEnbl = 1;
  EXPECT_EQ(Call("rss_Act_SetRssVars", kRead, "rss_Wl2_WlEnbl=9"),
            (Answer{3, "Device/Wireless2.4/WlEnbl"}));
  EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/Wireless2.4/WlEnbl", 0));
}

TEST_F(ActionTest, SetRssVarsOfNothingVerifies) {
  EXPECT_EQ(Call("rss_Act_SetRssVars", kWrite, ""), (Answer{0, ""}));
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 0));
  Put(rssXmlData.devicePwd, "abc");
  EXPECT_EQ(Call("rss_Act_SetRssVars", kWrite, "left"), (Answer{10, "Device/DevicePwd"}));
}

TEST_F(ActionTest, SetRssVarsTakesMoreThanABufferOfText) {
  std::string batch;
  for (int i = 0; i < 500; ++i) {
    batch += "rss_Upl_Ets_WirelessName=name" + std::to_string(i) + "&";
  }
  EXPECT_EQ(Call("rss_Act_SetRssVars", kWrite, batch), (Answer{0, ""}));
  EXPECT_STREQ(rssXmlData.upLink.extenderSite.wirelessName, "name499");
}

TEST_F(ActionTest, SetRssVarsInsideABatch) {
  HeapChars batch("rss_Act_SetRssVars=rss_DeviceName=Attic\nrss_Upl_IP=1.2.3.4");
  HeapChars<128> name;
  EXPECT_EQ(do_RssVar_Parser(batch, '&', name, 0), 0);
  EXPECT_STREQ(rssXmlData.deviceName, "Attic");
  EXPECT_STREQ(rssXmlData.upLink.ip, "1.2.3.4");
}

// An exchange of variables from the snapshot to the store.
TEST_F(ActionTest, ExchangeOfVariables) {
  ClearRecord();
  init_RssVar();
  rssXmlData.wlan[0].configurable = 0;
  rssXmlData.wlan[1].configurable = 0;
  EXPECT_STREQ(getRssVar("rss_DeviceName"), "Kitchen");
  EXPECT_EQ(Write("rss_DeviceName", "Attic").code, 0U);
  EXPECT_EQ(Call("rss_Act_VerifyAllRssVars", kWrite, ""), (Answer{0, ""}));
  EXPECT_EQ(Call("rss_Act_ApplyAllRssVars", kWrite, ""), (Answer{0, ""}));
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "Attic");
  EXPECT_EQ(rssXmlData.exeflag, 48);
  Host().ClearCommands();
  EXPECT_EQ(do_RssVar_Commit(), 0U);
  EXPECT_EQ(Host().commands(), (std::vector<std::string>{"/etc/scripts/device_resync.sh"}));
  init_RssVar();
  EXPECT_STREQ(getRssVar("rss_DeviceName"), "Attic");
}

}  // namespace
}  // namespace kio::test
