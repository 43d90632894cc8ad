// What becomes of the resync scripts: how they fail, and how a stop ends them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "documents.h"
#include "held_alarm.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

// Changes what both scripts are for.
std::string NewUplinkAndName() {
  return With(With(FactoryDocument(), "UpLinkConnection", StaticUplink("192.0.2.77")), "DeviceName",
              "Attic");
}

class ScriptTest : public ::testing::Test {
 protected:
  // Changes the settings and waits for the end of the commit.
  void Commit() {
    ASSERT_EQ(Post(host_.port(), "/settings", NewUplinkAndName()).body, ResultDocument(0, "", 25));
    ASSERT_TRUE(host_.WaitForOutput("action CfgSaveToFlash: "));
  }

  std::vector<std::string> Events() const {
    std::vector<std::string> texts;
    const auto device = nlohmann::json::parse(Get(host_.port(), "/device").body);
    for (const auto& event : device["events"]) {
      texts.push_back(event["text"]);
    }
    return texts;
  }

  // The process whose number a script has written down; 0 when it has ended.
  pid_t Process(const std::string& file) const {
    const std::string number = ReadFile(host_.dir().File(file));
    const pid_t pid = number.empty() ? 0 : static_cast<pid_t>(std::stol(number));
    return pid > 0 && std::filesystem::exists("/proc/" + number.substr(0, number.find('\n'))) ? pid
                                                                                              : 0;
  }

  bool WaitForFile(const std::string& file) const {
    return WaitFor([this, &file] { return !ReadFile(host_.dir().File(file)).empty(); });
  }

  HostProcess host_;
};

TEST_F(ScriptTest, ScriptsThatSucceedAreSaidToHaveRun) {
  ASSERT_TRUE(host_.Start());
  Commit();
  EXPECT_THAT(host_.Output(),
              HasSubstr("action WanResync: ran uplink.sh; a router brings its uplink up anew\n"));
  EXPECT_THAT(
      host_.Output(),
      HasSubstr("action DeviceResync: ran device_resync.sh; a router takes over name, password and "
                "mode\n"));
  EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(ScriptTest, AnExitStatusIsTold) {
  host_.UseScript("uplink.sh", "#!/bin/sh\nexit 7\n");
  ASSERT_TRUE(host_.Start());
  Commit();
  EXPECT_THAT(host_.Output(), HasSubstr("action WanResync: uplink.sh failed: exit status 7\n"));
  EXPECT_THAT(host_.Output(), HasSubstr("action DeviceResync: ran device_resync.sh; "));
  EXPECT_THAT(host_.Output(), Not(HasSubstr("ran uplink.sh")));
  EXPECT_THAT(Events(), ElementsAre("WanResync: uplink.sh failed: exit status 7"));

  // The next one is told for itself.
  host_.UseScript("uplink.sh", "#!/bin/sh\n");
  ASSERT_EQ(Post(host_.port(), "/settings",
                 With(NewUplinkAndName(), "UpLinkConnection", StaticUplink("192.0.2.78")))
                .status,
            200);
  EXPECT_TRUE(host_.WaitForOutput("action WanResync: ran uplink.sh; "));
  EXPECT_THAT(Events(), ElementsAre("WanResync: uplink.sh failed: exit status 7"));
}

TEST_F(ScriptTest, ASignalIsTold) {
  host_.UseScript("uplink.sh", "#!/bin/sh\nkill -TERM $$\n");
  ASSERT_TRUE(host_.Start());
  Commit();
  EXPECT_THAT(host_.Output(),
              HasSubstr("uplink.sh failed: exit status 143 (killed by signal 15)\n"));
  EXPECT_THAT(Events(), ElementsAre(HasSubstr("killed by signal 15")));
}

TEST_F(ScriptTest, AScriptThatIsMissingOrNotExecutableIsTold) {
  std::filesystem::remove(host_.dir().File("scripts/device_resync.sh"));
  ASSERT_EQ(chmod(host_.dir().File("scripts/uplink.sh").c_str(), S_IRUSR | S_IWUSR), 0);
  ASSERT_TRUE(host_.Start());
  Commit();
  EXPECT_THAT(Events(),
              ElementsAre("WanResync: uplink.sh failed: exit status 126 (not executable)",
                          "DeviceResync: device_resync.sh failed: exit status 127 (not found)"));
  EXPECT_THAT(
      host_.Output(),
      HasSubstr("action DeviceResync: device_resync.sh failed: exit status 127 (not found)\n"));
}

TEST_F(ScriptTest, AFailureOfADeferredCommitIsTold) {
  host_.UseScript("device_resync.sh", "#!/bin/sh\nexit 3\n");
  ASSERT_TRUE(StartWithHeldAlarm(&host_));
  EXPECT_EQ(Put(host_.port(), "/vars/rss_DeviceName", "Attic").status, 200);
  for (const char* const action : {"VerifyAllRssVars", "ApplyAllRssVars", "CommitRssVars"}) {
    EXPECT_EQ(Post(host_.port(), std::string("/actions/") + action, "").body, "0 done\n");
  }
  EXPECT_TRUE(RingAlarm(host_));
  // The event follows the action's line, and its own line follows the event.
  EXPECT_TRUE(host_.WaitForOutput("event DeviceResync: device_resync.sh failed: exit status 3\n"));
  EXPECT_THAT(host_.Output(),
              HasSubstr("action DeviceResync: device_resync.sh failed: exit status 3\n"));
  EXPECT_THAT(Events(), ElementsAre("DeviceResync: device_resync.sh failed: exit status 3"));
}

TEST_F(ScriptTest, AStopEndsAScriptThatHangsWithAllThatItStarted) {
  // What the script starts does not listen to a polite request.
  host_.UseScript("uplink.sh",
                  "#!/bin/sh\n(trap '' TERM; sleep 100) &\necho $! >\"$KIOHOST_STATE_DIR/child\"\n"
                  "echo $$ >\"$KIOHOST_STATE_DIR/script\"\nsleep 100\n");
  ASSERT_TRUE(host_.Start());
  EXPECT_EQ(Post(host_.port(), "/settings", NewUplinkAndName()).status, 200);
  ASSERT_TRUE(WaitForFile("script"));
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_EQ(Process("script"), 0);
  EXPECT_EQ(Process("child"), 0);
  const std::string output = host_.Output();
  EXPECT_THAT(output, HasSubstr("action WanResync: uplink.sh failed: killed by signal 9 as the "
                                "host stopped\n"));
  // The commit goes on with what is left of it.
  EXPECT_THAT(output, HasSubstr("action DeviceResync: ran device_resync.sh"));
  EXPECT_THAT(ReadFile(host_.dir().File("device.state")), HasSubstr("name=Attic\n"));
}

TEST_F(ScriptTest, AScriptThatDoesNotListenIsKilled) {
  host_.UseScript("uplink.sh",
                  "#!/bin/sh\ntrap '' TERM INT HUP\necho $$ >\"$KIOHOST_STATE_DIR/script\"\n"
                  "while :; do sleep 100; done\n");
  ASSERT_TRUE(host_.Start());
  EXPECT_EQ(Post(host_.port(), "/settings", NewUplinkAndName()).status, 200);
  ASSERT_TRUE(WaitForFile("script"));
  EXPECT_EQ(host_.End(SIGHUP), 0);
  EXPECT_EQ(Process("script"), 0);
  EXPECT_THAT(host_.Output(), HasSubstr("action WanResync: uplink.sh failed: killed by signal 9 as "
                                        "the host stopped\n"));
}

// The stop is asked for while the commit is due, so that its scripts begin afterwards.
TEST_F(ScriptTest, AScriptThatBeginsAfterTheStopIsEndedAsWell) {
  host_.UseScript("device_resync.sh", "#!/bin/sh\nsleep 100\n");
  ASSERT_TRUE(StartWithHeldAlarm(&host_));
  EXPECT_EQ(Put(host_.port(), "/vars/rss_DeviceName", "Attic").status, 200);
  for (const char* const action : {"VerifyAllRssVars", "ApplyAllRssVars", "CommitRssVars"}) {
    EXPECT_EQ(Post(host_.port(), std::string("/actions/") + action, "").body, "0 done\n");
  }
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_THAT(host_.Output(), HasSubstr("action DeviceResync: device_resync.sh failed: killed by "
                                        "signal 15 as the host stopped\n"));
}

TEST_F(ScriptTest, WhatAScriptLeftInTheBackgroundEndsWithTheHost) {
  host_.UseScript("uplink.sh",
                  "#!/bin/sh\nsleep 100 &\necho $! >\"$KIOHOST_STATE_DIR/left\"\n"
                  "setsid sleep 60 &\necho $! >\"$KIOHOST_STATE_DIR/apart\"\n");
  ASSERT_TRUE(host_.Start());
  Commit();
  EXPECT_NE(Process("left"), 0) << "nothing ends it while the host runs";
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_EQ(Process("left"), 0);
  // What has a session of its own is none of the host's business.
  const pid_t apart = Process("apart");
  ASSERT_NE(apart, 0);
  EXPECT_EQ(kill(apart, SIGKILL), 0);
}

// Nothing may stay behind as a zombie in a host that runs for months.
TEST_F(ScriptTest, EndedProcessesOfTheBackgroundAreForgotten) {
  host_.UseScript("uplink.sh", "#!/bin/sh\nsleep 0.3 &\necho $! >\"$KIOHOST_STATE_DIR/left\"\n");
  ASSERT_TRUE(host_.Start());
  Commit();
  EXPECT_TRUE(WaitFor([this] { return Process("left") == 0; }));
}

}  // namespace
