// The commit that an action asks for and the alarm runs.
#include <gmock/gmock.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <string>
#include <vector>

#include "variables/variables.h"

namespace kio::test {
namespace {

using std::chrono::milliseconds;
using ::testing::AnyOf;
using ::testing::IsEmpty;
using Clock = std::chrono::steady_clock;
using Commands = std::vector<std::string>;

// The alarm is blocked but while a test waits for it, so that nothing runs beside the test.
class CommitActionTest : public VariableTest {
 protected:
  void SetUp() override {
    VariableTest::SetUp();
    StoreSampleDevice();
    sigset_t alarm_only;
    sigemptyset(&alarm_only);
    sigaddset(&alarm_only, SIGALRM);
    sigprocmask(SIG_BLOCK, &alarm_only, &before_);
    std::signal(SIGALRM, SIG_DFL);
  }

  void TearDown() override {
    alarm(0);
    std::signal(SIGALRM, SIG_IGN);  // drops a pending one
    sigprocmask(SIG_SETMASK, &before_, nullptr);
    std::signal(SIGALRM, SIG_DFL);
  }

  // Whether the alarm came within `limit`; its handler has then run.
  [[nodiscard]] bool AlarmComes(milliseconds limit) const {
    sigset_t open = before_;
    sigdelset(&open, SIGALRM);
    timespec time = {};  // its members' type depends on the machine
    time.tv_sec = static_cast<decltype(time.tv_sec)>(limit.count() / 1000);
    time.tv_nsec = static_cast<decltype(time.tv_nsec)>(limit.count() % 1000 * 1000000);
    return ppoll(nullptr, 0, &time, &open) == -1;
  }

  static constexpr const char* kScript = "/etc/scripts/device_resync.sh";
  sigset_t before_{};
};

TEST_F(CommitActionTest, CommitsTwoSecondsLaterAndOnce) {
  // On a busy machine the test may be too late with the second request; not every time.
  bool rang = true;
  for (int attempt = 0; attempt < 10 && rang; ++attempt) {
    Host().ClearCommands();
    rssXmlData.exeflag = 16;
    const Clock::time_point first = Clock::now();
    EXPECT_EQ(Call("rss_Act_CommitRssVars", kWrite, "left"), (Answer{0, ""}));
    EXPECT_THAT(Host().commands(), IsEmpty());
    rang = AlarmComes(milliseconds(1000));
    EXPECT_TRUE(!rang || Clock::now() - first > milliseconds(1500)) << "too early";
  }
  ASSERT_FALSE(rang);
  EXPECT_THAT(Host().commands(), IsEmpty());

  const Clock::time_point second = Clock::now();
  EXPECT_EQ(Call("rss_Act_CommitRssVars", kWrite, "left"), (Answer{0, ""}));
  ASSERT_TRUE(AlarmComes(milliseconds(60000)));
  EXPECT_GT(Clock::now() - second, milliseconds(1500)) << "the second request starts anew";
  EXPECT_EQ(Host().commands(), (Commands{kScript}));
  EXPECT_FALSE(AlarmComes(milliseconds(2300)));
  EXPECT_EQ(Host().commands(), (Commands{kScript})) << "two requests, one commit";
}

TEST_F(CommitActionTest, ArmsTheAlarmInEveryMode) {
  for (const int mode :
       {0, kRead, kRead | kPath, kWrite, kValidate, kRead | kWrite, kWrite | kValidate}) {
    std::signal(SIGALRM, SIG_DFL);
    const RecordWatch record;
    EXPECT_EQ(Call("rss_Act_CommitRssVars", mode, "left"), (Answer{0, ""})) << mode;
    EXPECT_THAT(alarm(0), AnyOf(1U, 2U)) << mode;
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
  alarm(0);
  std::raise(SIGALRM);
  ASSERT_TRUE(AlarmComes(milliseconds(1000)));
  EXPECT_EQ(Host().commands(), (Commands{"/etc/scripts/uplink.sh", kScript}));
  EXPECT_EQ(rssXmlData.pre_exeflag, 0);
}

// A function that takes the number of the signal: called by another type, there is no telling what
// becomes of the call on every machine.
TEST_F(CommitActionTest, TheHandlerIsNotTheCommitItself) {
  rssXmlData.exeflag = 16;
  EXPECT_EQ(Call("rss_Act_CommitRssVars", kRead, ""), (Answer{0, ""}));
  alarm(0);
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
