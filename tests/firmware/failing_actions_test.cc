// What becomes of actions that fail. Those of the library never do, so this program has others in
// their place: it is linked without the library's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "upgrade_fixture.h"

namespace {

unsigned int g_result = 0;
std::vector<unsigned int> g_masks;

}  // namespace

unsigned int exe_ExternalCall(unsigned int mask) {
  g_masks.push_back(mask);
  return g_result;
}

int get_ExternalCall_UseSec(int /*syncId*/) { return 7; }

namespace kio::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FailingActionsTest : public UpgradeTest {
 protected:
  FailingActionsTest() {
    g_result = 0;
    g_masks.clear();
    // Ends a line that a test before left open.
    log_file::Start(7);
    logPrintf(7, "\n");
    log_file::Start(3);
  }
};

TEST_F(FailingActionsTest, CommitTellsAndLogsTheFailure) {
  for (const unsigned int result : {1U, 0x80000000U}) {
    g_result = result;
    rssXmlData.exeflag = 17;
    log_file::Start(4);
    EXPECT_EQ(do_RssXml_Commit(), result);
    EXPECT_THAT(log_file::Lines(), ElementsAre("exe_ExternalCall was fail!"));
    EXPECT_EQ(rssXmlData.exeflag, 17) << "as after any commit";
    log_file::Start(3);
    EXPECT_EQ(do_RssVar_Commit(), result);
    EXPECT_EQ(log_file::Contents(), "");
  }
  EXPECT_THAT(g_masks, ElementsAre(17U, 17U, 17U, 17U));
}

TEST_F(FailingActionsTest, FailureEndsNoLineAndComesBeforeTheEnd) {
  g_result = 1;
  rssXmlData.exeflag = 4;
  log_file::Start(7);
  do_RssXml_Commit();
  EXPECT_EQ(log_file::Contents(),
            "1000: 1000:do_RssXml_Commit]exeflag=4\n"
            "1000: exe_ExternalCall was fail!1000:do_RssXml_Commit]done\n");
}

TEST_F(FailingActionsTest, CommitThatSucceedsLogsNoFailure) {
  rssXmlData.exeflag = 17;
  log_file::Start(6);
  EXPECT_EQ(do_RssXml_Commit(), 0U);
  EXPECT_THAT(g_masks, ElementsAre(17U));
  EXPECT_EQ(log_file::Contents(), "");
}

TEST_F(FailingActionsTest, UpgradeThatCannotBeAnnounced) {
  GoToDownloaded();
  g_result = 1;
  EXPECT_THAT(Act('4'), IsEmpty());
  EXPECT_THAT(g_masks, ElementsAre(128U));
  EXPECT_EQ(Status(), Document("<result>-2</result>")) << "no time, no size, no version";
  // There is no way on from here but to begin anew.
  for (const char* action = "9124"; *action != '\0'; ++action) {
    EXPECT_THAT(Act(*action), IsEmpty());
    EXPECT_EQ(Status(), Document("<result>-2</result>"));
  }
  EXPECT_EQ(g_masks.size(), 1U);
  Act('0');
  EXPECT_EQ(Status(), Document("<result>0</result>"));
}

TEST_F(FailingActionsTest, UpgradeThatIsAnnouncedTellsItsTime) {
  GoToDownloaded();
  Act('4');
  EXPECT_THAT(g_masks, ElementsAre(128U));
  EXPECT_EQ(Status(), Found(5, "<time>7</time>\n"));
}

}  // namespace
}  // namespace kio::test
