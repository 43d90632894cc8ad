// Actions on what was set by variables: verify, apply, and the commit two seconds later.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <numeric>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "documents.h"
#include "held_alarm.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::Gt;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr char kCountingScript[] = "#!/bin/sh\nsleep 0.2\necho run >>\"$KIOHOST_STATE_DIR/runs\"\n";

class VariableActionTest : public ::testing::Test {
 protected:
  void Start() {
    host_.UseScript("device_resync.sh", kCountingScript);
    ASSERT_TRUE(host_.Start());
  }
  void StartHeld(const std::vector<std::string>& arguments = {}) {
    host_.UseScript("device_resync.sh", kCountingScript);
    ASSERT_TRUE(StartWithHeldAlarm(&host_, arguments));
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

  // Whether there are so many in the end, and no more.
  bool WaitForRuns(size_t count) const {
    return WaitFor([this, count] { return Runs() >= count; }) && Runs() == count;
  }

  // Sends an exchange while a commit is due; its answer when the alarm has rung.
  HttpResponse AnswerAfterTheAlarm(const std::string& document) const {
    Connection client(host_.port());
    EXPECT_TRUE(client.Send(PostRequest("/settings", document)));
    // The host has seen the exchange when it has answered these.
    EXPECT_EQ(Get(host_.port(), "/device").status, 200);
    EXPECT_EQ(Get(host_.port(), "/device").status, 200);
    EXPECT_TRUE(client.StaysSilent(0)) << "the exchange does not wait";
    EXPECT_TRUE(RingAlarm(host_));
    return client.Read();
  }

  HostProcess host_;
};

TEST_F(VariableActionTest, SetVerifyApplyCommit) {
  StartHeld();
  EXPECT_EQ(Set("rss_DeviceName", "Attic").status, 200);
  EXPECT_EQ(Act("VerifyAllRssVars"), "0 done\n");
  EXPECT_EQ(Get(host_.port(), "/result").body, ResultDocument(0, "", 0));
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Home router");
  EXPECT_EQ(Act("ApplyAllRssVars"), "0 done\n");
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Attic");
  EXPECT_THAT(host_.Output(), Not(HasSubstr("action")));
  EXPECT_EQ(Alarms(host_), "");
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  EXPECT_EQ(Alarms(host_), "2\n");
  EXPECT_EQ(Read("rss_DeviceName"), "Attic");
  EXPECT_EQ(Runs(), 0U) << "before the alarm has rung";
  EXPECT_TRUE(RingAlarm(host_));
  EXPECT_TRUE(host_.WaitForOutput("action CfgSaveToFlash"));
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

// Reads a variable without a rest, with many requests at once, until it is told to end.
void Flood(int port, const std::atomic<bool>& ends, std::atomic<int>* answered) {
  constexpr int kAtOnce = 20;
  std::string requests;
  for (int i = 0; i < kAtOnce; ++i) {
    requests += "GET /vars/rss_DeviceName HTTP/1.1\r\nHost: router\r\n\r\n";
  }
  Connection client(port);
  bool answers = true;
  while (answers && !ends) {
    answers = client.Send(requests);
    for (int i = 0; answers && i < kAtOnce; ++i) {
      answers = client.Read().body == "Attic";
      *answered += answers ? 1 : 0;
    }
  }
}

// Clients that give the host no rest do not put the commit off.
TEST_F(VariableActionTest, TheCommitRunsOnceAmongRequests) {
  constexpr size_t kClients = 4;
  constexpr int kEach = 100;
  constexpr int kMostOnTheWay = 1000;
  StartHeld();
  ApplyName("Attic");
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  std::array<std::atomic<int>, kClients> answered = {};
  const auto all = [&answered] { return std::accumulate(answered.begin(), answered.end(), 0); };
  std::atomic<bool> ends = false;
  std::vector<std::thread> clients;
  clients.reserve(kClients);
  for (std::atomic<int>& count : answered) {
    clients.emplace_back([this, &ends, &count] { Flood(host_.port(), ends, &count); });
  }
  for (const std::atomic<int>& count : answered) {
    EXPECT_TRUE(WaitFor([&count] { return count >= kEach; }));
  }
  EXPECT_EQ(Runs(), 0U);
  EXPECT_TRUE(RingAlarm(host_));
  EXPECT_TRUE(WaitFor([this] { return Runs() > 0; }));
  const int after = all();
  EXPECT_TRUE(WaitFor([&all, after] { return all() > after + kMostOnTheWay; }));
  ends = true;
  for (std::thread& client : clients) {
    client.join();
  }
  EXPECT_EQ(Runs(), 1U);
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_EQ(Runs(), 1U);
}

// The log of the library has each call from its name to its result, which nothing interrupts.
TEST_F(VariableActionTest, TheCommitRunsInsideNoRequest) {
  constexpr int kChecks = 50;
  StartHeld({"--log-level", "7"});
  ApplyName("Attic");
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  std::atomic<int> checks = 0;
  std::atomic<bool> ends = false;
  std::thread checker([this, &checks, &ends] {
    for (; !ends; ++checks) {
      EXPECT_EQ(Post(host_.port(), "/vars/rss_DeviceName/validate", "Loft").status, 200);
    }
  });
  EXPECT_TRUE(WaitFor([&checks] { return checks >= kChecks; }));
  EXPECT_TRUE(RingAlarm(host_));
  EXPECT_TRUE(WaitForRuns(1));
  const int during = checks;
  EXPECT_TRUE(WaitFor([&checks, during] { return checks >= during + kChecks; }));
  ends = true;
  checker.join();
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
  EXPECT_THAT(before, HasSubstr("validate_RssVar]ret=0"));
  EXPECT_THAT(commit, Contains(HasSubstr("exe_ExternalCall")));
  EXPECT_THAT(commit, Each(Not(HasSubstr("RssVar]"))));
  EXPECT_EQ(Runs(), 1U);
}

// A process has one alarm: the second request puts it off.
TEST_F(VariableActionTest, TwoRequestsWithinTwoSecondsRunOneCommit) {
  StartHeld();
  ApplyName("Attic");
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  EXPECT_EQ(Alarms(host_), "2\n2\n") << "the second one waited";
  EXPECT_EQ(Read("rss_DeviceName"), "Attic");
  EXPECT_EQ(Runs(), 0U);
  EXPECT_TRUE(RingAlarm(host_));
  EXPECT_TRUE(WaitForRuns(1));
  // A later one is another commit. The library runs the last actions once more.
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  EXPECT_EQ(Alarms(host_), "2\n2\n2\n");
  EXPECT_TRUE(RingAlarm(host_));
  EXPECT_TRUE(WaitForRuns(2));
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_EQ(Runs(), 2U);
}

// An exchange in the meantime waits, so that each gets its actions.
TEST_F(VariableActionTest, ACommitAndAnExchangeDoNotLoseEachOther) {
  StartHeld();
  ApplyName("Attic");
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  const std::string renamed = WithIn(FactoryDocument(), "Wireless5", "WirelessName", "Bed");
  const HttpResponse answer = AnswerAfterTheAlarm(With(renamed, "DeviceName", "Attic"));
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
  StartHeld();
  ApplyName("Attic");
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  EXPECT_EQ(Read("rss_DeviceName"), "Attic");
  EXPECT_EQ(Set("rss_Wl2_WirelessName", "Sofa").status, 200);
  EXPECT_TRUE(RingAlarm(host_));
  EXPECT_TRUE(WaitForRuns(1));
  EXPECT_EQ(Read("rss_Wl2_WirelessName"), "Sofa");
}

TEST_F(VariableActionTest, AStopRunsTheCommitThatIsDue) {
  for (const int signal_number : {SIGTERM, SIGINT}) {
    HostProcess host;
    host.UseScript("device_resync.sh", kCountingScript);
    // An answer or a stop that waited for the alarm would not come.
    ASSERT_TRUE(StartWithHeldAlarm(&host));
    EXPECT_EQ(Post(host.port(), "/vars", "rss_DeviceName=Attic").status, 200);
    EXPECT_EQ(Post(host.port(), "/actions/ApplyAllRssVars", "").status, 200);
    EXPECT_EQ(Post(host.port(), "/actions/CommitRssVars", "").status, 200);
    EXPECT_EQ(ReadFile(host.dir().File("runs")), "");
    EXPECT_EQ(host.End(signal_number), 0);
    EXPECT_EQ(ReadFile(host.dir().File("runs")), "run\n");
    EXPECT_EQ(Alarms(host), "2\n0\n") << "the alarm is not cancelled";
    EXPECT_THAT(host.Output(), HasSubstr("action CfgSaveToFlash"));
  }
}

TEST_F(VariableActionTest, ACommitWithNothingToDoRunsNothing) {
  StartHeld();
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  EXPECT_EQ(AnswerAfterTheAlarm(FactoryDocument()).status, 200);
  EXPECT_EQ(Runs(), 0U);
  EXPECT_THAT(host_.Output(), Not(HasSubstr("action DeviceResync")));
}

TEST_F(VariableActionTest, WithRealWaitsTheHostGoesAwayAfterTheCommit) {
  StartHeld({"--real-waits"});
  EXPECT_EQ(Set("rss_DeviceName", "Attic").status, 200);
  EXPECT_EQ(Act("ApplyAllRssVars"), "0 done\n");
  EXPECT_EQ(Act("CommitRssVars"), "0 done\n");
  EXPECT_THAT(host_.Output(), Not(HasSubstr("away for ")));
  EXPECT_TRUE(RingAlarm(host_));
  ASSERT_TRUE(host_.WaitForOutput("away for "));
  EXPECT_FALSE(Connection(host_.port()).connected());
  EXPECT_EQ(Runs(), 1U);
  EXPECT_EQ(host_.End(SIGTERM), 0);
}

}  // namespace
