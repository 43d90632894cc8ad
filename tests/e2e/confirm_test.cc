// Settings that go back unless a client that has come since confirms them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <csignal>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "app_key.h"
#include "documents.h"
#include "host_process.h"
#include "host_steps.h"
#include "http_client.h"
#include "preload.h"

namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr char kConfirm[] = "/settings/confirm";

// A host whose uptime the test sets.
class ConfirmTest : public ::testing::Test {
 protected:
  void SetUp() override { SetTime(1000); }

  void SetTime(long uptime) const {
    WriteFile(host_.dir().File("uptime.new"), std::to_string(uptime));
    ASSERT_EQ(std::rename(host_.dir().File("uptime.new").c_str(), UptimeFile().c_str()), 0);
  }

  void Start(bool closed = false) {
    const Preload preload(KIO_FAKE_UPTIME, "KIO_TEST_UPTIME", UptimeFile());
    ASSERT_TRUE(closed ? host_.StartClosed() : host_.Start());
  }

  std::string UptimeFile() const { return host_.dir().File("uptime"); }
  json Device() const { return json::parse(Get(host_.port(), "/device").body); }
  std::string Outcome() const { return Device()["lastApply"]["outcome"]; }

  // Another name and another uplink, to be confirmed within 60 seconds.
  HttpResponse Change(const std::string& query = "?confirm-within=60") const {
    return Post(host_.port(), "/settings" + query,
                With(With(FactoryDocument(), "DeviceName", "Attic"), "UpLinkConnection",
                     StaticUplink("192.0.2.77")));
  }

  // Waits until the settings have gone back.
  bool WaitForReturn() const {
    return WaitFor([this] { return Outcome() == "rolled-back"; });
  }

  HostProcess host_;
};

TEST_F(ConfirmTest, ItIsAppliedAnsweredAndCommittedAtOnce) {
  Start();
  const HttpResponse answer = Change();
  EXPECT_EQ(answer.body, ResultDocument(0, "", 25));
  EXPECT_TRUE(host_.WaitForOutput("action CfgSaveToFlash"));
  EXPECT_TRUE(WaitForTurn(host_.port()));
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Attic");
  const json device = Device();
  EXPECT_EQ(device["lastApply"]["outcome"], "in-force");
  EXPECT_EQ(device["pendingConfirm"],
            (json{{"id", answer.Header("Kio-Apply-Id")}, {"seconds", 60}, {"secondsLeft", 60}}));
}

TEST_F(ConfirmTest, WithoutAConfirmationItGoesBackWithItsActions) {
  Start();
  const std::string before = host_.Dump();
  const std::string id = Change().Header("Kio-Apply-Id");
  EXPECT_NE(host_.Dump(), before);
  SetTime(1059);
  EXPECT_EQ(Device()["pendingConfirm"]["secondsLeft"], 1);
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Attic");
  SetTime(1060);
  ASSERT_TRUE(WaitForReturn());
  EXPECT_EQ(host_.Dump(), before);
  const json device = Device();
  EXPECT_EQ(device["lastApply"]["id"], id);
  EXPECT_EQ(device["lastApply"]["uptime"], 1060);
  EXPECT_TRUE(device["pendingConfirm"].is_null());
  EXPECT_THAT(device["events"].dump(), HasSubstr("as no confirmation came"));
  EXPECT_EQ(Count(host_.Output(), "action WanResync"), 2U);
  EXPECT_EQ(Count(host_.Output(), "action DeviceResync"), 2U);
  EXPECT_THAT(ReadFile(host_.dir().File("device.state")), HasSubstr("name=Home router\n"));
  // Nothing is left to do for the next start.
  EXPECT_EQ(host_.End(SIGTERM), 0);
  Start();
  EXPECT_THAT(host_.Output(), Not(HasSubstr("action")));
}

TEST_F(ConfirmTest, AConfirmationKeepsItForGood) {
  Start();
  Change();
  // A connection from after the change.
  const HttpResponse confirmed = Post(host_.port(), kConfirm, "");
  EXPECT_EQ(confirmed.status, 200);
  EXPECT_EQ(confirmed.body, "confirmed\n");
  EXPECT_TRUE(Device()["pendingConfirm"].is_null());
  SetTime(5000);
  EXPECT_EQ(host_.End(SIGKILL), 128 + SIGKILL);
  Start();
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Attic");
  EXPECT_EQ(Outcome(), "in-force");
  EXPECT_EQ(Post(host_.port(), kConfirm, "").status, 404);
  EXPECT_EQ(Delete(host_.port(), kConfirm).status, 404);
}

TEST_F(ConfirmTest, TheConnectionOfTheChangeCannotConfirmIt) {
  Start();
  Connection connection(host_.port());
  ASSERT_TRUE(connection.Send(
      PostRequest("/settings?confirm-within=60", With(FactoryDocument(), "DeviceName", "Attic"))));
  ASSERT_EQ(connection.Read().status, 200);
  ASSERT_TRUE(connection.Send(PostRequest(kConfirm, "")));
  const HttpResponse refused = connection.Read();
  EXPECT_EQ(refused.status, 403);
  EXPECT_THAT(refused.body, HasSubstr("connect anew"));
  EXPECT_EQ(Post(host_.port(), kConfirm, "").status, 200);
}

TEST_F(ConfirmTest, ADeleteGoesBackAtOnce) {
  Start();
  const std::string before = host_.Dump();
  Change();
  const HttpResponse answer = Delete(host_.port(), kConfirm);
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, "going back; wait 25 s\n");
  ASSERT_TRUE(WaitForReturn());
  EXPECT_EQ(host_.Dump(), before);
  EXPECT_EQ(Count(host_.Output(), "action WanResync"), 2U);
}

TEST_F(ConfirmTest, OtherChangesWait) {
  Start();
  Change();
  SetTime(1010);
  const HttpResponse refused = Post(host_.port(), "/settings", FactoryDocument());
  EXPECT_EQ(refused.status, 409);
  EXPECT_EQ(refused.Header("Retry-After"), "50");
  EXPECT_EQ(Change().status, 409);
  EXPECT_EQ(Post(host_.port(), "/vars", "rss_DeviceName=Loft").status, 409);
  EXPECT_EQ(Post(host_.port(), "/actions/ApplyAllRssVars", "").status, 409);
  EXPECT_EQ(Post(host_.port(), "/actions/CommitRssVars", "").status, 409);
  EXPECT_EQ(Post(host_.port(), "/actions/SetRssVars", "rss_DeviceName=Loft").status, 409);
  EXPECT_EQ(Post(host_.port(), "/firmware/4", "").status, 409);
  // What only looks is served, and confirms nothing.
  EXPECT_EQ(Post(host_.port(), "/settings?dry-run=1", FactoryDocument()).status, 200);
  EXPECT_EQ(Get(host_.port(), "/result").status, 200);
  EXPECT_EQ(Get(host_.port(), "/vars/rss_DeviceName").body, "Attic");
  EXPECT_EQ(Get(host_.port(), kConfirm).status, 405);
  EXPECT_EQ(Post(host_.port(), "/actions/VerifyAllRssVars", "").status, 200);
  EXPECT_FALSE(Device()["pendingConfirm"].is_null());
  EXPECT_EQ(Post(host_.port(), kConfirm, "").status, 200);
  EXPECT_EQ(Post(host_.port(), "/settings", FactoryDocument()).status, 200);
}

TEST_F(ConfirmTest, WhatIsRefusedArmsNothing) {
  Start();
  EXPECT_EQ(Post(host_.port(), "/settings?confirm-within=60",
                 With(FactoryDocument(), "DeviceName", std::string(33, 'x')))
                .body,
            ResultDocument(10, "Device/DeviceName", 0));
  EXPECT_EQ(Post(host_.port(), "/settings?confirm-within=60&dry-run=1", FactoryDocument()).status,
            200);
  EXPECT_TRUE(Device()["pendingConfirm"].is_null());
  for (const char* seconds : {"4", "3601", "-5", "", "sixty", "60s", "99999999999"}) {
    const HttpResponse answer = Change(std::string("?confirm-within=") + seconds);
    EXPECT_EQ(answer.status, 400) << seconds;
    EXPECT_EQ(answer.body, "confirm-within takes 5 to 3600 seconds\n");
  }
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Home router");
}

TEST_F(ConfirmTest, NewAndRemovedNodesGoBackToo) {
  Start();
  const std::string rules =
      WithIn(FactoryDocument(), "Wireless2.4", "AccessControl", AccessRules(12));
  ASSERT_EQ(Post(host_.port(), "/settings", rules).status, 200);
  const std::string before = host_.Dump();
  // One radio loses rules, the other one gets some.
  ASSERT_EQ(Post(host_.port(), "/settings?confirm-within=60",
                 WithIn(WithIn(FactoryDocument(), "Wireless2.4", "AccessControl", AccessRules(3)),
                        "Wireless5", "AccessControl", AccessRules(20)))
                .status,
            200);
  EXPECT_NE(host_.Dump(), before);
  EXPECT_EQ(Delete(host_.port(), kConfirm).status, 200);
  EXPECT_EQ(host_.Dump(), before);
}

TEST_F(ConfirmTest, WhatWasSetByVariablesMeanwhileIsForgotten) {
  Start();
  Change();
  EXPECT_EQ(Put(host_.port(), "/vars/rss_Wl2_WirelessName", "Sofa").status, 200);
  EXPECT_EQ(Get(host_.port(), "/vars/rss_DeviceName").body, "Attic");
  EXPECT_EQ(Delete(host_.port(), kConfirm).status, 200);
  EXPECT_EQ(Get(host_.port(), "/vars/rss_DeviceName").body, "Home router");
  EXPECT_EQ(Get(host_.port(), "/vars/rss_Wl2_WirelessName").body, "HomeNet");
}

TEST_F(ConfirmTest, ARestartKeepsTheTimeThatIsLeft) {
  Start();
  Change();
  EXPECT_EQ(host_.End(SIGKILL), 128 + SIGKILL);
  SetTime(1020);
  Start();
  EXPECT_EQ(Device()["pendingConfirm"]["secondsLeft"], 40);
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Attic");
  EXPECT_EQ(host_.End(SIGTERM), 0);
  SetTime(1060);
  Start();
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Home router");
  EXPECT_EQ(Outcome(), "rolled-back");
  EXPECT_THAT(host_.Output(), HasSubstr("action WanResync"));
  EXPECT_LT(host_.Output().find("action WanResync"), host_.Output().find("listening on"));
}

TEST_F(ConfirmTest, AnotherBootOfTheMachineGoesBack) {
  Start();
  Change();
  EXPECT_EQ(host_.End(SIGTERM), 0);
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(host_.dir().File("store.db").c_str(), &database), SQLITE_OK);
  EXPECT_EQ(
      sqlite3_exec(database, "UPDATE state SET number = number + 1 WHERE name = 'confirm boot'",
                   nullptr, nullptr, nullptr),
      SQLITE_OK);
  EXPECT_EQ(sqlite3_changes(database), 1);
  sqlite3_close(database);
  SetTime(10);
  Start();
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Home router");
  EXPECT_EQ(Outcome(), "rolled-back");
}

TEST_F(ConfirmTest, AFactoryResetForgetsTheWayBack) {
  Start();
  Change();
  EXPECT_EQ(host_.End(SIGTERM), 0);
  SetTime(2000);
  ASSERT_TRUE(host_.Start({"--factory-reset"}));
  EXPECT_TRUE(Device()["pendingConfirm"].is_null());
  EXPECT_THAT(host_.Output(), Not(HasSubstr("action")));
}

TEST_F(ConfirmTest, AFailedScriptOfTheWayBackStaysDue) {
  Start();
  Change();
  host_.UseScript("uplink.sh", "#!/bin/sh\nexit 7\n");
  EXPECT_EQ(Delete(host_.port(), kConfirm).status, 200);
  EXPECT_TRUE(WaitFor([this] { return Count(host_.Output(), "action CfgSaveToFlash") == 2; }));
  EXPECT_EQ(Outcome(), "going-back");
  EXPECT_EQ(host_.End(SIGTERM), 0);
  host_.UseScript("uplink.sh", "#!/bin/sh\n");
  Start();
  EXPECT_THAT(host_.Output(), HasSubstr("action WanResync: ran"));
  EXPECT_EQ(Outcome(), "rolled-back");
}

// With the login, the client must have logged in after the change.
class ClosedConfirmTest : public ConfirmTest {
 protected:
  void SetUp() override {
    ConfirmTest::SetUp();
    Start(true);
  }

  HttpResponse Send(const std::string& request, const std::string& from) const {
    Connection connection(host_.port(), from);
    return connection.Send(request) ? connection.Read() : HttpResponse();
  }

  int Login(const std::string& from) const {
    // The slot of the second 1000.
    return Send(PostRequest("/login", "kioAppKey=:" + AppKey(50, from)), from).status;
  }

  int Confirm(const std::string& from) const {
    return Send(PostRequest(kConfirm, ""), from).status;
  }
};

TEST_F(ClosedConfirmTest, OnlyALoginFromAfterTheChangeConfirmsIt) {
  constexpr char kOther[] = "127.0.0.2";
  constexpr char kStranger[] = "127.0.0.3";
  ASSERT_EQ(Login("127.0.0.1"), 200);
  ASSERT_EQ(Login(kOther), 200);
  ASSERT_EQ(Change().status, 200);
  EXPECT_EQ(Confirm("127.0.0.1"), 403);
  EXPECT_EQ(Confirm(kOther), 403);
  EXPECT_EQ(Confirm(kStranger), 401);
  EXPECT_EQ(Send("GET /device HTTP/1.1\r\nHost: router\r\n\r\n", kStranger).status, 200);
  EXPECT_FALSE(Device()["pendingConfirm"].is_null());
  ASSERT_EQ(Login(kOther), 200);
  EXPECT_EQ(Confirm("127.0.0.1"), 403) << "somebody else's login";
  EXPECT_EQ(Confirm(kOther), 200);
  EXPECT_TRUE(Device()["pendingConfirm"].is_null());
}

TEST_F(ClosedConfirmTest, ALoginAloneConfirmsNothing) {
  ASSERT_EQ(Login("127.0.0.1"), 200);
  ASSERT_EQ(Change().status, 200);
  ASSERT_EQ(Login("127.0.0.1"), 200);
  EXPECT_FALSE(Device()["pendingConfirm"].is_null());
  SetTime(1060);
  EXPECT_TRUE(WaitForReturn());
}

TEST_F(ClosedConfirmTest, AfterARestartAnyLoginIsFromAfterTheChange) {
  ASSERT_EQ(Login("127.0.0.1"), 200);
  ASSERT_EQ(Change().status, 200);
  EXPECT_EQ(host_.End(SIGKILL), 128 + SIGKILL);
  Start(true);
  EXPECT_EQ(Confirm("127.0.0.1"), 401);
  ASSERT_EQ(Login("127.0.0.1"), 200);
  EXPECT_EQ(Confirm("127.0.0.1"), 200);
}

// Kills before each step of what `act` brings about, each time with a fresh change. Afterwards the
// store is as it was before the change or after it, and goes on as it should from there.
class ConfirmKillTest : public ::testing::Test {
 protected:
  static constexpr int kMostSteps = 250;

  json Device() const { return json::parse(Get(host_.port(), "/device").body); }

  HttpResponse Change(int number) const {
    return Post(host_.port(), "/settings?confirm-within=3600",
                With(FactoryDocument(), "DeviceName", "Name " + std::to_string(number)));
  }

  HostProcess host_;
  HostSteps steps_{&host_};
};

TEST_F(ConfirmKillTest, AChangeIsKeptWithItsWayBackOrNotAtAll) {
  int applied = 0;
  bool killed = true;
  for (int step = 1; killed && step < kMostSteps; step += steps_.stride()) {
    ASSERT_TRUE(steps_.Start());
    ASSERT_EQ(host_.Node("/sys/friendlyname"), "Home router");
    steps_.SignalBefore(step, SIGKILL);
    Change(step);
    killed = !WaitForTurn(host_.port());
    EXPECT_EQ(killed ? host_.WaitForEnd() : host_.End(SIGKILL), 128 + SIGKILL);
    const bool is_applied = host_.Node("/sys/friendlyname") != "Home router";
    applied += is_applied ? 1 : 0;
    ASSERT_TRUE(host_.Start());
    ASSERT_EQ(Device()["pendingConfirm"].is_null(), !is_applied) << "before step " << step;
    EXPECT_EQ(Delete(host_.port(), kConfirm).status, is_applied ? 200 : 404);
    EXPECT_EQ(host_.End(SIGTERM), 0);
  }
  EXPECT_FALSE(killed) << "there is no end to the steps";
  EXPECT_GT(applied, 0);
}

TEST_F(ConfirmKillTest, GoingBackIsDoneAsAWholeAndMadeUpFor) {
  int back = 0;
  int not_back = 0;
  bool killed = true;
  for (int step = 1; killed && step < kMostSteps; step += steps_.stride()) {
    ASSERT_TRUE(steps_.Start());
    ASSERT_EQ(Change(step).status, 200);
    ASSERT_TRUE(host_.WaitForOutput("action CfgSaveToFlash"));
    ASSERT_TRUE(WaitForTurn(host_.port()));
    steps_.SignalBefore(step, SIGKILL);
    Delete(host_.port(), kConfirm);
    killed = !WaitForTurn(host_.port());
    EXPECT_EQ(killed ? host_.WaitForEnd() : host_.End(SIGKILL), 128 + SIGKILL);
    const bool is_back = host_.Node("/sys/friendlyname") == "Home router";
    (is_back ? back : not_back) += 1;
    ASSERT_TRUE(host_.Start());
    const json device = Device();
    EXPECT_EQ(device["pendingConfirm"].is_null(), is_back) << "before step " << step;
    EXPECT_EQ(device["lastApply"]["outcome"], is_back ? "rolled-back" : "in-force");
    EXPECT_EQ(Delete(host_.port(), kConfirm).status, is_back ? 404 : 200);
    ASSERT_TRUE(WaitForTurn(host_.port()));
    EXPECT_THAT(ReadFile(host_.dir().File("device.state")), HasSubstr("name=Home router\n"));
    EXPECT_EQ(host_.End(SIGTERM), 0);
  }
  EXPECT_FALSE(killed) << "there is no end to the steps";
  EXPECT_GT(back, 0);
  EXPECT_GT(not_back, 0);
}

}  // namespace
