// Dry runs: what an exchange or a batch would do is told, and nothing is done.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "documents.h"
#include "host_process.h"
#include "host_steps.h"
#include "http_client.h"

namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::Not;

// The lines of a dump in which a forecast's nodes have their old or new texts.
std::string Applied(const std::string& dump, const json& forecast) {
  std::string text = dump;
  for (const json& node : forecast["nodes"]) {
    const std::string path = node["path"];
    const auto line = [&path](const json& value) {
      return value.is_null() ? "" : path + " = " + value.get<std::string>() + "\n";
    };
    const std::string before = line(node["old"]);
    const size_t at = text.find(before);
    EXPECT_NE(at, std::string::npos) << before;
    text.replace(at, before.size(), line(node["new"]));
  }
  return text;
}

std::string SomeChanges() {
  return WithIn(With(FactoryDocument(), "DeviceName", "Attic"), "Wireless5", "Channel", "40");
}

TEST(DryRunTest, ForetellsWhatTheExchangeThenDoes) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string before = host.Dump();
  const HttpResponse answer = Post(host.port(), "/settings?dry-run=1", SomeChanges());
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.Header("Content-Type"), "application/json");
  EXPECT_EQ(answer.Header("Kio-Apply-Id"), "");
  const json forecast = json::parse(answer.body);
  EXPECT_EQ(forecast["result"], 0);
  EXPECT_EQ(forecast["message"], "");
  EXPECT_EQ(forecast["wait"], 15);
  EXPECT_EQ(forecast["actions"], json::parse(R"([{"name": "Wlan5gResync", "seconds": 10},
      {"name": "DeviceResync", "seconds": 5}, {"name": "CfgSaveToFlash", "seconds": 6}])"));
  EXPECT_EQ(forecast["link"]["by"], "host");
  EXPECT_EQ(forecast["link"]["drops"], false);

  EXPECT_EQ(host.Dump(), before);
  EXPECT_EQ(Get(host.port(), "/result").status, 404);
  EXPECT_FALSE(std::filesystem::exists(host.dir().File("rssset_result.xml")));
  EXPECT_THAT(host.Output(), Not(HasSubstr("action")));

  EXPECT_EQ(Post(host.port(), "/settings", SomeChanges()).body, ResultDocument(0, "", 15));
  EXPECT_EQ(host.Dump(), Applied(before, forecast));
  EXPECT_TRUE(host.WaitForOutput("action CfgSaveToFlash"));
}

TEST(DryRunTest, TheLastResultStaysThatOfTheLastExchange) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string refused = ResultDocument(3, "Device/Wireless2.4/Channel", 0);
  ASSERT_EQ(
      Post(host.port(), "/settings", WithIn(FactoryDocument(), "Wireless2.4", "Channel", "99"))
          .body,
      refused);
  EXPECT_EQ(Post(host.port(), "/settings?dry-run=1", SomeChanges()).status, 200);
  EXPECT_EQ(Get(host.port(), "/result").body, refused);
  EXPECT_EQ(ReadFile(host.dir().File("rssset_result.xml")), refused);
}

TEST(DryRunTest, ARefusalNamesItsElementAndChangesNoNode) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  // The name comes before the channel, and would have been written.
  const std::string document = WithIn(SomeChanges(), "Wireless5", "Channel", "41");
  const json forecast = json::parse(Post(host.port(), "/settings?dry-run=1", document).body);
  EXPECT_EQ(forecast["result"], 3);
  EXPECT_EQ(forecast["message"], "Device/Wireless5/Channel");
  EXPECT_TRUE(forecast["nodes"].empty());
  EXPECT_TRUE(forecast["actions"].empty());
  EXPECT_EQ(forecast["wait"], 0);
  EXPECT_EQ(Post(host.port(), "/settings", document).body,
            ResultDocument(3, "Device/Wireless5/Channel", 0));
}

TEST(DryRunTest, SecretsAreMasked) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string document = WithIn(With(FactoryDocument(), "DevicePwd", "another-password"),
                                      "Wireless5", "EncryptionKey", "another-key");
  // The first exchange of a device also notes that it has other settings than those of the factory.
  ASSERT_EQ(Post(host.port(), "/settings", SomeChanges()).status, 200);
  ASSERT_EQ(Post(host.port(), "/settings", FactoryDocument()).status, 200);
  const std::string body = Post(host.port(), "/settings?dry-run=1", document).body;
  for (const char* secret :
       {"another-password", "another-key", "change-me-soon", "correct-horse-50"}) {
    EXPECT_THAT(body, Not(HasSubstr(secret)));
  }
  EXPECT_EQ(json::parse(body)["nodes"],
            json::parse(R"([{"path": "/lan/wireless5:1/encryptionkey", "old": "********",
                             "new": "********", "secret": true},
                            {"path": "/sys/user:1/password", "old": "********",
                             "new": "********", "secret": true}])"));
}

TEST(DryRunTest, ABatchThatDoesNotApplyTellsWhatApplyingWouldDo) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  ASSERT_EQ(Put(host.port(), "/vars/rss_Wl2_WirelessName", "Sofa").status, 200);
  const json forecast =
      json::parse(Post(host.port(), "/vars?dry-run=1", "rss_DeviceName=Attic").body);
  EXPECT_EQ(forecast["result"], 0);
  EXPECT_EQ(forecast["applies"], false);
  EXPECT_EQ(forecast["commits"], false);
  EXPECT_EQ(forecast["apply"], json::parse(R"({"result": 0, "message": ""})"));
  EXPECT_THAT(forecast["nodes"].dump(), HasSubstr("Sofa"));
  EXPECT_THAT(forecast["nodes"].dump(), HasSubstr("Attic"));
  // Applying the record also removes the access rule of the 5 GHz radio.
  EXPECT_EQ(forecast["wait"], 25);
  // The series goes on as it was.
  EXPECT_EQ(Get(host.port(), "/vars/rss_DeviceName").body, "Home router");
  EXPECT_EQ(Get(host.port(), "/vars/rss_Wl2_WirelessName").body, "Sofa");
  EXPECT_EQ(Get(host.port(), "/result").status, 404);
  EXPECT_EQ(host.Node("/lan/wireless2.4:1/wirelessname"), "HomeNet");
}

TEST(DryRunTest, ABatchThatCommitsRunsNothing) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string batch = "rss_DeviceName=Attic&rss_Act_ApplyAllRssVars=&rss_Act_CommitRssVars=";
  const json forecast = json::parse(Post(host.port(), "/vars?dry-run=1", batch).body);
  EXPECT_EQ(forecast["applies"], true);
  EXPECT_EQ(forecast["commits"], true);
  EXPECT_FALSE(forecast.contains("apply"));
  EXPECT_EQ(forecast["wait"], 15);
  EXPECT_EQ(host.Node("/sys/friendlyname"), "Home router");
  // Nothing is left that holds its turn.
  EXPECT_EQ(Post(host.port(), "/settings", FactoryDocument()).body, ResultDocument(0, "", 0));
  EXPECT_EQ(host.End(SIGTERM), 0);
  EXPECT_THAT(host.Output(), Not(HasSubstr("action")));
}

TEST(DryRunTest, ARefusedBatchNamesItsVariable) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const json forecast =
      json::parse(Post(host.port(), "/vars?dry-run=1", "rss_Upl_IP=nonsense").body);
  EXPECT_EQ(forecast["result"], 2);
  EXPECT_EQ(forecast["message"], "rss_Upl_IP");
  EXPECT_TRUE(forecast["nodes"].empty());
}

TEST(DryRunTest, WhatIsNoDryRunIsRefused) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  for (const char* path : {"/settings?dry-run=2", "/settings?dry-run=yes", "/vars?dry-run="}) {
    const HttpResponse answer = Post(host.port(), path, FactoryDocument());
    EXPECT_EQ(answer.status, 400) << path;
    EXPECT_EQ(answer.body, "dry-run takes 0 or 1\n");
  }
  EXPECT_EQ(Post(host.port(), "/settings?dry-run=1", "no document").status, 400);
  EXPECT_EQ(Post(host.port(), "/settings?dry-run=1", "").status, 400);
  EXPECT_EQ(Post(host.port(), "/settings?dry-run=0", FactoryDocument()).body,
            ResultDocument(0, "", 0));
}

TEST(DryRunTest, AKillAtAnyMomentLeavesNothing) {
  constexpr int kMostSteps = 50;
  HostProcess host;
  HostSteps steps(&host);
  ASSERT_TRUE(steps.Start());
  ASSERT_EQ(Post(host.port(), "/settings", FactoryDocument()).status, 200);
  const std::string result = ReadFile(host.dir().File("rssset_result.xml"));
  const std::string before = host.Dump();
  ASSERT_EQ(host.End(SIGTERM), 0);
  bool killed = true;
  int step = 1;
  for (; killed && step < kMostSteps; ++step) {
    ASSERT_TRUE(steps.Start());
    EXPECT_THAT(host.Output(), Not(HasSubstr("action")));
    steps.SignalBefore(step, SIGKILL);
    killed = Post(host.port(), "/settings?dry-run=1", SomeChanges()).status != 200;
    EXPECT_EQ(killed ? host.WaitForEnd() : host.End(SIGKILL), 128 + SIGKILL);
    EXPECT_EQ(host.Dump(), before);
    EXPECT_EQ(ReadFile(host.dir().File("rssset_result.xml")), result);
  }
  EXPECT_FALSE(killed) << "there is no end to the steps";
  EXPECT_GT(step, 2) << "no step was met";
}

}  // namespace
