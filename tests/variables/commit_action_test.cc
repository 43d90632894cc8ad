// The commit that an action asks for and the alarm runs.
#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <string>
#include <vector>

#include "variables/variables.h"

namespace kio::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Commands = std::vector<std::string>;

// The seconds for which the library has set the alarm. It never rings by itself.
std::vector<unsigned>& Alarms() {
  static std::vector<unsigned> alarms;
  return alarms;
}

}  // namespace

extern "C" unsigned __wrap_alarm(unsigned seconds) {
  Alarms().push_back(seconds);
  return 0;
}

namespace {

class CommitActionTest : public VariableTest {
 protected:
  void SetUp() override {
    VariableTest::SetUp();
    StoreSampleDevice();
    Alarms().clear();
    std::signal(SIGALRM, SIG_IGN);
  }

  void TearDown() override { std::signal(SIGALRM, SIG_DFL); }

  static constexpr const char* kScript = "/etc/scripts/device_resync.sh";
};

TEST_F(CommitActionTest, CommitsTwoSecondsLaterAndOnce) {
  rssXmlData.exeflag = 16;
  EXPECT_EQ(Call("rss_Act_CommitRssVars", kWrite, "left"), (Answer{0, ""}));
  EXPECT_THAT(Alarms(), ElementsAre(2));
  EXPECT_EQ(Call("rss_Act_CommitRssVars", kWrite, "left"), (Answer{0, ""}));
  EXPECT_THAT(Alarms(), ElementsAre(2, 2)) << "the second request starts anew";
  EXPECT_THAT(Host().commands(), IsEmpty());
  // A process has one alarm: the second request has put it off.
  std::raise(SIGALRM);
  EXPECT_EQ(Host().commands(), (Commands{kScript})) << "two requests, one commit";
  EXPECT_THAT(Alarms(), ElementsAre(2, 2)) << "the commit asks for no other";
}

TEST_F(CommitActionTest, ArmsTheAlarmInEveryMode) {
  for (const int mode :
       {0, kRead, kRead | kPath, kWrite, kValidate, kRead | kWrite, kWrite | kValidate}) {
    Alarms().clear();
    std::signal(SIGALRM, SIG_DFL);
    const RecordWatch record;
    EXPECT_EQ(Call("rss_Act_CommitRssVars", mode, "left"), (Answer{0, ""})) << mode;
    EXPECT_THAT(Alarms(), ElementsAre(2)) << mode;
    struct sigaction installed = {};
    sigaction(SIGALRM, nullptr, &installed);
    EXPECT_NE(installed.sa_handler, SIG_DFL) << mode;
    EXPECT_NE(installed.sa_handler, SIG_IGN) << mode;
    record.ExpectUnchanged("commit is asked for");
  }
  EXPECT_THAT(Host().calls(), IsEmpty());
}

TEST_F(CommitActionTest, TheHandlerCommitsAtOnce) {
  rssXmlData.pre_exeflag = 17;
  EXPECT_EQ(Call("rss_Act_CommitRssVars", kRead, ""), (Answer{0, ""}));
  std::raise(SIGALRM);
  EXPECT_EQ(Host().commands(), (Commands{"/etc/scripts/uplink.sh", kScript}));
  EXPECT_EQ(rssXmlData.pre_exeflag, 0);
}

// The alarm comes while the host is at something else.
TEST_F(CommitActionTest, TheHandlerLeavesErrnoAsItWas) {
  rssXmlData.pre_exeflag = 17;
  EXPECT_EQ(Call("rss_Act_CommitRssVars", kRead, ""), (Answer{0, ""}));
  int commands = 0;
  Host().on_command = [&commands](const std::string&) {
    ++commands;
    errno = ERANGE;
  };
  errno = EDOM;
  std::raise(SIGALRM);
  EXPECT_EQ(errno, EDOM);
  EXPECT_EQ(commands, 2);
}

// A function that takes the number of the signal: called by another type, there is no telling what
// becomes of the call on every machine.
TEST_F(CommitActionTest, TheHandlerIsNotTheCommitItself) {
  rssXmlData.exeflag = 16;
  EXPECT_EQ(Call("rss_Act_CommitRssVars", kRead, ""), (Answer{0, ""}));
  void (*const handler)(int) = std::signal(SIGALRM, SIG_DFL);
  const auto address = [](auto* function) { return reinterpret_cast<std::uintptr_t>(function); };
  EXPECT_NE(address(handler), address(do_RssVar_Commit));
  EXPECT_NE(address(handler), address(do_RssXml_Commit));
  handler(SIGALRM);
  EXPECT_EQ(Host().commands(), (Commands{kScript}));
}

TEST_F(CommitActionTest, CommitOfVariablesIsTheCommitOfDocuments) {
  EXPECT_EQ(do_RssVar_Commit(), 0U);
  EXPECT_THAT(Host().commands(), IsEmpty());
  rssXmlData.exeflag = 16;
  EXPECT_EQ(do_RssVar_Commit(), 0U);
  EXPECT_EQ(rssXmlData.exeflag, 16) << "the mask stays";
  EXPECT_EQ(Host().commands(), (Commands{kScript}));
  log_file::Start(7);
  do_RssVar_Commit();
  const std::string of_variables = log_file::Contents();
  log_file::Start(7);
  do_RssXml_Commit();
  EXPECT_EQ(of_variables, log_file::Contents());
}

}  // namespace
}  // namespace kio::test
