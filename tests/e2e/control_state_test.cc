// The state of a router on the control port: nodes, the record, snapshots and the reset.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>

#include "app_key.h"
#include "control.h"
#include "documents.h"
#include "firmware_server.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using nlohmann::json;
using ::testing::HasSubstr;

class ControlStateTest : public ::testing::Test {
 protected:
  void Apply(const std::string& name, const std::string& query = "") const {
    EXPECT_EQ(Post(bench_.port(), "/settings" + query, With(FactoryDocument(), "DeviceName", name))
                  .status,
              200);
    EXPECT_TRUE(WaitForTurn(bench_.port()));
  }
  std::string Name() const { return Get(bench_.port(), "/vars/rss_DeviceName").body; }
  int Control(const std::string& method, const std::string& url,
              const std::string& body = "") const {
    return Request(bench_.control_port(), BodyRequest(method, url, body)).status;
  }
  std::string Nodes() const { return Get(bench_.control_port(), "/store").body; }

  Bench bench_;
};

TEST_F(ControlStateTest, NodesAreReadWrittenAndDeleted) {
  ASSERT_TRUE(bench_.Start());
  EXPECT_EQ(Name(), "Home router");
  EXPECT_EQ(bench_.Ask(Put(bench_.control_port(), "/store/sys/friendlyname", R"({"text":"Den"})")),
            (json{{"path", "/sys/friendlyname"}, {"text", "Den"}}));
  EXPECT_EQ(Name(), "Den");
  EXPECT_EQ(bench_.GetControl("/store/sys/friendlyname")["text"], "Den");
  EXPECT_EQ(bench_.GetControl("/store?under=/sys/user:1")["nodes"].size(), 2U);
  EXPECT_EQ(bench_.Ask(Delete(bench_.control_port(), "/store/sys/user:1"))["deleted"], 2);
  EXPECT_EQ(bench_.GetControl("/store?under=/sys/user:1")["nodes"], json::array());
  EXPECT_EQ(Control("GET", "/store/sys/user:1/password"), 404);
  const std::string before = Nodes();
  for (const char* body :
       {"", "{}", R"({"text":1})", R"({"text":"a\u0000b"})", R"({"other":"x"})"}) {
    EXPECT_EQ(Control("PUT", "/store/sys/friendlyname", body), 400) << body;
  }
  EXPECT_EQ(
      Control("PUT", "/store/sys/friendlyname", json{{"text", std::string(4096, 'x')}}.dump()),
      400);
  EXPECT_EQ(Control("PUT", "/store/sys//x", R"({"text":"x"})"), 400);
  EXPECT_EQ(Control("DELETE", "/store/sys:99999"), 400);
  EXPECT_EQ(Control("GET", "/store?under=sys"), 400);
  EXPECT_EQ(Nodes(), before);
}

TEST_F(ControlStateTest, TheRecordHoldsWhatADocumentAskedFor) {
  ASSERT_TRUE(bench_.Start());
  Apply("Attic");
  const json record = bench_.GetControl("/record");
  EXPECT_EQ(record["device"]["deviceName"], "Attic");
  EXPECT_EQ(record["device"]["devicePwd"], "change-me-soon");
  EXPECT_EQ(record["upLink"]["connType"], "DHCP");
  EXPECT_EQ(record["wlan"]["5"]["channel"], "36");
  EXPECT_EQ(record["wlan"]["5"]["acRule"].size(), 1U);
  EXPECT_EQ(record["exchange"]["exeWaitSec"], 5);
  EXPECT_EQ(record["directories"]["tmpPath"], bench_.host().dir().path());
}

TEST_F(ControlStateTest, ASnapshotBringsEverythingBack) {
  ASSERT_TRUE(bench_.StartClosed());
  bench_.SetUptime(1000);
  EXPECT_EQ(Control("PUT", "/snapshots/factory"), 200);
  const std::string factory = Nodes();
  // Another name, an event, and a change that waits for its confirmation.
  EXPECT_EQ(Control("PUT", "/store/sys/friendlyname", R"({"text":"Den"})"), 200);
  EXPECT_EQ(Control("POST", "/snapshots/factory/restore"), 200);
  EXPECT_EQ(Nodes(), factory);
  EXPECT_EQ(bench_.GetControl("/snapshots")["snapshots"].size(), 1U);
  EXPECT_EQ(bench_.GetControl("/snapshots/factory")["uptime"], 1000);
}

// Who is logged in, until when, and who has guessed.
TEST_F(ControlStateTest, ASnapshotHasTheLoginsAndTheWrongKeys) {
  ASSERT_TRUE(bench_.StartClosed());
  bench_.SetUptime(1000);
  const auto log_in = [this](const std::string& key) {
    return Post(bench_.port(), "/login", "BKey=" + key);
  };
  constexpr char kOwn[] = "127.0.0.1";
  ASSERT_EQ(log_in(AppKey(50, kOwn)).status, 200);
  bench_.Advance(100);
  EXPECT_EQ(bench_.Ask(Put(bench_.control_port(), "/snapshots/in", ""))["clients"], 1);
  EXPECT_EQ(Post(bench_.port(), "/logout", "").status, 200);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(log_in("00000000").status, 401);
  }
  const std::string key = AppKey(55, kOwn);
  EXPECT_EQ(log_in(key).Header("Retry-After"), "60");
  bench_.Advance(20);
  EXPECT_EQ(bench_.Ask(Put(bench_.control_port(), "/snapshots/blocked", ""))["clients"], 0);

  EXPECT_EQ(Control("POST", "/snapshots/in/restore"), 200);
  EXPECT_EQ(Get(bench_.port(), "/vars/rss_DeviceName").status, 200);
  EXPECT_EQ(log_in("00000000").status, 401);
  EXPECT_EQ(log_in(key).status, 200);
  // The restored login has 200 seconds left, unless a request prolongs it.
  EXPECT_EQ(Control("POST", "/snapshots/in/restore"), 200);
  bench_.Advance(199);
  EXPECT_EQ(bench_.Ask(Put(bench_.control_port(), "/snapshots/still", ""))["clients"], 1);
  bench_.Advance(61);  // with the look that comes once in 60 seconds
  EXPECT_EQ(Get(bench_.port(), "/vars/rss_DeviceName").status, 401);

  EXPECT_EQ(Control("POST", "/snapshots/blocked/restore"), 200);
  EXPECT_EQ(Get(bench_.port(), "/vars/rss_DeviceName").status, 401);
  EXPECT_EQ(log_in(key).Header("Retry-After"), "40");
  bench_.Advance(40);
  EXPECT_EQ(log_in(AppKey(58, kOwn)).status, 200);
}

// Nothing but its beginning brings the library to a step.
TEST_F(ControlStateTest, ASnapshotHasTheStepOfAnUpgrade) {
  FirmwareServer server;
  server.Put("/DR2400/DR2400.xml", ListWith("/fw/image.bin", "/fw/notes.xml"));
  server.Put("/fw/notes.xml", "<notes/>\n");
  ASSERT_TRUE(server.Start(0));
  setenv("http_proxy", server.Proxy().c_str(), 1);
  const bool started = bench_.Start();
  unsetenv("http_proxy");
  ASSERT_TRUE(started);
  const std::string partition = bench_.host().dir().File("firmware.partition");
  WriteFile(partition, "old");
  EXPECT_EQ(Control("PUT", "/snapshots/idle"), 200);
  EXPECT_THAT(Post(bench_.port(), "/firmware/1", "").body, HasSubstr("<result>2</result>"));
  const std::string found = Nodes();
  EXPECT_EQ(Control("PUT", "/snapshots/found"), 200);
  // At the same step the rest is brought back.
  WriteFile(partition, "new");
  EXPECT_EQ(Control("PUT", "/store/sys/friendlyname", R"({"text":"Den"})"), 200);
  EXPECT_EQ(Control("POST", "/snapshots/found/restore"), 200);
  EXPECT_EQ(Nodes(), found);
  EXPECT_EQ(ReadFile(partition), "old");
  EXPECT_THAT(Get(bench_.port(), "/firmware").body, HasSubstr("<result>2</result>"));

  EXPECT_EQ(Control("POST", "/snapshots/idle/restore"), 200);
  EXPECT_EQ(Get(bench_.port(), "/firmware").status, 404);
  const std::string before = Nodes();
  const HttpResponse refused =
      Request(bench_.control_port(), BodyRequest("POST", "/snapshots/found/restore", ""));
  EXPECT_EQ(refused.status, 409);
  EXPECT_THAT(refused.body, HasSubstr("of a firmware upgrade"));
  EXPECT_EQ(Nodes(), before);
  EXPECT_THAT(Post(bench_.port(), "/firmware/1", "").body, HasSubstr("<result>2</result>"));
  EXPECT_EQ(Control("POST", "/snapshots/found/restore"), 200);
}

TEST_F(ControlStateTest, ATimeThatRunsHasAsMuchLeftAsInTheSnapshot) {
  ASSERT_TRUE(bench_.Start());
  bench_.SetUptime(1000);
  const json factory = bench_.Device();
  Apply("Attic", "?confirm-within=60");
  bench_.Advance(20);
  const json waiting = bench_.Device();
  const json record = bench_.GetControl("/record");
  EXPECT_EQ(waiting["pendingConfirm"]["secondsLeft"], 40);
  EXPECT_EQ(Control("PUT", "/snapshots/waiting"), 200);
  bench_.Advance(500);
  EXPECT_EQ(Name(), "Home router");
  EXPECT_EQ(bench_.Device()["events"].size(), 1U);
  Apply("Cellar");
  EXPECT_EQ(Control("POST", "/snapshots/waiting/restore"), 200);
  EXPECT_EQ(bench_.Device(), waiting);
  EXPECT_EQ(bench_.GetControl("/record"), record);
  EXPECT_EQ(Name(), "Attic");
  bench_.Advance(39);
  EXPECT_EQ(Name(), "Attic");
  bench_.Advance(1);
  EXPECT_EQ(Name(), "Home router");
  EXPECT_EQ(bench_.Device()["events"][0]["uptime"], 1060);
  EXPECT_EQ(Control("DELETE", "/snapshots/waiting"), 200);
  EXPECT_EQ(Control("DELETE", "/snapshots/waiting"), 404);
  EXPECT_EQ(Control("POST", "/snapshots/waiting/restore"), 404);
  EXPECT_EQ(Control("PUT", "/snapshots/a%20b"), 400);
}

TEST_F(ControlStateTest, ARouterAtWorkGivesNoSnapshotAndTakesNone) {
  ASSERT_TRUE(bench_.Start({"--real-waits"}));
  EXPECT_EQ(Control("PUT", "/snapshots/ready"), 200);
  Post(bench_.port(), "/settings", With(FactoryDocument(), "DeviceName", "Attic"));
  for (const auto& [method, url] :
       {std::pair{"PUT", "/snapshots/away"}, std::pair{"POST", "/snapshots/ready/restore"},
        std::pair{"POST", "/reset"}}) {
    const HttpResponse answer = Request(bench_.control_port(), BodyRequest(method, url, ""));
    EXPECT_EQ(answer.status, 409) << url;
    EXPECT_THAT(answer.body, HasSubstr("the router is at work or away")) << url;
  }
  bench_.Advance(5);
  EXPECT_EQ(Name(), "Attic");
  EXPECT_EQ(Control("POST", "/snapshots/ready/restore"), 200);
  EXPECT_EQ(Name(), "Home router");
}

TEST_F(ControlStateTest, AResetLeadsToTheStartWithAProfile) {
  ASSERT_TRUE(bench_.Start());
  const std::string factory = Nodes();
  const json record = bench_.GetControl("/record");
  Apply("Attic");
  EXPECT_EQ(Control("POST", "/reset"), 200);
  EXPECT_EQ(Nodes(), factory);
  EXPECT_EQ(bench_.GetControl("/record"), record);
  EXPECT_EQ(bench_.Device()["lastApply"], nullptr);
  EXPECT_EQ(Get(bench_.port(), "/result").status, 404);
  EXPECT_EQ(Control("POST", "/reset", R"({"profile":"single-band-router"})"), 200);
  EXPECT_EQ(bench_.GetControl("/store?under=/lan/wireless5:1")["nodes"], json::array());
  Apply("Den");
  const std::string before = Nodes();
  for (const char* body :
       {R"({"profile":"no-such"})", R"({"profile":"../x"})", R"({"profile":1})"}) {
    EXPECT_EQ(Control("POST", "/reset", body), 400) << body;
  }
  EXPECT_EQ(Nodes(), before);
}

}  // namespace
