// The clock of the control port: hours of a router in a moment.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "control.h"
#include "documents.h"
#include "http_client.h"

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::string KeyOf(long uptime) {
  constexpr long kSlotSeconds = 20;
  const std::string source = std::to_string(uptime / kSlotSeconds) + "127.0.0.1adminchange-me-soon";
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int size = 0;
  EVP_Digest(source.data(), source.size(), digest, &size, EVP_md5(), nullptr);
  std::string key = "kioAppKey=:";
  for (unsigned int i = 0; i < size; ++i) {
    char pair[3];
    std::snprintf(pair, sizeof pair, "%02x", digest[i]);
    key += pair;
  }
  return key;
}

class ControlClockTest : public ::testing::Test {
 protected:
  int Login(const std::string& key) const { return Post(bench_.port(), "/login", key).status; }
  int Served() const { return Get(bench_.port(), "/vars/rss_DeviceName").status; }

  Bench bench_;
};

TEST_F(ControlClockTest, ItStandsIsMovedIsSetAndGoes) {
  ASSERT_TRUE(bench_.Start());
  const nlohmann::json first = bench_.GetControl("/clock");
  EXPECT_EQ(first["mode"], "manual");
  EXPECT_EQ(first["rate"], 0);
  EXPECT_EQ(bench_.Device()["uptime"], first["uptime"]);
  EXPECT_EQ(bench_.PostControl("/clock", {{"advance", 300}})["uptime"],
            first["uptime"].get<long>() + 300);
  EXPECT_EQ(bench_.PostControl("/clock", {{"uptime", 12}})["uptime"], 12);
  bench_.Advance(0.5);
  bench_.Advance(0.5);
  EXPECT_EQ(bench_.Device()["uptime"], 13);
  EXPECT_EQ(bench_.PostControl("/clock", {{"rate", 1000}})["mode"], "rate");
  EXPECT_TRUE(WaitFor([this] { return bench_.Device()["uptime"] > 100; }));
  const nlohmann::json real = bench_.PostControl("/clock", {{"mode", "real"}, {"uptime", 12}});
  EXPECT_EQ(real["mode"], "real");
  EXPECT_EQ(real["rate"], 1);
  EXPECT_TRUE(WaitFor([this] { return bench_.Device()["uptime"] == 13; }));
  EXPECT_EQ(bench_.PostControl("/clock", {{"mode", "manual"}})["rate"], 0);
}

TEST_F(ControlClockTest, ALoginLapsesAfter300Seconds) {
  ASSERT_TRUE(bench_.StartClosed());
  bench_.SetUptime(1000);
  EXPECT_EQ(Login(KeyOf(1000)), 200);
  bench_.Advance(299);
  EXPECT_EQ(Served(), 200);
  bench_.Advance(299);
  EXPECT_EQ(Served(), 200);
  bench_.Advance(360);  // and a look for those that have lapsed
  EXPECT_THAT(bench_.host().Output(), HasSubstr("\nlapsed 127.0.0.1"));
  EXPECT_EQ(Served(), 401);
}

TEST_F(ControlClockTest, AKeyIsGoodFor100Seconds) {
  ASSERT_TRUE(bench_.StartClosed());
  bench_.SetUptime(1000);
  const std::string key = KeyOf(1060);  // good from the slot of 1000 on
  EXPECT_EQ(Login(KeyOf(1080)), 401);
  EXPECT_EQ(Login(key), 200);
  bench_.Advance(99);
  EXPECT_EQ(Login(key), 200);
  bench_.Advance(1);
  EXPECT_EQ(Login(key), 401);
}

TEST_F(ControlClockTest, AfterWrongKeysTheAddressWaits60Seconds) {
  ASSERT_TRUE(bench_.StartClosed());
  bench_.SetUptime(1000);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(Login(KeyOf(1)), 401);
  }
  EXPECT_EQ(Login(KeyOf(1000)), 429);
  bench_.Advance(59);
  EXPECT_EQ(Post(bench_.port(), "/login", KeyOf(1059)).Header("Retry-After"), "1");
  // The number that the uptime shows does not matter to what runs.
  bench_.SetUptime(12);
  EXPECT_EQ(Login(KeyOf(12)), 429);
  bench_.Advance(1);
  EXPECT_EQ(Login(KeyOf(13)), 200);
}

TEST_F(ControlClockTest, ARouterThatIsAwayIsBackAfter35Seconds) {
  ASSERT_TRUE(bench_.Start({"--real-waits"}));
  const HttpResponse answer =
      Post(bench_.port(), "/settings", ReadFile(KIO_HOST_DIR "/demo/change.xml"));
  EXPECT_THAT(answer.body, HasSubstr("<RssGetWaitSec>35<"));
  bench_.Advance(34.5);
  EXPECT_FALSE(Connection(bench_.port()).connected());
  EXPECT_THAT(bench_.host().Output(), HasSubstr("action CfgSaveToFlash"));
  bench_.Advance(0.5);
  EXPECT_EQ(bench_.Device()["lastApply"]["outcome"], "in-force");
}

TEST_F(ControlClockTest, SettingsGoBackWhenNoConfirmationCame) {
  ASSERT_TRUE(bench_.Start());
  const std::string before = bench_.host().Dump();
  Post(bench_.port(), "/settings?confirm-within=3600",
       With(FactoryDocument(), "DeviceName", "Attic"));
  bench_.Advance(3599);
  EXPECT_EQ(bench_.Device()["pendingConfirm"]["secondsLeft"], 1);
  bench_.SetUptime(12);
  EXPECT_EQ(bench_.Device()["pendingConfirm"]["secondsLeft"], 1);
  bench_.Advance(1);
  EXPECT_EQ(bench_.Device()["lastApply"]["outcome"], "rolled-back");
  EXPECT_EQ(bench_.Device()["state"], "ready");
  EXPECT_EQ(bench_.host().Dump(), before);
}

TEST_F(ControlClockTest, ADeferredCommitRunsAfterTwoSeconds) {
  ASSERT_TRUE(bench_.Start());
  Post(bench_.port(), "/vars",
       "rss_DeviceName=Attic&rss_Act_ApplyAllRssVars=1&rss_Act_CommitRssVars=1");
  bench_.Advance(1.9);
  EXPECT_EQ(bench_.Device()["state"], "busy");
  EXPECT_THAT(bench_.host().Output(), Not(HasSubstr("action DeviceResync")));
  bench_.Advance(0.1);
  EXPECT_THAT(bench_.host().Output(), HasSubstr("action DeviceResync"));
  EXPECT_EQ(bench_.Device()["state"], "ready");
}

// Two deadlines in one advance come in their order: the store goes back, and an hour later a client
// lapses.
TEST_F(ControlClockTest, WhatFallsDueComesInItsOrder) {
  ASSERT_TRUE(bench_.StartClosed());
  bench_.SetUptime(1000);
  ASSERT_EQ(Login(KeyOf(1000)), 200);
  Post(bench_.port(), "/settings?confirm-within=5", With(FactoryDocument(), "DeviceName", "Attic"));

  bench_.Advance(86400);
  const std::string output = bench_.host().Output();
  const size_t back = output.find("event the settings went back");
  EXPECT_NE(back, std::string::npos);
  EXPECT_LT(back, output.find("lapsed 127.0.0.1"));
  EXPECT_EQ(bench_.Device()["uptime"], 87400);
  EXPECT_EQ(bench_.Device()["events"][0]["uptime"], 1005);
}

}  // namespace
