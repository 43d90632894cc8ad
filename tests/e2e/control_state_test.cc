// The state of a router on the control port: nodes, the record, snapshots and the reset.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "control.h"
#include "documents.h"
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
