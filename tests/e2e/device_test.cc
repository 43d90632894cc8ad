// What GET /device tells of the host and of what was applied last.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <string>

#include "documents.h"
#include "held_alarm.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

json Device(const HostProcess& host) { return json::parse(Get(host.port(), "/device").body); }

HttpResponse Rename(const HostProcess& host, const std::string& name) {
  return Post(host.port(), "/settings", With(FactoryDocument(), "DeviceName", name));
}

TEST(DeviceTest, EachStartHasABootIdOfItsOwn) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string first = Device(host)["bootId"];
  EXPECT_THAT(first, MatchesRegex("[0-9a-f]{32}"));
  EXPECT_EQ(Device(host)["bootId"], first);
  EXPECT_EQ(host.End(SIGKILL), 128 + SIGKILL);
  ASSERT_TRUE(host.Start());
  EXPECT_NE(Device(host)["bootId"], first);
}

TEST(DeviceTest, TheAnswerNamesTheApplyThatIsInForceThen) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  EXPECT_TRUE(Device(host)["lastApply"].is_null());
  const HttpResponse first = Rename(host, "Attic");
  EXPECT_THAT(first.Header("Kio-Apply-Id"), MatchesRegex("[0-9a-f]{16}"));
  EXPECT_TRUE(WaitForTurn(host.port()));
  const json device = Device(host);
  EXPECT_EQ(device["lastApply"]["id"], first.Header("Kio-Apply-Id"));
  EXPECT_EQ(device["lastApply"]["outcome"], "in-force");
  EXPECT_LE(device["lastApply"]["uptime"], device["uptime"]);
  EXPECT_EQ(device["state"], "ready");
  // One that changes nothing is an apply as well.
  const HttpResponse second = Rename(host, "Attic");
  EXPECT_NE(second.Header("Kio-Apply-Id"), first.Header("Kio-Apply-Id"));
  EXPECT_TRUE(WaitForTurn(host.port()));
  EXPECT_EQ(Device(host)["lastApply"]["id"], second.Header("Kio-Apply-Id"));
  EXPECT_EQ(Device(host)["lastApply"]["outcome"], "in-force");
}

TEST(DeviceTest, WhatIsRefusedIsNoApply) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string id = Rename(host, "Attic").Header("Kio-Apply-Id");
  const HttpResponse refused = Rename(host, std::string(33, 'x'));
  EXPECT_EQ(refused.Header("Kio-Apply-Id"), "");
  EXPECT_EQ(Post(host.port(), "/settings?dry-run=1", FactoryDocument()).status, 200);
  EXPECT_EQ(Post(host.port(), "/vars", "rss_DeviceName=Loft").Header("Kio-Apply-Id"), "");
  EXPECT_EQ(Device(host)["lastApply"]["id"], id);
}

// Another apply came between.
TEST(DeviceTest, AChangeThatWasMadeForOtherSettingsIsRefused) {
  constexpr int kPreconditionFailed = 412;
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const auto change = [&host](const std::string& name, const std::string& made_for) {
    const std::string document = With(FactoryDocument(), "DeviceName", name);
    return Request(host.port(), "POST /settings HTTP/1.1\r\nHost: router\r\nIf-Match: " + made_for +
                                    "\r\nContent-Length: " + std::to_string(document.size()) +
                                    "\r\n\r\n" + document);
  };
  const HttpResponse first = change("Attic", "none");
  EXPECT_EQ(first.status, 200);
  const std::string id = first.Header("Kio-Apply-Id");
  const HttpResponse second = change("Loft", "\"" + id + "\"");
  EXPECT_EQ(second.status, 200);
  EXPECT_NE(second.Header("Kio-Apply-Id"), id);
  for (const std::string& made_for : {id, std::string("none")}) {
    const HttpResponse late = change("Den", made_for);
    EXPECT_EQ(late.status, kPreconditionFailed);
    EXPECT_EQ(late.Header("Kio-Apply-Id"), "");
  }
  EXPECT_EQ(host.Node("/sys/friendlyname"), "Loft");
  EXPECT_EQ(Device(host)["lastApply"]["id"], second.Header("Kio-Apply-Id"));
  EXPECT_EQ(change("Den", "*").status, 200);
}

TEST(DeviceTest, ADeferredCommitIsBusyAndThenInForce) {
  HostProcess host;
  ASSERT_TRUE(StartWithHeldAlarm(&host));
  EXPECT_EQ(Device(host)["state"], "ready");
  const HttpResponse answer = Post(
      host.port(), "/vars", "rss_DeviceName=Attic&rss_Act_ApplyAllRssVars=&rss_Act_CommitRssVars=");
  json device = Device(host);
  EXPECT_EQ(device["state"], "busy");
  EXPECT_EQ(device["lastApply"]["id"], answer.Header("Kio-Apply-Id"));
  EXPECT_EQ(device["lastApply"]["outcome"], "applied");
  ASSERT_TRUE(RingAlarm(host));
  ASSERT_TRUE(host.WaitForOutput("action CfgSaveToFlash"));
  ASSERT_TRUE(WaitForTurn(host.port()));
  device = Device(host);
  EXPECT_EQ(device["state"], "ready");
  EXPECT_EQ(device["lastApply"]["id"], answer.Header("Kio-Apply-Id"));
  EXPECT_EQ(device["lastApply"]["outcome"], "in-force");
}

TEST(DeviceTest, AnAnnouncedAbsenceIsTold) {
  HostProcess host;
  ASSERT_TRUE(StartWithHeldAlarm(&host, {"--real-waits"}));
  ASSERT_EQ(Post(host.port(), "/vars",
                 "rss_DeviceName=Attic&rss_Act_ApplyAllRssVars=&rss_Act_CommitRssVars=")
                .status,
            200);
  EXPECT_EQ(Device(host)["state"], "away");
}

TEST(DeviceTest, AnApplyWithoutItsCommitIsOnlyApplied) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  ASSERT_EQ(Put(host.port(), "/vars/rss_DeviceName", "Attic").status, 200);
  const std::string id = Post(host.port(), "/actions/ApplyAllRssVars", "").Header("Kio-Apply-Id");
  EXPECT_EQ(Device(host)["lastApply"]["id"], id);
  EXPECT_EQ(Device(host)["lastApply"]["outcome"], "applied");
}

TEST(DeviceTest, AFailedScriptIsToldAndMadeUpFor) {
  HostProcess host;
  host.UseScript("device_resync.sh", "#!/bin/sh\nexit 7\n");
  ASSERT_TRUE(host.Start());
  const std::string id = Rename(host, "Attic").Header("Kio-Apply-Id");
  EXPECT_TRUE(WaitForTurn(host.port()));
  EXPECT_EQ(Device(host)["lastApply"]["outcome"], "failed");
  EXPECT_EQ(host.End(SIGTERM), 0);
  host.UseScript("device_resync.sh", "#!/bin/sh\n");
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(Device(host)["lastApply"]["id"], id);
  EXPECT_EQ(Device(host)["lastApply"]["outcome"], "in-force");
}

TEST(DeviceTest, ACommitThatWasDueWhenTheHostDiedIsSeen) {
  HostProcess host;
  ASSERT_TRUE(StartWithHeldAlarm(&host));
  const std::string boot = Device(host)["bootId"];
  const std::string id =
      Post(host.port(), "/vars",
           "rss_DeviceName=Attic&rss_Act_ApplyAllRssVars=&rss_Act_CommitRssVars=")
          .Header("Kio-Apply-Id");
  EXPECT_EQ(host.End(SIGKILL), 128 + SIGKILL);
  ASSERT_TRUE(host.Start());
  EXPECT_THAT(host.Output(), HasSubstr("action DeviceResync"));
  EXPECT_NE(Device(host)["bootId"], boot);
  EXPECT_EQ(Device(host)["lastApply"]["id"], id);
  EXPECT_EQ(Device(host)["lastApply"]["outcome"], "in-force");
}

TEST(DeviceTest, AFactoryResetForgetsWhatWasApplied) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  Rename(host, "Attic");
  EXPECT_EQ(host.End(SIGTERM), 0);
  ASSERT_TRUE(host.Start({"--factory-reset"}));
  EXPECT_TRUE(Device(host)["lastApply"].is_null());
}

TEST(DeviceTest, NothingOfItIsSecret) {
  HostProcess host;
  ASSERT_TRUE(host.StartClosed());
  const HttpResponse answer = Get(host.port(), "/device");
  EXPECT_EQ(answer.status, 200);
  for (const char* secret : {"change-me-soon", "correct-horse"}) {
    EXPECT_THAT(answer.body, ::testing::Not(HasSubstr(secret)));
  }
}

}  // namespace
