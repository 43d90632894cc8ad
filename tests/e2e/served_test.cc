// What is answered while the library is at work for as long as the test wants.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "documents.h"
#include "held_alarm.h"
#include "host_process.h"
#include "http_client.h"
#include "preload.h"
#include "silent_server.h"
#include "store.h"

namespace {

using ::testing::HasSubstr;

// A variable's name, its document path and its index are put in the place of "??".
std::string WithIndex(std::string text, int index) {
  const size_t at = text.find("??");
  return at == std::string::npos
             ? text
             : text.replace(at, 2,
                            index < 10 ? "0" + std::to_string(index) : std::to_string(index));
}

// The paths of all variables, of instances that are there and of some that are not.
std::vector<std::string> VariablePaths() {
  const auto list = nlohmann::json::parse(ReadFile(KIO_DOCS_DIR "/variables.json"));
  std::vector<std::string> paths;
  for (const auto& row : list["variables"]) {
    const std::string name = row["name"];
    std::string path = row["documentPath"];
    if (path.ends_with('#')) {
      path.replace(path.size() - 1, 1, "%23");
    }
    for (int index = 0; index < (name.find("??") == name.npos ? 1 : 4); ++index) {
      paths.push_back("/vars/" + WithIndex(name, index));
      paths.push_back("/vars/" + WithIndex(name, index) + "?path=1");
      paths.push_back("/vars" + WithIndex(path, index));
    }
  }
  return paths;
}

class ServedTest : public ::testing::Test {
 protected:
  // Begins a commit whose script ends when the test says so.
  void HoldCommit() {
    ASSERT_EQ(Post(host_.port(), "/settings", Changed()).body, ResultDocument(0, "", 30));
    ASSERT_TRUE(WaitFor([this] { return ReadFile(host_.dir().File("begun")) == "begun\n"; }));
  }
  static std::string Changed() {
    return WithIn(With(FactoryDocument(), "UpLinkConnection", StaticUplink("192.0.2.7")),
                  "Wireless2.4", "AccessControl", AccessRules(3));
  }
  bool IsHeld() const { return ReadFile(host_.dir().File("done")).empty(); }
  void Release() const { WriteFile(host_.dir().File("go"), ""); }

  nlohmann::json Values(const std::string& query = "") const {
    return nlohmann::json::parse(Get(host_.port(), "/vars?values=1" + query).body, nullptr, false);
  }

  // Begins a firmware search at a server that says nothing.
  void HoldSearch(Connection* client, SilentServer* server) {
    ASSERT_TRUE(client->Send(PostRequest("/firmware/1", "")));
    ASSERT_TRUE(server->WaitForClient());
  }

  HostProcess host_;
};

TEST_F(ServedTest, ReadsAndLoginsDuringACommit) {
  host_.UseScript("uplink.sh", kHeldScript);
  ASSERT_TRUE(host_.Start());
  HoldCommit();
  const auto device = nlohmann::json::parse(Get(host_.port(), "/device").body);
  EXPECT_EQ(device["state"], "busy");
  EXPECT_EQ(device["lastApply"]["outcome"], "applied");
  EXPECT_EQ(Get(host_.port(), "/result").body, ResultDocument(0, "", 30));
  EXPECT_EQ(Get(host_.port(), "/firmware").status, 404);
  EXPECT_THAT(Get(host_.port(), "/").body, HasSubstr("/settings"));
  EXPECT_THAT(Get(host_.port(), "/openapi.json").body, HasSubstr("openapi"));
  EXPECT_THAT(Get(host_.port(), "/vars").body, HasSubstr("rss_DeviceName"));
  EXPECT_EQ(Get(host_.port(), "/vars/rss_Upl_IP").body, "192.0.2.7");
  EXPECT_EQ(Get(host_.port(), "/vars/Device/UpLinkConnection/IP").body, "192.0.2.7");
  EXPECT_EQ(Get(host_.port(), "/vars/xyz_Upl_IP?path=1").body, "/uplink/IP");
  EXPECT_EQ(Get(host_.port(), "/vars/rss_Upl_IP?path=2").status, 400);
  const auto archive = nlohmann::json::parse(Get(host_.port(), "/backup").body);
  EXPECT_EQ(archive["settings"]["Device"]["UpLinkConnection"]["IP"], "192.0.2.7");
  EXPECT_EQ(Get(host_.port(), "/nothing").status, 404);
  EXPECT_EQ(Post(host_.port(), "/login", "BKey=00000000").status, 401);
  EXPECT_EQ(Post(host_.port(), "/logout", "").status, 200);
  EXPECT_TRUE(IsHeld());
  Release();
  EXPECT_TRUE(host_.WaitForOutput("action CfgSaveToFlash"));
}

// Changes, and names that are not in the list, wait for the library.
TEST_F(ServedTest, OnlyReadsAreServedDuringACommit) {
  host_.UseScript("uplink.sh", kHeldScript);
  ASSERT_TRUE(host_.Start());
  HoldCommit();
  Connection put(host_.port());
  Connection unknown(host_.port());
  ASSERT_TRUE(put.Send(BodyRequest("PUT", "/vars/rss_DeviceName", "Attic")));
  ASSERT_TRUE(unknown.Send("GET /vars/rss_Nothing HTTP/1.1\r\nHost: router\r\n\r\n"));
  EXPECT_EQ(Get(host_.port(), "/vars/rss_DeviceName").body, "Home router");
  EXPECT_TRUE(put.StaysSilent(0));
  EXPECT_TRUE(unknown.StaysSilent(0));
  EXPECT_TRUE(IsHeld());
  Release();
  EXPECT_EQ(put.Read().body, "0 done\n");
  EXPECT_EQ(unknown.Read().status, 404);
  EXPECT_EQ(Get(host_.port(), "/vars/rss_DeviceName").body, "Attic");
}

TEST_F(ServedTest, ReadsDuringACommitAreThoseOfAnIdleHost) {
  host_.UseScript("uplink.sh", kHeldScript);
  ASSERT_TRUE(host_.Start());
  HoldCommit();
  std::map<std::string, std::string> held;
  for (const std::string& path : VariablePaths()) {
    // The record has no rules when it is loaded, and there are no sites: such names are not there.
    const bool exists = path.find("_R0") == path.npos && path.find("AcRule:0") == path.npos &&
                        path.find("_S0") == path.npos && path.find("Site:0") == path.npos;
    if (exists) {
      const HttpResponse answer = Get(host_.port(), path);
      EXPECT_EQ(answer.status, 200) << path;
      held[path] = answer.body;
    }
  }
  EXPECT_GT(held.size(), 200U);
  EXPECT_TRUE(IsHeld());
  Release();
  ASSERT_TRUE(host_.WaitForOutput("action CfgSaveToFlash"));
  for (const auto& [path, body] : held) {
    EXPECT_EQ(Get(host_.port(), path).body, body) << path;
  }
}

TEST_F(ServedTest, AllValuesDuringACommitAreThoseOfAnIdleHost) {
  host_.UseScript("uplink.sh", kHeldScript);
  ASSERT_TRUE(host_.Start());
  EXPECT_EQ(Values()["settings"], "none");
  HoldCommit();
  const nlohmann::json held = Values("&secrets=1");
  const nlohmann::json since = Values("&changed-since=none");
  EXPECT_EQ(held["settings"],
            nlohmann::json::parse(Get(host_.port(), "/device").body)["lastApply"]["id"]);
  EXPECT_EQ(held["complete"], true);
  EXPECT_EQ(since["complete"], false);
  EXPECT_THAT(since.dump(), HasSubstr("192.0.2.7"));
  EXPECT_LT(since["variables"].size(), held["variables"].size());
  EXPECT_TRUE(IsHeld());
  Release();
  ASSERT_TRUE(WaitForTurn(host_.port()));
  EXPECT_EQ(Values("&secrets=1"), held);
  EXPECT_EQ(Values("&changed-since=none"), since);
}

// The state that is noted while the library is at work is one that changes can be asked since.
TEST_F(ServedTest, ChangesAreToldSinceASettingThatWasReadDuringItsCommit) {
  host_.UseScript("uplink.sh", kHeldScript);
  ASSERT_TRUE(host_.Start());
  HoldCommit();
  const std::string id = Values()["settings"];
  EXPECT_TRUE(IsHeld());
  Release();
  ASSERT_EQ(Post(host_.port(), "/settings", With(Changed(), "DeviceName", "Attic")).status, 200);
  const nlohmann::json since = Values("&changed-since=" + id);
  EXPECT_EQ(since["complete"], false);
  ASSERT_FALSE(since["variables"].empty());
  EXPECT_EQ(since["variables"][0]["name"], "rss_DeviceName");
}

TEST_F(ServedTest, AllValuesOfOtherSettingsThanThoseInTheStoreWait) {
  host_.UseScript("uplink.sh", kHeldScript);
  ASSERT_TRUE(host_.Start());
  HoldCommit();
  kiohost::Store store;
  ASSERT_TRUE(store.Open(host_.dir().File("store.db"), kiohost::Store::Mode::kExisting).ok());
  store.SetNumber("apply id", 7);
  Connection values(host_.port());
  ASSERT_TRUE(values.Send("GET /vars?values=1 HTTP/1.1\r\nHost: router\r\n\r\n"));
  EXPECT_EQ(Get(host_.port(), "/vars/rss_Upl_IP").body, "192.0.2.7");
  EXPECT_TRUE(values.StaysSilent(0));
  EXPECT_TRUE(IsHeld());
  Release();
  EXPECT_EQ(nlohmann::json::parse(values.Read().body)["settings"], "0000000000000007");
}

// No request has the turn then.
TEST_F(ServedTest, ReadsWhileSettingsGoBack) {
  const std::string uptime = host_.dir().File("uptime");
  WriteFile(uptime, "1000");
  {
    const Preload preload(KIO_FAKE_UPTIME, "KIO_TEST_UPTIME", uptime);
    ASSERT_TRUE(host_.Start());
  }
  const std::string before = Get(host_.port(), "/vars/rss_Upl_IP").body;
  EXPECT_EQ(Post(host_.port(), "/settings?confirm-within=60", Changed()).status, 200);
  ASSERT_TRUE(WaitForTurn(host_.port()));
  host_.UseScript("uplink.sh", kHeldScript);
  WriteFile(uptime + ".new", "1060");
  std::filesystem::rename(uptime + ".new", uptime);
  ASSERT_TRUE(WaitFor([this] { return ReadFile(host_.dir().File("begun")) == "begun\n"; }));
  auto device = nlohmann::json::parse(Get(host_.port(), "/device").body);
  EXPECT_EQ(device["state"], "busy");
  EXPECT_EQ(device["lastApply"]["outcome"], "going-back");
  EXPECT_EQ(Get(host_.port(), "/vars/rss_Upl_IP").body, before);
  EXPECT_EQ(Values()["settings"], device["lastApply"]["id"].get<std::string>() + "-rolled-back");
  EXPECT_TRUE(IsHeld());
  Release();
  EXPECT_TRUE(WaitFor([this] {
    return nlohmann::json::parse(Get(host_.port(), "/device").body)["state"] == "ready";
  }));
  device = nlohmann::json::parse(Get(host_.port(), "/device").body);
  EXPECT_EQ(device["lastApply"]["outcome"], "rolled-back");
}

// Reads come all the time, also when the library is just about to begin.
TEST_F(ServedTest, NoReadFromTheBeginningOfACommitWaitsForItsEnd) {
  constexpr int kRounds = 10;
  constexpr int kReaders = 4;
  host_.UseScript("uplink.sh", kHeldScript);
  ASSERT_TRUE(host_.Start());
  for (int round = 1; round <= kRounds; ++round) {
    std::atomic<bool> ends = false;
    std::vector<std::thread> readers;
    readers.reserve(kReaders);
    for (int i = 0; i < kReaders; ++i) {
      readers.emplace_back([this, &ends] {
        while (!ends) {
          EXPECT_EQ(Get(host_.port(), "/vars/rss_DeviceName").body, "Home router");
        }
      });
    }
    const std::string uplink = StaticUplink("192.0.2." + std::to_string(round));
    EXPECT_EQ(
        Post(host_.port(), "/settings", With(FactoryDocument(), "UpLinkConnection", uplink)).status,
        200);
    EXPECT_TRUE(WaitFor([this] { return ReadFile(host_.dir().File("begun")) == "begun\n"; }));
    ends = true;
    for (std::thread& reader : readers) {
      reader.join();
    }
    ASSERT_FALSE(HasFailure());
    ASSERT_TRUE(IsHeld());
    Release();
    ASSERT_TRUE(WaitForTurn(host_.port()));
    for (const char* file : {"begun", "go", "done"}) {
      std::filesystem::remove(host_.dir().File(file));
    }
  }
}

TEST_F(ServedTest, ReadsDuringAFirmwareSearchSeeWhatWasSet) {
  SilentServer server;
  setenv("http_proxy", server.Proxy().c_str(), 1);
  ASSERT_TRUE(host_.Start());
  EXPECT_EQ(Post(host_.port(), "/firmware/0", "").status, 200);
  EXPECT_EQ(Put(host_.port(), "/vars/rss_DeviceName", "Attic").status, 200);
  Connection search(host_.port());
  HoldSearch(&search, &server);
  EXPECT_EQ(Get(host_.port(), "/vars/rss_DeviceName").body, "Attic");
  EXPECT_EQ(Get(host_.port(), "/device").status, 200);
  EXPECT_THAT(Get(host_.port(), "/firmware").body, HasSubstr("<result>0</result>"));
  EXPECT_EQ(Post(host_.port(), "/login", "BKey=00000000").status, 401);
  EXPECT_TRUE(search.StaysSilent(0));
  EXPECT_EQ(host_.End(SIGTERM), 0);
  unsetenv("http_proxy");
}

// The deferred commit runs in the library's thread while nobody has a turn to wait for.
TEST_F(ServedTest, ReadsDuringADeferredCommit) {
  host_.UseScript("device_resync.sh", kHeldScript);
  ASSERT_TRUE(StartWithHeldAlarm(&host_));
  EXPECT_EQ(Put(host_.port(), "/vars/rss_DeviceName", "Attic").status, 200);
  EXPECT_EQ(Post(host_.port(), "/actions/ApplyAllRssVars", "").status, 200);
  EXPECT_EQ(Post(host_.port(), "/actions/CommitRssVars", "").status, 200);
  EXPECT_EQ(Put(host_.port(), "/vars/rss_Wl2_WirelessName", "Loft").status, 200);
  EXPECT_EQ(Get(host_.port(), "/vars/rss_Wl2_WirelessName").body, "Loft");
  ASSERT_TRUE(RingAlarm(host_));
  ASSERT_TRUE(WaitFor([this] { return ReadFile(host_.dir().File("begun")) == "begun\n"; }));
  EXPECT_EQ(Get(host_.port(), "/vars/rss_DeviceName").body, "Attic");
  EXPECT_EQ(Get(host_.port(), "/vars/rss_Wl2_WirelessName").body, "Loft");
  EXPECT_EQ(Get(host_.port(), "/device").status, 200);
  EXPECT_TRUE(IsHeld());
  Release();
  EXPECT_TRUE(host_.WaitForOutput("action CfgSaveToFlash"));
}

// A read that came before the library was known to be at work.
TEST_F(ServedTest, ManyReadsAmongSlowCommits) {
  host_.UseScript("uplink.sh", "#!/bin/sh\nsleep 0.05\n");
  ASSERT_TRUE(host_.Start());
  for (int i = 1; i <= 10; ++i) {
    const std::string address = "192.0.2." + std::to_string(i);
    const std::string document = With(FactoryDocument(), "UpLinkConnection", StaticUplink(address));
    Connection exchange(host_.port());
    ASSERT_TRUE(exchange.Send(PostRequest("/settings", document)));
    ASSERT_EQ(Get(host_.port(), "/vars/rss_DeviceName").body, "Home router");
    ASSERT_EQ(exchange.Read().status, 200);
    ASSERT_EQ(Get(host_.port(), "/vars/rss_Upl_IP").body, address);
  }
}

// A stop while the library is at work still sends the answer that is due.
TEST_F(ServedTest, AStopSendsTheAnswerOfWhatRuns) {
  SilentServer server;
  setenv("http_proxy", server.Proxy().c_str(), 1);
  ASSERT_TRUE(host_.Start());
  EXPECT_EQ(Post(host_.port(), "/firmware/0", "").status, 200);
  Connection search(host_.port());
  HoldSearch(&search, &server);
  ASSERT_EQ(kill(host_.pid(), SIGTERM), 0);
  EXPECT_THAT(search.Read().body, HasSubstr("<result>-1</result>"));
  EXPECT_EQ(host_.WaitForEnd(), 0);
  unsetenv("http_proxy");
}

}  // namespace
