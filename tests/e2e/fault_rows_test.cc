// What an app is told under each fault: the rows of the table in docs/control.md, one by one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "control.h"
#include "documents.h"
#include "firmware_server.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using nlohmann::json;

// What the page says.
struct Row {
  std::string status;   // "none" without an answer
  std::string told;     // in the answer
  std::string store;    // "before" or "after"
  std::string outcome;  // of lastApply, or "-"
};

std::string Trimmed(std::string text) {
  std::erase(text, '`');
  const size_t begin = text.find_first_not_of(' ');
  const size_t end = text.find_last_not_of(' ');
  return begin == std::string::npos ? "" : text.substr(begin, end - begin + 1);
}

std::map<std::string, Row> RowsOfThePage() {
  std::istringstream page(ReadFile(KIO_DOCS_DIR "/control.md"));
  std::map<std::string, Row> rows;
  bool in_table = false;
  for (std::string line; std::getline(page, line);) {
    if (line.find("| What meets the app |") == 0) {
      in_table = true;
      std::getline(page, line);
      continue;
    }
    in_table = in_table && line.find('|') == 0;
    if (!in_table) {
      continue;
    }
    std::istringstream cells(line.substr(1));
    std::vector<std::string> texts;
    for (std::string cell; std::getline(cells, cell, '|');) {
      texts.push_back(Trimmed(cell));
    }
    EXPECT_GE(texts.size(), 5U) << line;
    texts.resize(5);
    rows[texts[0]] = {texts[1], texts[2], texts[3], texts[4]};
  }
  return rows;
}

std::string AtticDocument() { return With(FactoryDocument(), "DeviceName", "Attic"); }

// The text of a row as a pattern: FILE stands for any path.
std::regex PatternOf(const std::string& told) {
  std::string pattern = std::regex_replace(told, std::regex(R"([.()\[\]*+?^$\\{}|])"), R"(\$&)");
  return std::regex(std::regex_replace(pattern, std::regex("FILE"), "[^ ]*"));
}

class FaultRowsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    rows_ = RowsOfThePage();
    ASSERT_TRUE(server_.Start(0));
    setenv("http_proxy", server_.Proxy().c_str(), 1);
    // A command of its own: others on this machine may fetch firmware as well, and the list of
    // processes shows them.
    std::string agent = "f" + std::to_string(getpid()) + "0000000";
    agent.resize(8);
    bench_.host().UseProfile(
        ProfileWith({"/lan/wireless2.4:1/channel = 0", "/fwupgradeinfo/urlgetcmd = wget -U" +
                                                           agent + " -q -O \"$savefn\" \"$url\""}));
    ASSERT_TRUE(bench_.Start());
    unsetenv("http_proxy");
    before_ = Nodes();
    EXPECT_EQ(SendSettings().status, 200);
    EXPECT_TRUE(WaitForTurn(bench_.port()));
    after_ = Nodes();
    ASSERT_NE(before_, after_);
  }

  // The nodes of the store without those by which a radio tells its channel and a search what it
  // has found.
  std::string Nodes() const {
    std::string nodes;
    const json store = bench_.GetControl("/store");
    for (const json& node : store["nodes"]) {
      const std::string path = node["path"];
      if (path.find("/channelusing") == std::string::npos &&
          path.find("/fwupgradeinfo/newfw/") == std::string::npos) {
        nodes += node.dump() + "\n";
      }
    }
    return nodes;
  }
  HttpResponse SendSettings() const { return Post(bench_.port(), "/settings", AtticDocument()); }

  // Runs a request under a rule, from factory settings, and compares with the row.
  void Check(const std::string& name, const json& rule,
             const std::function<HttpResponse()>& request) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(rows_.contains(name)) << "the page has no such row";
    const Row& row = rows_[name];
    ASSERT_EQ(Post(bench_.control_port(), "/reset", "").status, 200);
    ASSERT_FALSE(bench_.PostControl("/faults", rule).is_null());
    const HttpResponse answer = request();
    EXPECT_EQ(answer.status == 0 ? "none" : std::to_string(answer.status), row.status);
    EXPECT_TRUE(std::regex_search(answer.body, PatternOf(row.told))) << answer.body;
    EXPECT_TRUE(WaitForTurn(bench_.port()));
    EXPECT_EQ(bench_.GetControl("/faults")["faults"][0]["hits"], 1);
    EXPECT_EQ(Nodes(), row.store.find("before") == 0 ? before_ : after_);
    EXPECT_THAT(row.store, testing::AnyOf("before", "after", "after, but for the radio"));
    const json apply = bench_.Device()["lastApply"];
    EXPECT_EQ(apply.is_null() ? "-" : apply["outcome"].get<std::string>(), row.outcome);
    // The host goes on.
    bench_.Ask(Delete(bench_.control_port(), "/faults"));
    EXPECT_EQ(SendSettings().status, 200);
    EXPECT_TRUE(WaitForTurn(bench_.port()));
    EXPECT_EQ(Nodes(), after_);
  }
  void Check(const std::string& name, const json& rule) {
    Check(name, rule, [this] { return SendSettings(); });
  }

  HttpResponse Step(char action) const {
    return Post(bench_.port(), std::string("/firmware/") + action, "");
  }
  HttpResponse Search() const {
    Step('0');
    return WithEvents(Step('1'));
  }
  // Goes all the way, with an image that the rule spoils.
  HttpResponse Upgrade() const {
    Step('0');
    Step('1');
    Step('2');
    EXPECT_TRUE(WaitFor([this] { return Step('9').body.find("<result>3<") == std::string::npos; }));
    const HttpResponse answer = Step('4');
    EXPECT_TRUE(WaitForTurn(bench_.port()));
    return WithEvents(answer);
  }
  // An answer, and behind it the texts of the events.
  HttpResponse WithEvents(HttpResponse answer) const {
    const json device = bench_.Device();
    for (const json& event : device["events"]) {
      answer.body += event["text"].get<std::string>() + "\n";
    }
    return answer;
  }

  FirmwareServer server_;
  std::map<std::string, Row> rows_;
  Bench bench_;
  std::string before_;
  std::string after_;
};

json ScriptRule(const char* action) {
  return {{"action", action}, {"match", {{"command", "*/scripts/*"}}}, {"count", 1}};
}

json StoreRule(const char* action, const char* access) {
  return {{"action", action},
          {"match", {{"path", "/sys/friendlyname"}, {"access", access}}},
          {"count", 1}};
}

TEST_F(FaultRowsTest, OfTheStore) {
  Check("store-fails of a read", StoreRule("store-fails", "read"));
  Check("store-fails of a write", StoreRule("store-fails", "write"));
  json slow = StoreRule("store-slow", "write");
  slow["ms"] = 20;
  Check("store-slow", slow);
  Check("store-full", {{"action", "store-full"}, {"count", 1}});
  Check("store-locked", {{"action", "store-locked"}, {"count", 1}});
}

TEST_F(FaultRowsTest, OfCommands) {
  json fails = ScriptRule("command-fails");
  fails["status"] = 7;
  Check("command-fails of a script", fails);
  Check("command-missing of a script", ScriptRule("command-missing"));
  json hangs = ScriptRule("command-hangs");
  hangs["seconds"] = 30;
  Check("command-hangs of a script", hangs, [this] {
    HttpResponse answer = SendSettings();
    bench_.Advance(30);
    return answer;
  });
  Check("result-unwritable", {{"action", "result-unwritable"}, {"count", 1}});
}

TEST_F(FaultRowsTest, OfTheWire) {
  Check("delay", {{"action", "delay"}, {"ms", 20}, {"count", 1}});
  Check("drip", {{"action", "drip"}, {"bytes_per_second", 5000}, {"count", 1}});
  Check("cut", {{"action", "cut"}, {"bytes", 100}, {"count", 1}});
  Check("reset", {{"action", "reset"}, {"match", {{"method", "POST"}}}, {"count", 1}});
  Check("refuse", {{"action", "refuse"}, {"match", {{"from", "127.0.0.?"}}}, {"count", 1}});
  const json any = {{"path", "/sett*"}};
  Check("answer with 500", {{"action", "answer"}, {"status", 500}, {"match", any}, {"count", 1}});
  Check("answer with 503",
        {{"action", "answer"}, {"status", 503}, {"retry_after", 7}, {"count", 1}}, [this] {
          HttpResponse answer = SendSettings();
          EXPECT_EQ(answer.Header("Retry-After"), "7");
          return answer;
        });
}

TEST_F(FaultRowsTest, OfTheDevice) {
  server_.Put("/DR2400/DR2400.xml", ListWith("/fw/DR2400_FW1.0.8_0312.bin", "/fw/notes.xml"));
  server_.Put("/fw/DR2400_FW1.0.8_0312.bin", MakeImage(5000));
  server_.Put("/fw/notes.xml", "<notes>faster</notes>\n");
  const auto search = [this] { return Search(); };
  const auto upgrade = [this] { return Upgrade(); };
  const auto rule = [](const char* action, const char* download) {
    return json{{"action", action}, {"match", {{"download", download}}}, {"count", 1}};
  };
  Check("firmware-missing of the list", rule("firmware-missing", "list"), search);
  Check("firmware-missing of the image", rule("firmware-missing", "image"), upgrade);
  json stops = rule("firmware-stops", "list");
  stops["bytes"] = 50;
  Check("firmware-stops of the list", stops, search);
  stops["match"]["download"] = "image";
  stops["bytes"] = 1000;
  Check("firmware-stops of the image", stops, upgrade);
  Check("firmware-changed", {{"action", "firmware-changed"}, {"count", 1}}, upgrade);
  Check("firmware-changed in its head", {{"action", "firmware-changed"}, {"at", 40}, {"count", 1}},
        upgrade);
  Check("firmware-list",
        {{"action", "firmware-list"}, {"text", "<html>Log in</html>"}, {"count", 1}}, search);
  Check("radio-moves", {{"action", "radio-moves"}, {"radio", "2.4"}, {"channel", "11"}}, [this] {
    bench_.Advance(1);
    return WithEvents(Get(bench_.port(), "/device"));
  });
  Check("radio-gone", {{"action", "radio-gone"}, {"radio", "5"}}, [this] {
    return Post(bench_.port(), "/settings", WithIn(AtticDocument(), "Wireless5", "Channel", "44"));
  });
}

// After the power has gone the host is started again, and the store is compared.
TEST_F(FaultRowsTest, OfThePower) {
  for (const auto& [name, match] :
       {std::pair<std::string, json>{"power-off at a write", {{"path", "/sys/factorydefault"}}},
        {"power-off at a script", {{"command", "*/scripts/*"}}}}) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(rows_.contains(name)) << "the page has no such row";
    const Row& row = rows_[name];
    ASSERT_EQ(Post(bench_.control_port(), "/reset", "").status, 200);
    bench_.PostControl("/faults", {{"action", "power-off"}, {"match", match}});
    const HttpResponse answer = SendSettings();
    EXPECT_EQ(answer.status == 0 ? "none" : std::to_string(answer.status), row.status);
    EXPECT_TRUE(std::regex_search(answer.body, PatternOf(row.told))) << answer.body;
    EXPECT_EQ(bench_.host().WaitForEnd(), 128 + SIGKILL);
    ASSERT_TRUE(bench_.Start());
    EXPECT_EQ(Nodes(), row.store == "before" ? before_ : after_);
    const json apply = bench_.Device()["lastApply"];
    EXPECT_EQ(apply.is_null() ? "-" : apply["outcome"].get<std::string>(), row.outcome);
    EXPECT_EQ(SendSettings().status, 200);
    EXPECT_EQ(Nodes(), after_);
  }
}

// Each action has a row, and each row an action.
TEST(FaultPageTest, EachActionHasARow) {
  Bench bench;
  ASSERT_TRUE(bench.Start());
  const std::string told = Post(bench.control_port(), "/faults", "{}").body;
  std::set<std::string> actions;
  std::istringstream names(told.substr(told.find("one of ") + 7));
  for (std::string name; names >> name;) {
    actions.insert(name.substr(0, name.find(',')));
  }
  EXPECT_EQ(actions.size(), 21U);
  std::set<std::string> on_page;
  for (const auto& [name, row] : RowsOfThePage()) {
    on_page.insert(name.substr(0, name.find_first_of(" `")));
  }
  EXPECT_EQ(on_page, actions);
}

}  // namespace
