// The page of the actions says what the library does for each of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "action_table.h"
#include "kioapp/kioapp.h"
#include "platform/sandbox.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::tools {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class ActionPageTest : public test::SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    test::Sandbox::Get().Reset();
    Host().Set("/zentrolinks/scriptdirecory", "/etc/scripts");
  }

  const std::vector<Action> actions_ = ListActions();
};

TEST_F(ActionPageTest, EachActionIsDescribed) {
  EXPECT_EQ(actions_.size(), 9U);
  for (const Action& action : actions_) {
    EXPECT_THAT(action.name, Not(IsEmpty())) << action.bit;
    EXPECT_THAT(action.asked, Not(IsEmpty())) << action.bit;
    EXPECT_THAT(action.host, Not(IsEmpty())) << action.bit;
    EXPECT_EQ(get_ExternalCall_UseSec(static_cast<int>(action.bit)), action.seconds);
  }
}

TEST_F(ActionPageTest, NamesAreThoseOfTheLog) {
  for (const Action& action : actions_) {
    test::log_file::Start(6);
    exe_ExternalCall(action.bit);
    EXPECT_THAT(test::log_file::Contents(), HasSubstr("[exe_ExternalCall," + action.name + "]"));
  }
}

// Whatever bit the library acts on is on the page.
TEST_F(ActionPageTest, NoOtherBitDoesAnything) {
  unsigned int listed = 0;
  for (const Action& action : actions_) {
    listed |= action.bit;
  }
  test::log_file::Start(6);
  exe_ExternalCall(~listed);
  EXPECT_THAT(test::log_file::Contents(), IsEmpty());
  EXPECT_THAT(Host().commands(), IsEmpty());
}

TEST_F(ActionPageTest, TheLibraryRunsTheListedScriptsAndLeavesTheRest) {
  for (const Action& action : actions_) {
    Host().ClearCommands();
    exe_ExternalCall(action.bit);
    if (!action.script.empty()) {
      EXPECT_EQ(Host().commands(), std::vector<std::string>{"/etc/scripts" + action.script});
      EXPECT_THAT(action.library, HasSubstr(action.script.substr(1)));
    } else if (action.library.empty()) {
      EXPECT_THAT(Host().commands(), IsEmpty()) << action.name;
      EXPECT_THAT(Host().Writes(), IsEmpty()) << action.name;
    }
  }
}

// Before a commit the mask stands in the record; the commit leaves it.
TEST_F(ActionPageTest, TheMaskIsKnownBeforeTheCommitAndStaysBehindIt) {
  test::StoreSampleDevice();
  Host().Set("/sys/friendlyname", "before");
  rssXmlData.exeflag = 0;
  ASSERT_EQ(test::Parse(test::SampleDocument()), 1);
  constexpr int kMask = KIOAPP_SYNC_DEVICE | KIOAPP_SYNC_SAVE_TO_FLASH;
  EXPECT_EQ(rssXmlData.exeflag, kMask);
  EXPECT_EQ(rssXmlData.exeWaitSec, get_ExternalCall_UseSec(KIOAPP_SYNC_DEVICE));
  Host().ClearCommands();
  EXPECT_EQ(do_RssXml_Commit(), 0U);
  EXPECT_EQ(Host().commands(), std::vector<std::string>{"/etc/scripts/device_resync.sh"});
  EXPECT_EQ(rssXmlData.exeflag, kMask);
  // An exchange that changes nothing has the actions of the one before run once more.
  ASSERT_EQ(test::Parse(test::SampleDocument()), 1);
  EXPECT_EQ(rssXmlData.exeflag, 0);
  EXPECT_EQ(rssXmlData.pre_exeflag, kMask);
}

}  // namespace
}  // namespace kio::tools
