// The session of an app, from a script: each state of login, exchange, variables, confirmation and
// firmware, and each fault. The clock of the host stands still until the script moves it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "app_key.h"
#include "control.h"
#include "documents.h"
#include "firmware_server.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using nlohmann::json;
using ::testing::HasSubstr;

constexpr char kConfirmation[] = "/settings/confirm";
constexpr char kNewImage[] = "/fw/DR2400_FW1.0.8_0312.bin";

class AppSessionTest : public ::testing::Test {
 protected:
  void Start(const std::vector<std::string>& options = {}) {
    ASSERT_TRUE(server_.Start(0));
    server_.Put("/DR2400/DR2400.xml", ListWith(kNewImage, "/fw/notes.xml"));
    server_.Put(kNewImage, MakeImage(5000));
    server_.Put("/fw/notes.xml", "<notes>faster</notes>\n");
    setenv("http_proxy", server_.Proxy().c_str(), 1);
    // Others on this machine may fetch firmware as well, and the list of processes shows them.
    std::string agent = "s" + std::to_string(getpid()) + "0000000";
    agent.resize(8);
    bench_.host().UseProfile(
        ProfileWith({"/lan/wireless2.4:1/channel = 0", "/fwupgradeinfo/urlgetcmd = wget -U" +
                                                           agent + " -q -O \"$savefn\" \"$url\""}));
    ASSERT_TRUE(bench_.StartClosed(options));
    unsetenv("http_proxy");
    bench_.SetUptime(1000);
  }

  int Login(const std::string& password = "change-me-soon") const {
    constexpr long kSlotSeconds = 20;
    const long uptime = bench_.Device()["uptime"];
    return Post(bench_.port(), "/login",
                "kioAppKey=:" + AppKey(uptime / kSlotSeconds, "127.0.0.1", password))
        .status;
  }
  HttpResponse Do(const std::string& url, const std::string& body = "") const {
    return Post(bench_.port(), url, body);
  }
  HttpResponse Settings(const std::string& name, const std::string& query = "") const {
    return Do("/settings" + query, With(FactoryDocument(), "DeviceName", name));
  }
  // The name of the device, when the work before is done.
  std::string Name() const {
    EXPECT_TRUE(WaitForTurn(bench_.port()));
    return bench_.Device()["name"];
  }
  std::string Outcome() const {
    EXPECT_TRUE(WaitForTurn(bench_.port()));
    const json apply = bench_.Device()["lastApply"];
    return apply.is_null() ? "-" : apply["outcome"].get<std::string>();
  }
  std::string Firmware(char action) const {
    const std::string body = Do(std::string("/firmware/") + action).body;
    const size_t begin = body.find("<result>");
    return begin == std::string::npos ? body
                                      : body.substr(begin + 8, body.find("</result>") - begin - 8);
  }
  bool WaitForImage() const {
    return WaitFor([this] { return Firmware('9') == "4"; });
  }

  void LogIn() const;
  void Exchange() const;
  void Variables() const;
  void Confirm() const;
  void Upgrade();

  FirmwareServer server_;
  Bench bench_;
};

void AppSessionTest::LogIn() const {
  EXPECT_EQ(Get(bench_.port(), "/vars").status, 401);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(Login("wrong"), 401);
  }
  EXPECT_EQ(Login(), 429);
  bench_.Advance(60);
  EXPECT_EQ(Login(), 200);
  EXPECT_EQ(Get(bench_.port(), "/vars").status, 200);
  EXPECT_EQ(Do("/logout").status, 200);
  EXPECT_EQ(Get(bench_.port(), "/vars").status, 401);
  EXPECT_EQ(Login(), 200);
  bench_.Advance(420);
  EXPECT_EQ(Get(bench_.port(), "/vars").status, 401) << "lapsed";
  EXPECT_EQ(Login(), 200);
}

void AppSessionTest::Exchange() const {
  EXPECT_EQ(Get(bench_.port(), "/result").status, 404);
  EXPECT_EQ(Do("/settings", "no document").status, 400);
  EXPECT_THAT(Do("/settings", Without(FactoryDocument(), "RouterEnbl")).body,
              HasSubstr("<RssSetResult>2<"));
  EXPECT_EQ(Do("/settings", WithIn(FactoryDocument(), "Wireless2.4", "Channel", "99")).body,
            ResultDocument(3, "Device/Wireless2.4/Channel", 0));
  EXPECT_EQ(Settings("Attic", "?dry-run=1").status, 200);
  EXPECT_EQ(Outcome(), "-");
  const HttpResponse applied = Settings("Attic");
  EXPECT_THAT(applied.body, HasSubstr("<RssSetResult>0<"));
  EXPECT_EQ(Name(), "Attic");
  EXPECT_EQ(Outcome(), "in-force");
  EXPECT_EQ(Get(bench_.port(), "/result").body, applied.body);
}

void AppSessionTest::Variables() const {
  EXPECT_EQ(Get(bench_.port(), "/vars/rss_DeviceName").body, "Attic");
  EXPECT_EQ(Get(bench_.port(), "/vars/rss_None").status, 404);
  EXPECT_EQ(Put(bench_.port(), "/vars/rss_RouterEnbl", "7").status, 200);
  EXPECT_EQ(Do("/actions/ApplyAllRssVars").status, 422);
  EXPECT_EQ(Delete(bench_.port(), "/vars").status, 200);
  EXPECT_EQ(Put(bench_.port(), "/vars/rss_DeviceName", "Den").status, 200);
  EXPECT_EQ(Name(), "Attic") << "set, and not applied";
  EXPECT_EQ(Do("/actions/ApplyAllRssVars").status, 200);
  EXPECT_EQ(Name(), "Den");
  EXPECT_EQ(Outcome(), "applied");
  EXPECT_EQ(Do("/actions/CommitRssVars").status, 200);
  EXPECT_EQ(bench_.Device()["state"], "busy");
  bench_.Advance(2);
  EXPECT_EQ(bench_.Device()["state"], "ready");
  EXPECT_EQ(Outcome(), "in-force");
}

void AppSessionTest::Confirm() const {
  EXPECT_EQ(Do(kConfirmation).status, 404) << "nothing to be confirmed";
  Settings("Cellar", "?confirm-within=60");
  EXPECT_EQ(Name(), "Cellar");
  EXPECT_EQ(Settings("Other").status, 409);
  EXPECT_EQ(Do(kConfirmation).status, 403) << "the login is from before";
  EXPECT_EQ(Login(), 200);
  EXPECT_EQ(Do(kConfirmation).status, 200);
  Settings("Garage", "?confirm-within=60");
  EXPECT_EQ(Delete(bench_.port(), kConfirmation).status, 200);
  EXPECT_EQ(Name(), "Cellar");
  Settings("Garden", "?confirm-within=60");
  bench_.Advance(60);
  EXPECT_EQ(Name(), "Cellar");
  EXPECT_EQ(Outcome(), "rolled-back");
}

void AppSessionTest::Upgrade() {
  EXPECT_EQ(Get(bench_.port(), "/firmware").status, 404);
  EXPECT_EQ(Firmware('0'), "0");
  EXPECT_EQ(Firmware('4'), "0") << "no step from here";
  bench_.PostControl("/faults", {{"action", "firmware-list"}, {"text", "no list"}, {"count", 1}});
  EXPECT_EQ(Firmware('1'), "-1");
  EXPECT_EQ(Firmware('0'), "0");
  bench_.PostControl("/faults", {{"action", "firmware-list"},
                                 {"text", ListWith("/fw/DR2400_FW1.0.2_0101.bin", "/fw/notes.xml")},
                                 {"count", 1}});
  EXPECT_EQ(Firmware('1'), "1") << "none is newer";
  EXPECT_EQ(Firmware('0'), "0");
  EXPECT_EQ(Firmware('1'), "2");
  EXPECT_EQ(Firmware('2'), "3");
  EXPECT_TRUE(WaitForImage());
  EXPECT_EQ(Firmware('4'), "5");
  EXPECT_TRUE(WaitForTurn(bench_.port()));
  EXPECT_THAT(bench_.host().Output(), HasSubstr("event firmware written: DR2400_FW1.0.8"));
}

TEST_F(AppSessionTest, EachStateIsReached) {
  Start();
  LogIn();
  Exchange();
  Variables();
  Confirm();
  Upgrade();
}

TEST_F(AppSessionTest, ARouterIsReadyAwayAndBack) {
  Start({"--real-waits"});
  ASSERT_EQ(Login(), 200);
  EXPECT_EQ(bench_.Device()["state"], "ready");
  EXPECT_THAT(Settings("Attic").body, HasSubstr("<RssGetWaitSec>"));
  EXPECT_TRUE(bench_.host().WaitForOutput("away for "));
  EXPECT_FALSE(Connection(bench_.port()).connected());
  bench_.Advance(60);
  EXPECT_EQ(bench_.Device()["state"], "ready");
  EXPECT_EQ(bench_.Device()["lastApply"]["outcome"], "in-force");
}

// The app meets each fault once, and tries again what did not come about.
TEST_F(AppSessionTest, EachFaultIsMetAndTheAppGoesOn) {
  Start();
  const auto settings = [this] { Settings("Attic"); };
  const auto search = [this] {
    Firmware('0');
    Firmware('1');
  };
  const auto download = [this, &search] {
    search();
    Firmware('2');
    EXPECT_TRUE(WaitForImage());
  };
  const json once = {{"count", 1}};
  const json script = {{"match", {{"command", "*/scripts/*"}}}};
  struct Step {
    json rule;
    std::function<void()> act;
  };
  const Step steps[] = {
      {{{"action", "delay"}, {"ms", 5}}, settings},
      {{{"action", "drip"}, {"bytes_per_second", 9000}}, settings},
      {{{"action", "cut"}, {"bytes", 40}}, settings},
      {{{"action", "reset"}}, settings},
      {{{"action", "refuse"}}, settings},
      {{{"action", "answer"}, {"status", 503}}, settings},
      {{{"action", "store-fails"}}, settings},
      {{{"action", "store-slow"}, {"ms", 5}}, settings},
      {{{"action", "store-full"}}, settings},
      {{{"action", "store-locked"}}, settings},
      {{{"action", "command-fails"}}, settings},
      {{{"action", "command-hangs"}, {"seconds", 20}, {"match", script["match"]}},
       [this, &settings] {
         settings();
         bench_.Advance(20);
       }},
      {{{"action", "command-missing"}}, settings},
      {{{"action", "result-unwritable"}}, settings},
      {{{"action", "firmware-missing"}}, search},
      {{{"action", "firmware-stops"}, {"bytes", 9}}, search},
      {{{"action", "firmware-changed"}}, download},
      {{{"action", "firmware-list"}, {"text", ""}}, search},
      {{{"action", "radio-moves"}, {"radio", "2.4"}, {"channel", "11"}},
       [this] { bench_.Advance(1); }},
      {{{"action", "radio-gone"}, {"radio", "5"}}, settings},
      {{{"action", "power-off"}}, settings},
  };
  std::set<std::string> met;
  for (const Step& step : steps) {
    const std::string action = step.rule["action"];
    SCOPED_TRACE(action);
    ASSERT_EQ(Post(bench_.control_port(), "/reset", "").status, 200);
    ASSERT_EQ(Login(), 200);
    json rule = step.rule;
    const std::set<std::string> without_count = {"radio-moves", "radio-gone", "power-off"};
    if (!without_count.contains(action)) {
      rule.update(once);
    }
    const int id = bench_.PostControl("/faults", rule)["id"];
    step.act();
    if (action == "power-off") {
      EXPECT_EQ(bench_.host().WaitForEnd(), 128 + SIGKILL);
      ASSERT_TRUE(bench_.StartClosed());
      ASSERT_EQ(Login(), 200);
    } else {
      EXPECT_EQ(bench_.GetControl("/faults/" + std::to_string(id))["hits"], 1);
      bench_.Ask(Delete(bench_.control_port(), "/faults"));
    }
    met.insert(action);
    EXPECT_THAT(Settings("Attic").body, HasSubstr("<RssSetResult>0<"));
    EXPECT_EQ(Name(), "Attic");
  }
  EXPECT_EQ(met.size(), 21U);
}

}  // namespace
