// From the restart flags to the actions of a commit.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

using ::testing::Contains;
using Commands = std::vector<std::string>;

constexpr const char* kUplinkScript = "/etc/scripts/uplink.sh";
constexpr const char* kDeviceScript = "/etc/scripts/device_resync.sh";

class CommitTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    Host().Set("/zentrolinks/scriptdirecory", "/etc/scripts");
  }

  static void SetFlags(unsigned bits) {
    ClearRecord();
    rssXmlData.upLink.restart = (bits & 1U) != 0 ? 1 : 0;
    rssXmlData.wlan[0].restart = (bits & 4U) != 0 ? 1 : 0;
    rssXmlData.wlan[1].restart = (bits & 8U) != 0 ? 1 : 0;
    rssXmlData.deviceRestart = (bits & 16U) != 0 ? 1 : 0;
    rssXmlData.saveflag = (bits & 32U) != 0 ? 1 : 0;
  }

  static int Seconds(unsigned bits) {
    return ((bits & 1U) != 0 ? 20 : 0) + ((bits & 4U) != 0 ? 10 : 0) + ((bits & 8U) != 0 ? 10 : 0) +
           ((bits & 16U) != 0 ? 5 : 0);
  }
};

TEST_F(CommitTest, EveryCombinationOfFlags) {
  for (unsigned bits = 0; bits < 64; ++bits) {
    if ((bits & 2U) != 0) {
      continue;
    }
    SetFlags(bits);
    rssXmlData.exeWaitSec = 999;
    calc_RssExeFlag();
    EXPECT_EQ(rssXmlData.exeflag, static_cast<int>(bits));
    EXPECT_EQ(rssXmlData.exeWaitSec, Seconds(bits)) << bits;
  }
}

TEST_F(CommitTest, AnyNonZeroRestartFlagCounts) {
  rssXmlData.upLink.restart = 8;
  rssXmlData.wlan[1].restart = -1;
  rssXmlData.saveflag = 255;
  calc_RssExeFlag();
  EXPECT_EQ(rssXmlData.exeflag, 41);
}

TEST_F(CommitTest, RoamingAndSafetyVyrHaveNoBit) {
  rssXmlData.roamingRestart = 1;
  rssXmlData.safetyVyr.restart = 1;
  calc_RssExeFlag();
  EXPECT_EQ(rssXmlData.exeflag, 0);
  EXPECT_EQ(rssXmlData.exeWaitSec, 0);
}

TEST_F(CommitTest, SurveyExcludesEverythingElse) {
  SetFlags(63);
  rssXmlData.wlanSurveyRestart = 1;
  calc_RssExeFlag();
  EXPECT_EQ(rssXmlData.exeflag, 64);
  EXPECT_EQ(rssXmlData.exeWaitSec, 3);
}

TEST_F(CommitTest, CloningIgnoresTheSurvey) {
  SetFlags(37);
  rssXmlData.wlanSurveyRestart = 1;
  rssXmlData.apCloningOnly = 1;
  calc_RssExeFlag();
  EXPECT_EQ(rssXmlData.exeflag, 37);
  EXPECT_EQ(rssXmlData.exeWaitSec, 30);
}

TEST_F(CommitTest, UncommittedActionsMoveToThePreviousOnes) {
  SetFlags(4);
  rssXmlData.exeflag = 33;
  rssXmlData.pre_exeflag = 8;
  calc_RssExeFlag();
  EXPECT_EQ(rssXmlData.pre_exeflag, 33);
  EXPECT_EQ(rssXmlData.exeflag, 4);
  rssXmlData.wlan[0].restart = 0;
  rssXmlData.wlanSurveyRestart = 1;
  calc_RssExeFlag();
  EXPECT_EQ(rssXmlData.pre_exeflag, 4);
  EXPECT_EQ(rssXmlData.exeflag, 64);
}

TEST_F(CommitTest, NoActionsKeepThePreviousOnes) {
  rssXmlData.pre_exeflag = 16;
  calc_RssExeFlag();
  EXPECT_EQ(rssXmlData.pre_exeflag, 16);
  EXPECT_EQ(rssXmlData.exeflag, 0);
}

TEST_F(CommitTest, LogsMaskAndWaitingTime) {
  log_file::Start(6);
  SetFlags(33);
  calc_RssExeFlag();
  EXPECT_THAT(log_file::Lines(), Contains("1000:exeflag=33, exeWaitSec=20"));
}

TEST_F(CommitTest, RunsTheScriptsInOrder) {
  rssXmlData.exeflag = 17;
  EXPECT_EQ(do_RssXml_Commit(), 0U);
  EXPECT_EQ(Host().commands(), (Commands{kUplinkScript, kDeviceScript}));
}

TEST_F(CommitTest, ScriptDirectoryComesFromTheStoreNotTheRecord) {
  Put(rssXmlData.scriptPath, "/elsewhere");
  rssXmlData.exeflag = 1;
  do_RssXml_Commit();
  EXPECT_EQ(Host().commands(), (Commands{kUplinkScript}));
}

TEST_F(CommitTest, NothingPendingDoesNothing) {
  log_file::Start(7);
  EXPECT_EQ(do_RssXml_Commit(), 0U);
  EXPECT_TRUE(Host().commands().empty());
  EXPECT_THAT(log_file::Contents(), ::testing::HasSubstr("exeflag=0\n"));
  EXPECT_THAT(log_file::Contents(), ::testing::Not(::testing::HasSubstr("done")));
}

// A committed mask stays recorded.
TEST_F(CommitTest, CommitKeepsTheMask) {
  rssXmlData.exeflag = 16;
  do_RssXml_Commit();
  EXPECT_EQ(rssXmlData.exeflag, 16);
  EXPECT_EQ(rssXmlData.pre_exeflag, 0);
  do_RssXml_Commit();
  EXPECT_EQ(Host().commands(), (Commands{kDeviceScript, kDeviceScript}));
}

TEST_F(CommitTest, PreviousActionsRunOnce) {
  log_file::Start(7);
  rssXmlData.pre_exeflag = 16;
  do_RssXml_Commit();
  EXPECT_EQ(Host().commands(), (Commands{kDeviceScript}));
  EXPECT_EQ(rssXmlData.pre_exeflag, 0);
  EXPECT_EQ(rssXmlData.exeflag, 0);
  EXPECT_THAT(log_file::Contents(),
              ::testing::HasSubstr("Use pre_exeflag, pre_exeflag=16, exeflag=0\n"));
  do_RssXml_Commit();
  EXPECT_EQ(Host().commands().size(), 1U);
}

TEST_F(CommitTest, CurrentActionsComeBeforePreviousOnes) {
  rssXmlData.exeflag = 1;
  rssXmlData.pre_exeflag = 16;
  do_RssXml_Commit();
  EXPECT_EQ(Host().commands(), (Commands{kUplinkScript}));
  EXPECT_EQ(rssXmlData.pre_exeflag, 16);
}

// A later exchange that changes nothing repeats the previous one's actions once.
TEST_F(CommitTest, ExchangeWithoutChangesRepeatsTheLastActionsOnce) {
  SetFlags(33);
  calc_RssExeFlag();
  do_RssXml_Commit();
  EXPECT_EQ(Host().commands(), (Commands{kUplinkScript}));
  rssXmlData.upLink.restart = 0;
  rssXmlData.saveflag = 0;
  calc_RssExeFlag();
  EXPECT_EQ(rssXmlData.exeWaitSec, 0);
  do_RssXml_Commit();
  EXPECT_EQ(Host().commands(), (Commands{kUplinkScript, kUplinkScript}));
  do_RssXml_Commit();
  calc_RssExeFlag();
  do_RssXml_Commit();
  EXPECT_EQ(Host().commands().size(), 2U);
}

TEST_F(CommitTest, FullCloningCommitAddsDeviceAndSave) {
  log_file::Start(6);
  EXPECT_EQ(do_RssXml_Commit_for_ApCloning(1), 0U);
  EXPECT_EQ(Host().commands(), (Commands{kDeviceScript}));
  EXPECT_EQ(rssXmlData.exeflag, 48);
  EXPECT_THAT(log_file::Contents(), ::testing::HasSubstr("[exe_ExternalCall,CfgSaveToFlash]\n"));
}

TEST_F(CommitTest, FullCloningCommitKeepsOtherActions) {
  rssXmlData.exeflag = 1;
  rssXmlData.pre_exeflag = 4;
  do_RssXml_Commit_for_ApCloning(-1);
  EXPECT_EQ(Host().commands(), (Commands{kUplinkScript, kDeviceScript}));
  EXPECT_EQ(rssXmlData.exeflag, 49);
  EXPECT_EQ(rssXmlData.pre_exeflag, 4);
}

TEST_F(CommitTest, PlainCloningCommitIsTheCommit) {
  do_RssXml_Commit_for_ApCloning(0);
  EXPECT_TRUE(Host().commands().empty());
  rssXmlData.pre_exeflag = 16;
  do_RssXml_Commit_for_ApCloning(0);
  EXPECT_EQ(Host().commands(), (Commands{kDeviceScript}));
}

TEST_F(CommitTest, SuccessfulCommitLogsNoFailure) {
  for (const int actions : {1, 4 | 32, 16, 64}) {
    rssXmlData.exeflag = actions;
    log_file::Start(5);
    EXPECT_EQ(do_RssXml_Commit(), 0U);
    EXPECT_EQ(log_file::Contents(), "") << actions;
    log_file::Start(7);
    EXPECT_EQ(do_RssXml_Commit(), 0U);
    EXPECT_THAT(log_file::Contents(), ::testing::HasSubstr("]done\n"));
    EXPECT_THAT(log_file::Contents(), ::testing::Not(::testing::HasSubstr("fail")));
  }
}

TEST_F(CommitTest, LogsEntryMaskAndEnd) {
  log_file::Start(7);
  rssXmlData.exeflag = 36;
  do_RssXml_Commit();
  const std::string log = log_file::Contents();
  EXPECT_THAT(log, ::testing::HasSubstr("1000:do_RssXml_Commit]"));
  EXPECT_THAT(log, ::testing::HasSubstr("exeflag=36\n"));
  EXPECT_THAT(log, ::testing::HasSubstr("[exe_ExternalCall,WlanResync]\n"));
  EXPECT_THAT(log, ::testing::HasSubstr("1000:do_RssXml_Commit]done\n"));
}

}  // namespace
}  // namespace kio::test
