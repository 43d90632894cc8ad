// What was applied comes into force, if need be at the next start.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "documents.h"
#include "held_alarm.h"
#include "host_process.h"
#include "host_steps.h"
#include "http_client.h"

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr char kMadeUp[] = "making up for what was applied before this start";

std::string Numbered(int number) {
  return With(With(FactoryDocument(), "DeviceName", "Name " + std::to_string(number)),
              "UpLinkConnection", StaticUplink("192.0.2." + std::to_string(number)));
}

// What the scripts brought up last, and what the store wants.
void ExpectInForce(const HostProcess& host) {
  EXPECT_THAT(ReadFile(host.dir().File("device.state")),
              HasSubstr("name=" + host.Node("/sys/friendlyname") + "\n"));
  EXPECT_THAT(ReadFile(host.dir().File("uplink.state")),
              HasSubstr("ip=" + host.Node("/uplink/ip") + "\n"));
}

TEST(DueActionsTest, AKillAtAnyMomentIsMadeUpForAtTheNextStart) {
  // An exchange with its commit has fewer. It is the last part of an address as well.
  constexpr int kMostSteps = 250;
  HostProcess host;
  HostSteps steps(&host);
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(Post(host.port(), "/settings", Numbered(kMostSteps)).status, 200);
  ASSERT_TRUE(host.WaitForOutput("action CfgSaveToFlash"));
  EXPECT_EQ(host.End(SIGTERM), 0);
  ExpectInForce(host);
  int made_up = 0;
  bool killed = true;
  for (int step = 1; killed && step < kMostSteps; step += steps.stride()) {
    ASSERT_TRUE(steps.Start());
    ExpectInForce(host);
    made_up += host.Output().find(kMadeUp) != std::string::npos ? 1 : 0;
    steps.SignalBefore(step, SIGKILL);
    Post(host.port(), "/settings", Numbered(step));
    killed = !WaitForTurn(host.port());
    EXPECT_EQ(killed ? host.WaitForEnd() : host.End(SIGKILL), 128 + SIGKILL);
  }
  EXPECT_FALSE(killed) << "there is no end to the steps";
  EXPECT_GT(made_up, 0);
  // What ran, or was made up for, is done with.
  ASSERT_TRUE(host.Start());
  ExpectInForce(host);
  EXPECT_THAT(host.Output(), Not(HasSubstr("action")));
  EXPECT_THAT(host.Output(), Not(HasSubstr(kMadeUp)));
}

// Kills the host while the first script of a commit runs.
void KillInTheCommit(HostProcess* host, const std::string& path, const std::string& document) {
  host->UseScript("uplink.sh", "#!/bin/sh\necho begun >\"$KIOHOST_STATE_DIR/begun\"\nsleep 1\n");
  ASSERT_TRUE(host->Start());
  ASSERT_EQ(Post(host->port(), path, document).status, 200);
  ASSERT_TRUE(WaitFor([host] { return ReadFile(host->dir().File("begun")) == "begun\n"; }));
  EXPECT_EQ(host->End(SIGKILL), 128 + SIGKILL);
  host->UseScript("uplink.sh", ReadFile(KIO_HOST_DIR "/scripts/uplink.sh"));
}

TEST(DueActionsTest, TheActionsOfTheKilledCommitAreRunAndTold) {
  HostProcess host;
  KillInTheCommit(&host, "/settings", Numbered(1));
  ASSERT_TRUE(host.Start());
  const std::string output = host.Output();
  EXPECT_THAT(output, HasSubstr("action WanResync"));
  EXPECT_THAT(output, HasSubstr("action DeviceResync"));
  EXPECT_THAT(output, HasSubstr("action CfgSaveToFlash"));
  EXPECT_THAT(output, Not(HasSubstr("action Wlan")));
  EXPECT_LT(output.find(kMadeUp), output.find("listening on")) << output;
  ExpectInForce(host);
  // The library keeps nothing of them for an exchange that changes nothing.
  EXPECT_EQ(Post(host.port(), "/settings", Numbered(1)).body, ResultDocument(0, "", 0));
  EXPECT_EQ(host.End(SIGTERM), 0);
  EXPECT_EQ(host.Output().find("action", host.Output().find("listening on")), std::string::npos);
}

// The script of a host that was killed goes on, and the next host runs its own.
TEST(DueActionsTest, TwoRunsOfAScriptDoNotDisturbEachOther) {
  const TempDir dir;
  // Answers as kiohost --store FILE --get NODE does, and for the slow run in the middle only once
  // it may go on.
  WriteFile(dir.File("kiohost"),
            "#!/bin/sh\n"
            "cd \"$KIOHOST_STATE_DIR\"\n"
            "case $4 in\n"
            "  /uplink/conntype) echo Static ;;\n"
            "  /uplink/ip)\n"
            "    if [ -n \"${SLOW-}\" ]; then\n"
            "      : >slow\n"
            "      until [ -e go ]; do sleep 0.01; done\n"
            "    fi\n"
            "    echo 192.0.2.7 ;;\n"
            "  *) echo x ;;\n"
            "esac\n");
  std::filesystem::permissions(dir.File("kiohost"), std::filesystem::perms::owner_all);
  const std::string run = "KIOHOST_STATE_DIR=" + dir.path() +
                          " KIOHOST_STORE=s KIOHOST_PROGRAM=" + dir.File("kiohost") +
                          " sh " KIO_HOST_DIR "/scripts/uplink.sh";
  int slow_status = -1;
  std::thread slow([&run, &slow_status] { slow_status = std::system(("SLOW=1 " + run).c_str()); });
  EXPECT_TRUE(WaitFor([&dir] { return std::filesystem::exists(dir.File("slow")); }));
  const std::string state =
      "hardware=x\nconntype=Static\nip=192.0.2.7\nnetmask=x\ngateway=x\ndns=x\n";
  EXPECT_EQ(std::system(run.c_str()), 0);
  EXPECT_EQ(ReadFile(dir.File("uplink.state")), state);
  WriteFile(dir.File("go"), "");
  slow.join();
  EXPECT_EQ(slow_status, 0);
  EXPECT_EQ(ReadFile(dir.File("uplink.state")), state);
  for (const auto& entry : std::filesystem::directory_iterator(dir.path())) {
    EXPECT_FALSE(entry.path().filename().string().starts_with("uplink.state.")) << entry.path();
  }
}

TEST(DueActionsTest, AnActionWhoseScriptFailedStaysDue) {
  HostProcess host;
  host.UseScript("uplink.sh", "#!/bin/sh\nexit 7\n");
  ASSERT_TRUE(host.Start());
  ASSERT_EQ(Post(host.port(), "/settings", Numbered(1)).status, 200);
  ASSERT_TRUE(host.WaitForOutput("action CfgSaveToFlash"));
  EXPECT_EQ(host.End(SIGTERM), 0);
  host.UseScript("uplink.sh", ReadFile(KIO_HOST_DIR "/scripts/uplink.sh"));
  ASSERT_TRUE(host.Start());
  EXPECT_THAT(host.Output(), HasSubstr("action WanResync: ran"));
  EXPECT_THAT(host.Output(), Not(HasSubstr("action DeviceResync")));
  ExpectInForce(host);
}

TEST(DueActionsTest, AFullCloningIsMadeUpForWithAllItsActions) {
  HostProcess host;
  host.UseScript("device_resync.sh",
                 "#!/bin/sh\necho begun >\"$KIOHOST_STATE_DIR/begun\"\nsleep 1\n");
  ASSERT_TRUE(host.Start());
  const std::string path = "/settings?cloning=1&full=1";
  ASSERT_EQ(Post(host.port(), path, FactoryDocument()).body, ResultDocument(0, "", 0));
  ASSERT_TRUE(WaitFor([&host] { return ReadFile(host.dir().File("begun")) == "begun\n"; }));
  EXPECT_EQ(host.End(SIGKILL), 128 + SIGKILL);
  host.UseScript("device_resync.sh", "#!/bin/sh\n");
  ASSERT_TRUE(host.Start());
  EXPECT_THAT(host.Output(), HasSubstr("action DeviceResync"));
  EXPECT_THAT(host.Output(), HasSubstr("action CfgSaveToFlash"));
  EXPECT_THAT(host.Output(), HasSubstr(kMadeUp));
}

class DueApplyTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(StartWithHeldAlarm(&host_)); }

  void Send(const std::string& path, const std::string& body) const {
    EXPECT_EQ(Post(host_.port(), path, body).body, "0 done\n") << path;
  }
  void Restart() {
    EXPECT_EQ(host_.End(SIGKILL), 128 + SIGKILL);
    ASSERT_TRUE(host_.Start());
  }

  HostProcess host_;
};

TEST_F(DueApplyTest, AnApplyWithoutItsCommitIsMadeUpFor) {
  Send("/vars", "rss_DeviceName=Attic");
  Send("/actions/ApplyAllRssVars", "");
  Restart();
  EXPECT_THAT(host_.Output(), HasSubstr(kMadeUp));
  EXPECT_THAT(ReadFile(host_.dir().File("device.state")), HasSubstr("name=Attic\n"));
}

TEST_F(DueApplyTest, ADeferredCommitIsMadeUpFor) {
  Send("/vars", "rss_DeviceName=Attic&rss_Act_ApplyAllRssVars=&rss_Act_CommitRssVars=");
  EXPECT_EQ(Alarms(host_), "2\n");
  Restart();
  EXPECT_THAT(host_.Output(), HasSubstr("action DeviceResync"));
  EXPECT_THAT(host_.Output(), HasSubstr(kMadeUp));
  EXPECT_THAT(ReadFile(host_.dir().File("device.state")), HasSubstr("name=Attic\n"));
}

TEST_F(DueApplyTest, ABatchThatAppliesTwiceOwesTheActionsOfBoth) {
  Send("/vars",
       "rss_DeviceName=Attic&rss_Act_ApplyAllRssVars=&rss_Upl_ConnType=Static&rss_Upl_IP=192.0.2.9"
       "&rss_Act_ApplyAllRssVars=");
  Restart();
  EXPECT_THAT(host_.Output(), HasSubstr("action DeviceResync"));
  EXPECT_THAT(host_.Output(), HasSubstr("action WanResync"));
  ExpectInForce(host_);
}

TEST_F(DueApplyTest, ADeferredCommitThatRanIsDoneWith) {
  Send("/vars", "rss_DeviceName=Attic&rss_Act_ApplyAllRssVars=&rss_Act_CommitRssVars=");
  ASSERT_TRUE(RingAlarm(host_));
  ASSERT_TRUE(host_.WaitForOutput("action CfgSaveToFlash"));
  // A text like an action's name is no applying.
  Send("/vars", "rss_DeviceName=ApplyAllRssVars");
  Restart();
  EXPECT_THAT(host_.Output(), Not(HasSubstr("action")));
}

TEST_F(DueApplyTest, WhatWasRefusedIsNotDue) {
  Send("/vars", "rss_DeviceName=Attic&rss_RouterEnbl=7");
  EXPECT_EQ(Post(host_.port(), "/actions/ApplyAllRssVars", "").status, 422);
  Restart();
  EXPECT_THAT(host_.Output(), Not(HasSubstr("action")));
}

TEST_F(DueApplyTest, AFactoryResetOwesNothing) {
  Send("/vars", "rss_DeviceName=Attic&rss_Act_ApplyAllRssVars=");
  EXPECT_EQ(host_.End(SIGKILL), 128 + SIGKILL);
  ASSERT_TRUE(host_.Start({"--factory-reset"}));
  EXPECT_THAT(host_.Output(), Not(HasSubstr("action")));
}

}  // namespace
