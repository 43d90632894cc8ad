// Actions on what was set by variables: verify, apply, and the commit two seconds later.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "documents.h"
#include "host_process.h"
#include "http_client.h"
#include "preload.h"

namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::Gt;
using ::testing::HasSubstr;
using ::testing::Not;
using Clock = std::chrono::steady_clock;

constexpr char kCountingScript[] = "#!/bin/sh\nsleep 0.2\necho run >>\"$KIOHOST_STATE_DIR/runs\"\n";

class VariableActionTest : public ::testing::Test {
 protected:
  void Start(const std::vector<std::string>& arguments = {}) {
    host_.UseScript("device_resync.sh", kCountingScript);
    ASSERT_TRUE(host_.Start(arguments));
  }

  HttpResponse Set(const std::string& name, const std::string& value) const {
    return Put(host_.port(), "/vars/" + name, value);
  }
  std::string Read(const std::string& name) const {
    return Get(host_.port(), "/vars/" + name).body;
  }
  std::string Act(const std::string& action) const {
    return Post(host_.port(), "/actions/" + action, "").body;
  }

  // A new name for the device, in the store, to be committed.
  void ApplyName(const std::string& name) const {
    EXPECT_EQ(Set("rss_DeviceName", name).status, 200);
    EXPECT_EQ(Act("VerifyAllRssVars"), "0 done\n");
    EXPECT_EQ(Act("ApplyAllRssVars"), "0 done\n");
  }

  size_t Runs() const {
    const std::string runs = ReadFile(host_.dir().File("runs"));
    return static_cast<size_t>(std::count(runs.begin(), runs.end(), '\n'));
  }

  bool WaitForRuns(size_t count) const {
    const auto end = Clock::now() + std::chrono::minutes(1);
    while (Runs() < count && Clock::now() < end) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return Runs() == count;
  }

  // The runs after the time in which another alarm would have rung.
  size_t SettledRuns() const {
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    return Runs();
  }

  HostProcess host_;
};

TEST_F(VariableActionTest, SetVerifyApplyCommit) {
  Start();
  EXPECT_EQ(Set("rss_DeviceName", "Attic").status, 200);
  EXPECT_EQ(Act("VerifyAllRssVars"), "0 done\n");
  EXPECT_EQ(Get(host_.port(), "/result").body, ResultDocument(0, "", 0));
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Home router");
  EXPECT_EQ(Act("ApplyAllRssVars"), "0 done\n");
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Attic");
  EXPECT_THAT(host_.Output(), Not(HasSubstr("action")));
  const auto begin = Clock::now();
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  EXPECT_TRUE(host_.WaitForOutput("action CfgSaveToFlash"));
  EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(1900));
  EXPECT_THAT(host_.Output(), HasSubstr("action DeviceResync"));
  EXPECT_EQ(Runs(), 1U);
  EXPECT_EQ(Read("rss_DeviceName"), "Attic");
}

TEST_F(VariableActionTest, ActionsHaveThreeSpellings) {
  Start();
  for (const char* name : {"VerifyAllRssVars", "rss_Act_VerifyAllRssVars",
                           "Device/Act_VerifyAllRssVars", "%2FDevice%2FAct_VerifyAllRssVars"}) {
    EXPECT_EQ(Act(name), "0 done\n") << name;
  }
  for (const char* name : {"verifyallrssvars", "Verify", "rss_Act_", "rss_DeviceName",
                           "rss_Act_VerifyAllRssVars_x", "x/VerifyAllRssVars", "%25s"}) {
    const HttpResponse answer = Post(host_.port(), std::string("/actions/") + name, "");
    EXPECT_EQ(answer.status, 404) << name;
    EXPECT_EQ(answer.body, "2 no such action\n") << name;
  }
  EXPECT_EQ(Post(host_.port(), "/actions/SiteSurvey", "").status, 422);  // no wireless uplink
}

TEST_F(VariableActionTest, ASurveyRunsAtOnce) {
  Start();
  EXPECT_EQ(Set("rss_Upl_HardwareType", "WWan802.11").status, 200);
  EXPECT_EQ(Act("SiteSurvey"), "0 done\n");
  EXPECT_TRUE(host_.WaitForOutput("action WlanSiteSurvey"));
  EXPECT_EQ(host_.Node("/uplink/extendersite/survey"), "1");
}

TEST_F(VariableActionTest, WhatDoesNotPassIsNamed) {
  Start();
  EXPECT_EQ(Set("rss_Wl2_EncryptionKey", "short").status, 200);
  const HttpResponse answer = Post(host_.port(), "/actions/VerifyAllRssVars", "");
  EXPECT_EQ(answer.status, 422);
  EXPECT_EQ(answer.body,
            "3 a value is invalid or cannot be changed: Device/Wireless2.4/EncryptionKey\n");
}

TEST_F(VariableActionTest, WhatIsRefusedWhileItIsAppliedIsUndone) {
  Start();
  const std::string before = host_.Dump();
  EXPECT_EQ(Set("rss_DeviceName", "Attic").status, 200);
  // Setting takes any number, applying does not.
  EXPECT_EQ(Set("rss_RouterEnbl", "7").status, 200);
  const HttpResponse answer = Post(host_.port(), "/actions/ApplyAllRssVars", "");
  EXPECT_EQ(answer.status, 422);
  EXPECT_EQ(answer.body, "3 a value is invalid or cannot be changed: Device/RouterEnbl\n");
  EXPECT_EQ(host_.Dump(), before);
  // The record holds what was set; such a switch counts as locked, so that only a new series helps.
  EXPECT_EQ(Read("rss_DeviceName"), "Attic");
  EXPECT_EQ(Set("rss_RouterEnbl", "1").status, 422);
  EXPECT_EQ(Delete(host_.port(), "/vars").status, 200);
  ApplyName("Loft");
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Loft");
}

TEST_F(VariableActionTest, ACloningExchangeDoesNotKeepTheNameFromBeingApplied) {
  Start();
  EXPECT_EQ(Post(host_.port(), "/settings?cloning=1", FactoryDocument()).status, 200);
  ApplyName("Attic");
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Attic");
}

TEST_F(VariableActionTest, ABatchWithActionsIsOneTransaction) {
  Start();
  const std::string before = host_.Dump();
  const HttpResponse refused = Post(
      host_.port(), "/vars", "rss_DeviceName=Attic&rss_Act_ApplyAllRssVars=&rss_Upl_IP=nonsense");
  EXPECT_EQ(refused.status, 422);
  EXPECT_EQ(host_.Dump(), before);
  const HttpResponse done = Post(
      host_.port(), "/vars", "rss_DeviceName=Loft&rss_Act_ApplyAllRssVars=&rss_Act_CommitRssVars=");
  EXPECT_EQ(done.body, "0 done\n");
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Loft");
  EXPECT_TRUE(WaitForRuns(1));
}

// Clients that give the host no rest do not put the commit off.
TEST_F(VariableActionTest, TheCommitRunsOnceAmongRequests) {
  constexpr size_t kClients = 4;
  constexpr int kAtOnce = 20;
  Start();
  ApplyName("Attic");
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  const auto end = Clock::now() + std::chrono::seconds(5);
  std::array<int, kClients> answered = {};
  std::vector<std::thread> clients;
  clients.reserve(kClients);
  for (int& count : answered) {
    clients.emplace_back([this, end, &count] {
      std::string requests;
      for (int i = 0; i < kAtOnce; ++i) {
        requests += "GET /vars/rss_DeviceName HTTP/1.1\r\nHost: router\r\n\r\n";
      }
      Connection client(host_.port());
      bool answers = true;
      while (answers && Clock::now() < end) {
        answers = client.Send(requests);
        for (int i = 0; answers && i < kAtOnce; ++i) {
          answers = client.Read().body == "Attic";
          count += answers ? 1 : 0;
        }
      }
    });
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(3500));
  EXPECT_EQ(Runs(), 1U) << "put off";
  for (std::thread& client : clients) {
    client.join();
  }
  EXPECT_THAT(answered, Each(Gt(100)));
  EXPECT_EQ(Runs(), 1U);
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_EQ(Runs(), 1U);
}

// The log of the library has each call from its name to its result, which nothing interrupts.
TEST_F(VariableActionTest, TheCommitRunsInsideNoRequest) {
  Start({"--log-level", "7"});
  ApplyName("Attic");
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  const auto begin = Clock::now();
  while (Clock::now() - begin < std::chrono::seconds(5)) {
    EXPECT_EQ(Read("rss_DeviceName"), "Attic");
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  EXPECT_EQ(host_.End(SIGTERM), 0);
  std::istringstream log(ReadFile(host_.dir().File("kiohost_log.txt.old")) +
                         ReadFile(host_.dir().File("kiohost_log.txt")));
  std::string before;
  std::vector<std::string> commit;
  for (std::string line; std::getline(log, line);) {
    const bool in_commit = !commit.empty() && !commit.back().ends_with("done");
    if (in_commit || line.find("do_RssXml_Commit]") != std::string::npos) {
      commit.push_back(line);
    } else if (commit.empty()) {
      before = line;
    }
  }
  EXPECT_THAT(before, HasSubstr("'rss_DeviceName'='Attic', ret=0"));
  EXPECT_THAT(commit, Contains(HasSubstr("exe_ExternalCall")));
  EXPECT_THAT(commit, Each(Not(HasSubstr("RssVar]"))));
  EXPECT_EQ(Runs(), 1U);
}

TEST_F(VariableActionTest, TwoRequestsWithinTwoSecondsRunOneCommit) {
  Start();
  ApplyName("Attic");
  // A busy machine may be too late with the second request; not every time.
  size_t commits = 0;
  Clock::time_point begin;
  bool in_time = false;
  for (int attempt = 0; attempt < 10 && !in_time; ++attempt) {
    begin = Clock::now();
    EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
    in_time = Clock::now() - begin < std::chrono::milliseconds(1900);
    EXPECT_TRUE(WaitForRuns(++commits) || !in_time);
    commits = in_time ? commits : SettledRuns();
  }
  ASSERT_TRUE(in_time) << "the second one waited";
  EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(3000)) << "the first alarm rang";
  EXPECT_EQ(SettledRuns(), commits);
  // A later one is another commit. The library runs the last actions once more.
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  EXPECT_TRUE(WaitForRuns(commits + 1));
}

// An exchange in the meantime waits, so that each gets its actions.
TEST_F(VariableActionTest, ACommitAndAnExchangeDoNotLoseEachOther) {
  Start();
  ApplyName("Attic");
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  const std::string renamed = WithIn(FactoryDocument(), "Wireless5", "WirelessName", "Bed");
  const HttpResponse answer = Post(host_.port(), "/settings", With(renamed, "DeviceName", "Attic"));
  EXPECT_THAT(answer.body, HasSubstr("<RssSetResult>0</RssSetResult>"));
  EXPECT_EQ(Runs(), 1U) << "the exchange did not wait";
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_EQ(Runs(), 1U);
  const std::string output = host_.Output();
  const size_t first = output.find("action DeviceResync");
  EXPECT_NE(first, std::string::npos) << output;
  EXPECT_NE(output.find("action Wlan5gResync", first), std::string::npos) << output;
}

// What was set after the request for a commit belongs to a series of its own.
TEST_F(VariableActionTest, WhatIsSetAfterTheRequestIsKept) {
  Start();
  ApplyName("Attic");
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  EXPECT_EQ(Read("rss_DeviceName"), "Attic");
  EXPECT_EQ(Set("rss_Wl2_WirelessName", "Sofa").status, 200);
  EXPECT_TRUE(WaitForRuns(1));
  EXPECT_EQ(Read("rss_Wl2_WirelessName"), "Sofa");
}

TEST_F(VariableActionTest, AStopRunsTheCommitThatIsDue) {
  for (const int signal_number : {SIGTERM, SIGINT}) {
    HostProcess host;
    host.UseScript("device_resync.sh", kCountingScript);
    {
      // An answer or a stop that waited for it would not come.
      const Preload late_alarm(KIO_LATE_ALARM, "KIO_TEST", "");
      ASSERT_TRUE(host.Start());
    }
    EXPECT_EQ(Post(host.port(), "/vars", "rss_DeviceName=Attic").status, 200);
    EXPECT_EQ(Post(host.port(), "/actions/ApplyAllRssVars", "").status, 200);
    EXPECT_EQ(Post(host.port(), "/actions/CommitRssVars", "").status, 200);
    EXPECT_EQ(ReadFile(host.dir().File("runs")), "");
    EXPECT_EQ(host.End(signal_number), 0);
    EXPECT_EQ(ReadFile(host.dir().File("runs")), "run\n");
    EXPECT_THAT(host.Output(), HasSubstr("action CfgSaveToFlash"));
  }
}

TEST_F(VariableActionTest, ACommitWithNothingToDoRunsNothing) {
  Start();
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  // An exchange waits until the commit is over.
  EXPECT_EQ(Post(host_.port(), "/settings", FactoryDocument()).status, 200);
  EXPECT_EQ(Runs(), 0U);
  EXPECT_THAT(host_.Output(), Not(HasSubstr("action DeviceResync")));
}

TEST_F(VariableActionTest, WithRealWaitsTheHostGoesAwayAfterTheCommit) {
  Start({"--real-waits"});
  EXPECT_EQ(Set("rss_DeviceName", "Attic").status, 200);
  EXPECT_EQ(Act("ApplyAllRssVars"), "0 done\n");
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  ASSERT_TRUE(host_.WaitForOutput("away for "));
  EXPECT_FALSE(Connection(host_.port()).connected());
  EXPECT_EQ(Runs(), 1U);
  EXPECT_EQ(host_.End(SIGTERM), 0);
}

}  // namespace
