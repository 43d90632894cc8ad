// The journal of the control port: what has happened, and what a test expects of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "control.h"
#include "documents.h"
#include "event_reader.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using nlohmann::json;
using ::testing::HasSubstr;

class ControlJournalTest : public ::testing::Test {
 protected:
  std::vector<json> Journal(const std::string& query = "") const {
    const HttpResponse answer = Get(bench_.control_port(), "/journal" + query);
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.Header("Content-Type"), "application/jsonl");
    std::istringstream lines(answer.body);
    std::vector<json> entries;
    for (std::string line; std::getline(lines, line);) {
      entries.push_back(json::parse(line, nullptr, false));
    }
    return entries;
  }
  unsigned long Last() const {
    return std::stoul(Get(bench_.control_port(), "/journal").Header("Kio-Journal-Last"));
  }
  json Expect(unsigned long since, const json& expected, const json& kinds = nullptr) const {
    json body = {{"since", since}, {"expect", expected}};
    if (!kinds.is_null()) {
      body["kinds"] = kinds;
    }
    return bench_.PostControl("/journal/expect", body);
  }
  HttpResponse Rename(const std::string& name) const {
    return Post(bench_.port(), "/settings", With(FactoryDocument(), "DeviceName", name));
  }

  Bench bench_;
};

TEST_F(ControlJournalTest, AnExchangeIsToldFromTheRequestToItsActions) {
  ASSERT_TRUE(bench_.Start());
  bench_.SetUptime(1000);
  const unsigned long begin = Last();
  Rename("Attic");
  const std::string mode = "/lan/wireless5:1/accesscontrol/wlacmode";
  const json writes = {{{"path", "/sys/friendlyname"}, {"old", "Home router"}, {"new", "Attic"}},
                       {{"path", mode}, {"old", "0"}, {"new", "0"}},
                       {{"path", "/sys/factorydefault"}, {"old", "1"}, {"new", "0"}}};
  EXPECT_EQ(Expect(begin, writes, {"write"})["ok"], true);
  EXPECT_EQ(
      Expect(begin,
             {{{"kind", "request"}, {"method", "POST"}, {"path", "/settings"}, {"status", 200}},
              {{"kind", "action"}, {"name", "DeviceResync"}, {"text", "ran device_resync.sh*"}},
              {{"kind", "action"}, {"name", "CfgSaveToFlash"}}})["ok"],
      true);
  const std::vector<json> commands = Journal("?kinds=command&since=" + std::to_string(begin));
  ASSERT_EQ(commands.size(), 7U);  // six lines of the result document, and a script
  EXPECT_THAT(commands[0]["command"], HasSubstr("rssset_result.xml"));
  EXPECT_THAT(commands[6]["command"], HasSubstr("device_resync.sh"));
  EXPECT_EQ(commands[6]["status"], 0);
  EXPECT_EQ(commands[6]["uptime"], 1000);
  EXPECT_GT(Journal("?kinds=read&since=" + std::to_string(begin)).size(), 50U);
  EXPECT_GT(Journal("?kinds=log&since=" + std::to_string(begin)).size(), 0U);
}

TEST_F(ControlJournalTest, TheFirstDifferenceIsTold) {
  ASSERT_TRUE(bench_.Start());
  const unsigned long begin = Last();
  Rename("Attic");
  json answer = Expect(begin, {{{"path", "/sys/friendlyname"}}}, {"write"});
  EXPECT_EQ(answer["ok"], false);
  EXPECT_EQ(answer["at"], 1);
  EXPECT_EQ(answer["expected"], nullptr);
  EXPECT_EQ(answer["found"]["path"], "/lan/wireless5:1/accesscontrol/wlacmode");
  answer = Expect(begin, {{{"kind", "write"}, {"new", "Den"}}});
  EXPECT_EQ(answer["at"], 0);
  EXPECT_EQ(answer["found"]["new"], "Attic");
  answer = Expect(begin, {{{"kind", "action"}}, {{"kind", "action"}}, {{"kind", "action"}}});
  EXPECT_EQ(answer["at"], 2);
  EXPECT_EQ(answer["found"], nullptr);
  for (const char* body : {"{}", R"({"expect":{}})", R"({"expect":[1]})", R"({"expect":[]})",
                           R"({"expect":[{"kind":"writes"}]})", R"({"expect":[],"kinds":[1]})"}) {
    EXPECT_EQ(Post(bench_.control_port(), "/journal/expect", body).status, 400) << body;
  }
  EXPECT_EQ(Get(bench_.control_port(), "/journal?since=x").status, 400);
  EXPECT_EQ(Get(bench_.control_port(), "/journal?kinds=writes").status, 400);
}

TEST_F(ControlJournalTest, WritesThatWereUndoneAreMarked) {
  ASSERT_TRUE(bench_.Start());
  const unsigned long begin = Last();
  Post(bench_.port(), "/settings?dry-run=1", With(FactoryDocument(), "DeviceName", "Attic"));
  const std::vector<json> writes = Journal("?kinds=write&since=" + std::to_string(begin));
  ASSERT_FALSE(writes.empty());
  for (const json& write : writes) {
    EXPECT_EQ(write["undone"], true) << write;
  }
  EXPECT_EQ(Expect(begin, json::array(), {"write"})["ok"], true);
}

TEST_F(ControlJournalTest, PasswordsAndKeysAreMasked) {
  for (const bool shows : {false, true}) {
    Bench bench;
    std::vector<std::string> options = {"--log-level", "7"};
    if (shows) {
      options.emplace_back("--show-secrets");
    }
    ASSERT_TRUE(bench.Start(options));
    Post(bench.port(), "/settings", With(FactoryDocument(), "DevicePwd", "new-password-1"));
    Post(bench.port(), "/vars/rss_DeviceName/validate?new-password-1", "x");
    const std::string journal = Get(bench.control_port(), "/journal").body;
    for (const char* secret : {"new-password-1", "change-me-soon", "correct-horse-24"}) {
      EXPECT_EQ(Count(journal, secret) > 0, shows) << secret;
    }
    EXPECT_THAT(journal, HasSubstr("/sys/user:1/password\""));
    EXPECT_EQ(Count(journal, R"("new":"********")"), shows ? 0U : 1U);
  }
}

// The same entries as of GET /journal, from a client that comes in the middle and comes back.
TEST_F(ControlJournalTest, AStreamTellsTheEntriesAsTheyCome) {
  ASSERT_TRUE(bench_.Start());
  const std::string since = std::to_string(Last());
  std::string id;
  std::vector<json> told;
  for (const char* name : {"Attic", "Den"}) {
    EventReader stream(bench_.control_port(), id, "127.0.0.1", 0,
                       "/journal/stream?kinds=write,action&since=" + since);
    ASSERT_EQ(stream.response().status, 200);
    EXPECT_EQ(stream.response().Header("Content-Type"), "text/event-stream");
    Post(bench_.port(), "/settings?dry-run=1", With(FactoryDocument(), "DeviceName", "Shed"));
    Rename(name);
    for (EventBlock block; block.data["name"] != "CfgSaveToFlash";) {
      block = stream.Next();
      ASSERT_FALSE(block.empty());
      EXPECT_EQ(block.kind, block.data["kind"]);
      EXPECT_THAT(block.id, testing::EndsWith("-" + block.data["n"].dump()));
      told.push_back(block.data);
    }
    id = stream.last_id();
  }
  // With what came of the writes of the dry run.
  EXPECT_EQ(told, Journal("?kinds=write,action&since=" + since));
  EXPECT_EQ(told.front()["undone"], true);
  EXPECT_EQ(Get(bench_.control_port(), "/journal/stream?since=x").status, 400);
  EXPECT_EQ(Get(bench_.control_port(), "/journal/stream?kinds=writes").status, 400);
}

TEST_F(ControlJournalTest, ItHoldsTenThousandEntriesAndCountsTheRest) {
  ASSERT_TRUE(bench_.Start());
  Connection connection(bench_.port());
  for (int i = 0; i < 10100; ++i) {
    ASSERT_TRUE(connection.Send("GET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
    ASSERT_EQ(connection.Read().status, 200);
  }
  const HttpResponse answer = Get(bench_.control_port(), "/journal");
  EXPECT_EQ(Count(answer.body, "\n"), 10000U);
  const unsigned long dropped = std::stoul(answer.Header("Kio-Journal-Dropped"));
  EXPECT_GE(dropped, 100U);
  EXPECT_THAT(answer.body, testing::StartsWith("{\"n\":" + std::to_string(dropped + 1) + ","));
  EXPECT_EQ(
      Post(bench_.control_port(), "/journal/expect", R"({"expect":[],"kinds":["write"]})").status,
      409);
  EventReader stream(bench_.control_port(), "", "127.0.0.1", 0, "/journal/stream?since=7");
  const EventBlock lost = stream.Next();
  EXPECT_EQ(lost.kind, "lost");
  EXPECT_EQ(lost.data["entries"], dropped - 7);
  EXPECT_EQ(stream.Next().data["n"], dropped + 1);
}

}  // namespace
