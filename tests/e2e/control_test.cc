// The control port: where it listens, whom it serves, and that the router's port is as without it.
#include "control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "documents.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// What differs from run to run.
std::string WithoutNumbers(std::string text) {
  for (const auto& [pattern, shown] : {std::pair{"\"(uptime|secondsLeft)\": [0-9]+", "\"$1\": N"},
                                       std::pair{"\"(id|bootId)\": \"[0-9a-f]+\"", "\"$1\": N"},
                                       std::pair{"(Date|Kio-Apply-Id): [^\r]*", "$1: N"}}) {
    text = std::regex_replace(text, std::regex(pattern), shown);
  }
  return text;
}

// What a router answers to an app's session, and what it says of it.
std::string Session(HostProcess* host) {
  const std::string document = With(FactoryDocument(), "DeviceName", "Attic");
  std::string session;
  const auto add = [&session](const HttpResponse& answer) {
    session += answer.head + "\r\n" + answer.body;
  };
  for (const char* url : {"/", "/device", "/result", "/vars?values=1", "/backup", "/clock"}) {
    add(Get(host->port(), url));
  }
  add(Post(host->port(), "/settings?dry-run=1", document));
  add(Post(host->port(), "/settings?confirm-within=60", document));
  EXPECT_TRUE(WaitForTurn(host->port()));
  add(Get(host->port(), "/device"));
  add(Delete(host->port(), "/settings/confirm"));
  EXPECT_TRUE(WaitForTurn(host->port()));
  add(Post(host->port(), "/settings", "<root></root>"));
  add(Put(host->port(), "/vars/rss_DeviceName", "Den"));
  add(Post(host->port(), "/vars", "rss_DeviceName=Cellar&rss_Act_ApplyAllRssVars=1"));
  add(Post(host->port(), "/firmware/9", ""));
  add(Get(host->port(), "/device"));
  EXPECT_EQ(host->End(SIGTERM), 0);
  const std::string output = host->Output();
  return WithoutNumbers(session) + host->Dump() + output.substr(output.find("/\n") + 2);
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

TEST(ControlPortTest, TheRouterAnswersAsWithoutIt) {
  HostProcess plain;
  ASSERT_TRUE(plain.Start());
  const std::string without = Session(&plain);
  HostProcess controlled;
  ASSERT_TRUE(controlled.Start({"--control", "0"}));
  EXPECT_NE(controlled.control_port(), 0);
  // Line by line: a difference is to be seen.
  EXPECT_EQ(LinesOf(Session(&controlled)), LinesOf(without));
  EXPECT_THAT(without, HasSubstr("the settings went back"));
  EXPECT_THAT(without, HasSubstr("action CfgSaveToFlash"));
}

TEST(ControlPortTest, WithoutTheOptionThereIsNone) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  EXPECT_THAT(host.Output(), Not(HasSubstr("control")));
  EXPECT_EQ(Get(host.port(), "/clock").status, 404);
  EXPECT_EQ(host.control_port(), 0);
}

TEST(ControlPortTest, NoLoginIsNeededAndTheDescriptionNamesEveryResource) {
  Bench bench;
  ASSERT_TRUE(bench.StartClosed());
  const nlohmann::json index = bench.GetControl("/");
  const nlohmann::json described = bench.GetControl("/openapi.json");
  ASSERT_GE(index["resources"].size(), 3U);
  EXPECT_EQ(index["resources"].size(), described["paths"].size());
  for (const auto& resource : index["resources"]) {
    EXPECT_TRUE(described["paths"].contains(resource["path"])) << resource;
    const HttpResponse answer =
        Request(bench.control_port(), "PATCH " + resource["path"].get<std::string>() +
                                          " HTTP/1.1\r\nHost: router\r\n\r\n");
    EXPECT_EQ(answer.status, 405) << resource;
  }
  EXPECT_EQ(Get(bench.control_port(), "/device").status, 404);
}

TEST(ControlPortTest, WebPagesStayOut) {
  Bench bench;
  ASSERT_TRUE(bench.Start());
  const auto status = [&bench](const std::string& headers) {
    return Request(bench.control_port(), "POST /clock HTTP/1.1\r\n" + headers +
                                             "Content-Length: 13\r\n\r\n{\"advance\":1}")
        .status;
  };
  EXPECT_EQ(status("Host: rebound.example\r\n"), 421);
  EXPECT_EQ(status("Host: localhost\r\nOrigin: http://page.example\r\n"), 403);
  EXPECT_EQ(status("Host: localhost\r\nContent-Type: multipart/form-data\r\n"), 415);
  EXPECT_EQ(status("Host: localhost\r\nContent-Type: application/json\r\n"), 200);
}

TEST(ControlPortTest, ItListensOnLoopbackUnlessAnywhereIsAskedFor) {
  for (const char* address : {"0.0.0.0:0", "192.0.2.1:0", "[::]:0", "example:0"}) {
    const CommandResult refused = RunKiohost({"--control", address});
    EXPECT_EQ(refused.exit_code, 2) << address;
    EXPECT_THAT(refused.errors, HasSubstr("--control-anywhere")) << address;
  }
  for (const std::vector<std::string>& words : {std::vector<std::string>{"--control", "x"},
                                                {"--control", ":0"},
                                                {"--control", "70000"},
                                                {"--control-anywhere"},
                                                {"--clock=manual"},
                                                {"--control", "0", "--clock=real"}}) {
    EXPECT_EQ(RunKiohost(words).exit_code, 2) << words.front();
  }
  HostProcess host;
  ASSERT_TRUE(host.Start({"--control", "0.0.0.0:0", "--control-anywhere"}));
  EXPECT_THAT(host.Errors(), HasSubstr("WARNING: --control-anywhere"));
  EXPECT_THAT(host.Output(), HasSubstr("control port on http://0.0.0.0:"));
}

TEST(ControlPortTest, APortThatIsTakenEndsTheHost) {
  Bench bench;
  ASSERT_TRUE(bench.Start());
  const TempDir dir;
  const std::string scripts = KIO_HOST_DIR "/scripts";
  const CommandResult second =
      RunKiohost({"--store", dir.File("store.db"), "--temp-dir", dir.path(), "--script-dir",
                  scripts, "--port", "0", "--control", std::to_string(bench.control_port())});
  EXPECT_EQ(second.exit_code, 6);
  EXPECT_THAT(second.errors, HasSubstr("cannot listen on 127.0.0.1:"));
}

TEST(ControlPortTest, ABadBodySaysWhatIsWrongAndChangesNothing) {
  Bench bench;
  ASSERT_TRUE(bench.Start());
  const nlohmann::json before = bench.GetControl("/clock");
  for (const auto& [body, fault] : {
           std::pair<std::string, std::string>{"", "the JSON object is missing"},
           {"{", "no JSON object"},
           {"[1]", "no JSON object"},
           {R"({"advance":-1})", "\"advance\" takes a number from 0 on"},
           {R"({"advance":"1"})", "\"advance\" takes a number from 0 on"},
           {R"({"advance":1e30})", "\"advance\" takes at most"},
           {R"({"mode":"fast"})", "\"mode\" takes"},
           {R"({"mode":"real","rate":2})", "stands without"},
           {R"({"rate":0})", "\"rate\" takes"},
           {R"({"uptime":1.5})", "\"uptime\" takes a whole number"},
           {R"({"uptime":9999999999})", "\"uptime\" takes at most"},
           {R"({"advance":1,"time":2})", "there is no member \"time\""},
       }) {
    const HttpResponse answer = Post(bench.control_port(), "/clock", body);
    EXPECT_EQ(answer.status, 400) << body;
    EXPECT_THAT(answer.body, HasSubstr(fault)) << body;
  }
  EXPECT_EQ(bench.GetControl("/clock"), before);
}

}  // namespace
