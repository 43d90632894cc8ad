// Fault rules of the control port: how they are given, counted, drawn and ended.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "control.h"
#include "documents.h"
#include "http_client.h"

namespace {

using nlohmann::json;
using ::testing::HasSubstr;

class ControlFaultsTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(bench_.Start()); }

  // The id of a rule that was added.
  int Add(const json& rule) const { return bench_.PostControl("/faults", rule)["id"]; }
  json Rule(int id) const { return bench_.GetControl("/faults/" + std::to_string(id)); }

  // An action that begins one transaction, and changes nothing.
  int Verify() const { return Post(bench_.port(), "/actions/VerifyAllRssVars", "").status; }
  // Which of some of them fail: "-" for one that does not.
  std::string Verify(int times) const {
    std::string outcomes;
    for (int i = 0; i < times; ++i) {
      outcomes += Verify() == 500 ? "x" : "-";
    }
    return outcomes;
  }

  Bench bench_;
};

TEST_F(ControlFaultsTest, ABadRuleSaysWhatIsWrongAndChangesNothing) {
  for (const auto& [body, fault] : {
           std::pair<std::string, std::string>{"", "the JSON object is missing"},
           {"[]", "no JSON object"},
           {"{}", "\"action\" takes one of delay, drip"},
           {R"({"action":"explode"})", "\"action\" takes one of delay, drip"},
           {R"({"action":5})", "\"action\" takes a text"},
           {R"({"action":"reset","times":2})", "there is no member \"times\""},
           {R"({"action":"reset","ms":2})", "\"ms\" does not go with \"reset\""},
           {R"({"action":"delay"})", "\"delay\" needs \"ms\""},
           {R"({"action":"delay","ms":0})", "\"ms\" takes a number from 1 to 60000"},
           {R"({"action":"delay","ms":1.5})", "\"ms\" takes a whole number"},
           {R"({"action":"reset","count":0})", "\"count\" takes a number from 1 to"},
           {R"({"action":"reset","count":99999999999999999999})", "\"count\" takes"},
           {R"({"action":"reset","probability":0})", "\"probability\" takes a number from"},
           {R"({"action":"reset","probability":1.1})", "\"probability\" takes a number from"},
           {R"({"action":"reset","seed":1})", "\"seed\" goes with \"probability\""},
           {R"({"action":"reset","for_seconds":0})", "\"for_seconds\" takes a number from"},
           {R"({"action":"reset","match":"x"})", "\"match\" takes an object"},
           {R"({"action":"reset","match":{"path":1}})", "\"path\" takes a text"},
           {R"({"action":"reset","match":{"path":""}})", "\"path\" takes a text"},
           {R"({"action":"reset","match":{"":"x"}})", "only method, path, from"},
           {R"({"action":"reset","match":{"command":"x"}})", "only method, path, from"},
           {R"({"action":"refuse","match":{"path":"/"}})",
            "\"refuse\" takes in \"match\" only from"},
           {R"({"action":"store-full","match":{"path":"/"}})", "takes no \"match\""},
           {R"({"action":"store-fails","match":{"access":"both"}})", "\"access\" takes"},
           {R"({"action":"firmware-missing","match":{"download":"all"}})", "\"download\" takes"},
           {R"({"action":"answer","status":404})", "takes 500 or 503"},
           {R"({"action":"answer","status":500,"retry_after":3})", "goes with the status 503"},
           {R"({"action":"command-fails","status":256})", "takes 1 to 255"},
           {R"({"action":"command-hangs"})", "\"command-hangs\" needs \"seconds\""},
           {R"({"action":"radio-gone","radio":"6"})", "\"radio\" takes"},
           {R"({"action":"radio-gone","radio":"5","count":1})", "\"count\" does not go with"},
           {R"({"action":"radio-moves","radio":"5"})", "needs \"channel\""},
           {R"({"action":"radio-moves","radio":"5","channel":"a"})", "\"channel\" takes a number"},
           {R"({"action":"power-off","count":2})", "\"count\" does not go with"},
           {R"({"action":"power-off","match":{"path":"*","command":"*"}})", "not both"},
       }) {
    const HttpResponse answer = Post(bench_.control_port(), "/faults", body);
    EXPECT_EQ(answer.status, 400) << body;
    EXPECT_THAT(answer.body, HasSubstr(fault)) << body;
  }
  EXPECT_EQ(bench_.GetControl("/faults")["faults"], json::array());
  for (const char* id : {"0", "1", "x", "1x"}) {
    EXPECT_EQ(Get(bench_.control_port(), std::string("/faults/") + id).status, 404) << id;
    EXPECT_EQ(Delete(bench_.control_port(), std::string("/faults/") + id).status, 404) << id;
  }
}

TEST_F(ControlFaultsTest, ARuleSkipsCountsIsDrawnAndEndsByTheClock) {
  const int counted = Add({{"action", "store-locked"}, {"skip", 2}, {"count", 3}});
  EXPECT_EQ(Verify(7), "--xxx--");
  EXPECT_EQ(Rule(counted), (json{{"id", counted},
                                 {"action", "store-locked"},
                                 {"skip", 2},
                                 {"count", 3},
                                 {"met", 5},
                                 {"hits", 3},
                                 {"state", "ended"}}));
  std::vector<std::string> drawn;
  for (const int seed : {7, 7, 8}) {
    const int rule = Add({{"action", "store-locked"}, {"probability", 0.5}, {"seed", seed}});
    drawn.push_back(Verify(32));
    const json told = bench_.Ask(Delete(bench_.control_port(), "/faults/" + std::to_string(rule)));
    EXPECT_EQ(told["met"], 32);
    EXPECT_EQ(told["hits"], Count(drawn.back(), "x"));
    EXPECT_GT(Count(drawn.back(), "x"), 3U);
    EXPECT_GT(Count(drawn.back(), "-"), 3U);
  }
  EXPECT_EQ(drawn[0], drawn[1]);
  EXPECT_NE(drawn[0], drawn[2]);

  const int timed = Add({{"action", "store-locked"}, {"for_seconds", 10}});
  bench_.Advance(9.9);
  EXPECT_EQ(Verify(2), "xx");
  EXPECT_EQ(Rule(timed)["state"], "active");
  bench_.Advance(0.1);
  EXPECT_EQ(Rule(timed)["state"], "ended");
  EXPECT_EQ(Verify(2), "--");
  EXPECT_EQ(Rule(timed)["hits"], 2);
}

TEST_F(ControlFaultsTest, TheFirstRuleThatActsWinsAndStandsInTheJournal) {
  const unsigned long begin =
      std::stoul(Get(bench_.control_port(), "/journal").Header("Kio-Journal-Last"));
  const int first = Add({{"action", "command-fails"},
                         {"match", {{"command", "*device_resync.sh*"}}},
                         {"status", 3},
                         {"count", 1}});
  const int second = Add({{"action", "command-missing"}, {"match", {{"command", "*resync.sh*"}}}});
  for (const char* name : {"Attic", "Cellar"}) {
    Post(bench_.port(), "/settings", With(FactoryDocument(), "DeviceName", name));
    ASSERT_TRUE(WaitForTurn(bench_.port()));
  }
  const json faults = {{{"rule", first}, {"action", "command-fails"}, {"command", "*resync.sh*"}},
                       {{"rule", second}, {"action", "command-missing"}}};
  EXPECT_EQ(bench_.PostControl("/journal/expect",
                               {{"since", begin}, {"kinds", {"fault"}}, {"expect", faults}})["ok"],
            true);
  std::istringstream lines(
      Get(bench_.control_port(), "/journal?kinds=command&since=" + std::to_string(begin)).body);
  std::vector<json> scripts;
  for (std::string line; std::getline(lines, line);) {
    json entry = json::parse(line);
    if (entry["status"] != 0) {
      scripts.push_back(entry);
    }
  }
  ASSERT_EQ(scripts.size(), 2U);
  EXPECT_EQ(scripts[0]["status"], 3);
  EXPECT_EQ(scripts[1]["status"], 127);
}

TEST_F(ControlFaultsTest, AResetEndsAllRulesAndARestoreLeavesThem) {
  bench_.Ask(Put(bench_.control_port(), "/snapshots/s", ""));
  Add({{"action", "store-locked"}});
  Add({{"action", "store-full"}});
  // The bench itself is not met.
  EXPECT_EQ(Put(bench_.control_port(), "/store/sys/friendlyname", R"({"text":"Den"})").status, 200);
  EXPECT_EQ(Post(bench_.control_port(), "/snapshots/s/restore", "").status, 200);
  EXPECT_EQ(Verify(2), "xx");
  EXPECT_EQ(bench_.GetControl("/faults")["faults"].size(), 2U);
  EXPECT_EQ(Post(bench_.control_port(), "/reset", "").status, 200);
  EXPECT_EQ(bench_.GetControl("/faults")["faults"], json::array());
  EXPECT_EQ(Verify(2), "--");
  Add({{"action", "store-locked"}});
  EXPECT_EQ(bench_.Ask(Delete(bench_.control_port(), "/faults"))["deleted"], 1);
  EXPECT_EQ(Verify(), 200);
}

TEST_F(ControlFaultsTest, ThereIsRoomForAHundredAndThoseThatHaveEndedMakeRoom) {
  const int ended = Add({{"action", "store-locked"}, {"count", 1}});
  Verify();
  for (int i = 1; i < 100; ++i) {
    Add({{"action", "reset"}, {"match", {{"path", "/none"}}}});
  }
  Add({{"action", "reset"}, {"match", {{"path", "/none"}}}});
  EXPECT_EQ(Get(bench_.control_port(), "/faults/" + std::to_string(ended)).status, 404);
  const HttpResponse full = Post(bench_.control_port(), "/faults", R"({"action":"reset"})");
  EXPECT_EQ(full.status, 400);
  EXPECT_THAT(full.body, HasSubstr("there are 100 rules; delete one first"));
}

// An answer that is kept back keeps neither others nor the end of the host waiting.
TEST_F(ControlFaultsTest, ALateAnswerKeepsNothingElse) {
  const int rule = Add({{"action", "delay"}, {"ms", 60000}, {"match", {{"path", "/vars/*"}}}});
  Connection late(bench_.port());
  ASSERT_TRUE(late.Send("GET /vars/rss_DeviceName HTTP/1.1\r\nHost: router\r\n\r\n"));
  EXPECT_TRUE(WaitFor([this, rule] { return Rule(rule)["hits"] == 1; }));
  EXPECT_EQ(Get(bench_.port(), "/device").status, 200);
  EXPECT_EQ(Verify(), 200);
  EXPECT_EQ(bench_.host().End(SIGTERM), 0);
  EXPECT_EQ(late.ReadToEnd(), "");
}

TEST_F(ControlFaultsTest, AnAnswerIsCutAtItsByteAndAStreamToo) {
  Add({{"action", "cut"}, {"bytes", 100}, {"count", 2}});
  Connection answer(bench_.port());
  ASSERT_TRUE(answer.Send("GET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
  const std::string cut = answer.ReadToEnd();
  EXPECT_EQ(cut.size(), 100U);
  EXPECT_EQ(cut.find("HTTP/1.1 200 OK\r\n"), 0U);

  Connection stream(bench_.port());
  ASSERT_TRUE(stream.Send("GET /events HTTP/1.1\r\nHost: router\r\n\r\n"));
  EXPECT_EQ(stream.BeginChunks().status, 200);
  size_t taken = stream.ReadChunk()->size();
  Post(bench_.port(), "/settings", With(FactoryDocument(), "DeviceName", "Attic"));
  while (const std::optional<std::string> chunk = stream.ReadChunk()) {
    taken += chunk->size();
  }
  EXPECT_EQ(taken, 100U);

  // What drips comes whole, and the connection ends with it.
  Add({{"action", "drip"}, {"bytes_per_second", 4000}, {"count", 1}});
  Connection slow(bench_.port());
  ASSERT_TRUE(slow.Send("GET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
  const std::string all = slow.ReadToEnd();
  EXPECT_THAT(all, HasSubstr("Connection: close\r\n"));
  EXPECT_THAT(all, testing::EndsWith("\n}\n"));
}

// The clock is wanted to go on by a client whose request waits for the library, which waits within
// a command.
TEST_F(ControlFaultsTest, ACommandThatHangsGoesByTheClockAndAnEarlierEndIsItsRemoval) {
  const json hang = {{"action", "command-hangs"},
                     {"match", {{"command", "*device_resync.sh*"}}},
                     {"seconds", 100}};
  Add(hang);
  const json begin = bench_.GetControl("/clock");
  Post(bench_.port(), "/settings", With(FactoryDocument(), "DeviceName", "Attic"));
  EXPECT_TRUE(WaitFor([this] { return bench_.GetControl("/faults")["faults"][0]["hits"] == 1; }));
  EXPECT_EQ(bench_.Device()["state"], "busy");
  EXPECT_EQ(bench_.Device()["lastApply"]["outcome"], "applied");
  bench_.Advance(100);
  EXPECT_EQ(bench_.GetControl("/clock")["uptime"], begin["uptime"].get<long>() + 100);
  EXPECT_EQ(bench_.Device()["lastApply"]["outcome"], "in-force");

  bench_.Ask(Delete(bench_.control_port(), "/faults"));
  const int second = Add(hang);
  Post(bench_.port(), "/settings", With(FactoryDocument(), "DeviceName", "Den"));
  EXPECT_TRUE(WaitFor([this] { return bench_.GetControl("/faults")["faults"][0]["hits"] == 1; }));
  bench_.Ask(Delete(bench_.control_port(), "/faults/" + std::to_string(second)));
  EXPECT_TRUE(WaitForTurn(bench_.port()));
  EXPECT_EQ(bench_.Device()["lastApply"]["outcome"], "in-force");
}

}  // namespace
