// Refusals in two forms: a line of text, or problem details for who prefers them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "documents.h"
#include "host_clock.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using nlohmann::json;

struct RefusedRequest {
  std::string method;
  std::string url;
  std::string body;
  std::string header;  // a further one
  int status;
  std::string title;
  std::string line;
};

std::string RequestText(const RefusedRequest& request, const std::string& accept) {
  return request.method + " " + request.url + " HTTP/1.1\r\n" +
         (request.header.starts_with("Host") ? "" : "Host: router\r\n") +
         (request.header.empty() ? "" : request.header + "\r\n") +
         (accept.empty() ? "" : "Accept: " + accept + "\r\n") +
         "Content-Length: " + std::to_string(request.body.size()) + "\r\n\r\n" + request.body;
}

json Problem(const RefusedRequest& request) {
  return {{"type", "about:blank"},
          {"title", request.title},
          {"status", request.status},
          {"detail", request.line}};
}

void ExpectBothForms(int port, const RefusedRequest& request) {
  const std::string what = request.method + " " + request.url;
  for (const char* accept : {"", "*/*", "text/plain", "application/json, text/plain, */*"}) {
    const HttpResponse line = Request(port, RequestText(request, accept));
    EXPECT_EQ(line.status, request.status) << what;
    EXPECT_EQ(line.body, request.line + "\n") << what;
    EXPECT_EQ(line.Header("Content-Type"), "text/plain; charset=utf-8") << what;
  }
  for (const char* accept : {"application/problem+json", "application/json"}) {
    const HttpResponse problem = Request(port, RequestText(request, accept));
    EXPECT_EQ(problem.status, request.status) << what;
    EXPECT_EQ(problem.Header("Content-Type"), "application/problem+json") << what;
    EXPECT_EQ(json::parse(problem.body, nullptr, false), Problem(request)) << problem.body;
  }
}

TEST(ProblemTest, EachGateRefusesInBothForms) {
  HostProcess host;
  ASSERT_TRUE(host.StartClosed());
  const std::vector<RefusedRequest> requests = {
      {"GET", "/result", "", "", 401, "Unauthorized", "log in first: POST /login"},
      {"POST", "/login", "kioAppKey=1", "", 401, "Unauthorized", "not the key of this address now"},
      {"GET", "/device", "", "Host: elsewhere", 421, "Misdirected Request",
       "this is not the host that the request names"},
      {"POST", "/login", "", "Origin: http://elsewhere", 403, "Forbidden",
       "pages of another origin change nothing here"},
      {"POST", "/login", "", "Content-Type: image/png", 415, "Unsupported Media Type",
       "no resource takes this type of content"},
      {"POST", "/login", std::string(1025, 'x'), "", 413, "Content Too Large",
       "a document has at most 1024 bytes"},
      {"POST", "/login", "x", "Content-Length: 2", 400, "Bad Request",
       "there are two different Content-Length headers"},
  };
  for (const RefusedRequest& request : requests) {
    // Wrong keys are counted, so not too many of them.
    if (request.status == 401 && request.url == "/login") {
      const HttpResponse answer = Request(host.port(), RequestText(request, "application/json"));
      EXPECT_EQ(json::parse(answer.body, nullptr, false), Problem(request));
      EXPECT_EQ(answer.Header("WWW-Authenticate"), "KioAppKey realm=\"router\"");
      continue;
    }
    ExpectBothForms(host.port(), request);
  }
  for (int i = 0; i < 4; ++i) {
    Post(host.port(), "/login", "kioAppKey=1");
  }
  ExpectBothForms(host.port(), {"POST", "/login", "kioAppKey=1", "", 429, "Too Many Requests",
                                "too many wrong keys: wait"});
}

TEST(ProblemTest, EachResourceRefusesInBothForms) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::vector<RefusedRequest> requests = {
      {"GET", "/result", "", "", 404, "Not Found", "there is no result document"},
      {"GET", "/settings", "", "", 405, "Method Not Allowed", "/settings takes POST only"},
      {"GET", "/device%00", "", "", 400, "Bad Request", "the path holds a NUL byte"},
      {"POST", "/settings", "", "", 400, "Bad Request", "the settings document is missing"},
      {"POST", "/settings", "<x/>", "", 400, "Bad Request",
       "the settings document has no root element"},
      {"POST", "/settings?dry-run=2", "x", "", 400, "Bad Request", "dry-run takes 0 or 1"},
      {"POST", "/settings?confirm-within=4", "x", "", 400, "Bad Request",
       "confirm-within takes 5 to 3600 seconds"},
      {"POST", "/settings", FactoryDocument(), "If-Match: abc", 412, "Precondition Failed",
       "the settings are others by now: none"},
      {"POST", "/settings/confirm", "", "", 404, "Not Found",
       "no settings wait for their confirmation"},
      {"POST", "/restore", "{}", "", 422, "Unprocessable Content",
       "the body is no archive of settings"},
      {"POST", "/firmware/xy", "", "", 400, "Bad Request", "an action is one character"},
      {"GET", "/vars/rss_DeviceName?path=2", "", "", 400, "Bad Request", "path takes 0 or 1"},
      {"POST", "/vars?separator=ab", "", "", 400, "Bad Request", "separator takes one character"},
  };
  for (const RefusedRequest& request : requests) {
    ExpectBothForms(host.port(), request);
  }
}

// Asks for problem details and gives their members beside the four that all have.
json MembersOf(const HttpResponse& answer) {
  json problem = json::parse(answer.body, nullptr, false);
  EXPECT_TRUE(problem.is_object()) << answer.body;
  for (const char* member : {"type", "title", "status", "detail"}) {
    EXPECT_EQ(problem.erase(member), 1U) << answer.body;
  }
  return problem;
}

HttpResponse AskForProblem(int port, const std::string& method, const std::string& url,
                           const std::string& body) {
  return Request(port, RequestText({method, url, body, "", 0, "", ""}, "application/problem+json"));
}

TEST(ProblemTest, TheRefusalOfAValueTellsWhatWouldBeAccepted) {
  HostProcess host;
  host.UseProfile(ProfileWith({"/lan/wireless5:1/configurable = 0"}));
  ASSERT_TRUE(host.Start());
  const struct {
    const char* url;
    std::string body;
    int status;
    json members;
  } cases[] = {
      {"/vars/rss_DeviceName",
       "",
       422,
       {{"code", 10},
        {"variable", "rss_DeviceName"},
        {"element", "Device/DeviceName"},
        {"rule", "the rule in rss_DeviceName_Validate: 1 to 32 printable characters"},
        {"changeableNow", true},
        {"accepts", {{"minLength", 1}, {"maxLength", 32}, {"characters", "printable"}}}}},
      {"/vars/rss_DevicePwd",
       "a b c d",
       422,
       {{"code", 11},
        {"variable", "rss_DevicePwd"},
        {"element", "Device/DevicePwd"},
        {"rule", "the rule in rss_DevicePwd_Validate: 5 to 32 printable characters, not \" \""},
        {"changeableNow", true},
        {"accepts",
         {{"minLength", 5}, {"maxLength", 32}, {"characters", "printable"}, {"not", {" "}}}}}},
      {"/vars/rss_Wl2_Channel",
       "99",
       422,
       {{"code", 2},
        {"variable", "rss_Wl2_Channel"},
        {"element", "Device/Wireless2.4/Channel"},
        {"rule", "a channel of rss_Wl2_ChannelList: 0,1,2,3,4,5,6,7,8,9,10,11,12,13"},
        {"changeableNow", true},
        {"accepts",
         {{"words", {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12", "13"}}}}}},
      {"/vars/Device/Wireless2.4/EncryptionMode",
       "WPA9",
       422,
       {{"code", 10},
        {"variable", "rss_Wl2_EncryptionMode"},
        {"element", "Device/Wireless2.4/EncryptionMode"},
        {"rule", "one of the words; a good word that is only checked gives code 2"},
        {"changeableNow", true},
        {"accepts", {{"words", {"None", "WEP", "WPA", "WPAWPA2", "WPA2"}}}}}},
      {"/vars/rss_Upl_Ets_Survey",
       "2",
       422,
       {{"code", 2},
        {"variable", "rss_Upl_Ets_Survey"},
        {"element", "Device/UpLinkConnection/ExtenderSite/Survey"},
        {"rule", "0 or 1"},
        {"changeableNow", true},
        {"accepts", {{"minimum", 0}, {"maximum", 1}}}}},
      {"/vars/rss_Wl5_WirelessName",
       "Den",
       403,
       {{"code", 1},
        {"variable", "rss_Wl5_WirelessName"},
        {"element", "Device/Wireless5/WirelessName"},
        {"rule", "the rule in rss_Wl5_WirelessName_Validate: 1 to 32 printable characters"},
        {"changeableNow", false}}},
      {"/vars/rss_DeviceModel",
       "x",
       422,
       {{"code", 2},
        {"variable", "rss_DeviceModel"},
        {"element", "Device/DeviceModel"},
        {"rule", "read only"},
        {"changeableNow", false}}},
      {"/vars/rss_Nothing", "x", 404, {{"code", 2}, {"variable", "rss_Nothing"}}},
      {"/vars/rss_Upl_IP",
       std::string(128, '1'),
       422,
       {{"code", 10},
        {"variable", "rss_Upl_IP"},
        {"element", "Device/UpLinkConnection/IP"},
        {"rule", "an IPv4 address of a host"},
        {"changeableNow", true},
        {"accepts", {{"maxLength", 15}}}}},
  };
  for (const auto& c : cases) {
    const HttpResponse answer = AskForProblem(host.port(), "PUT", c.url, c.body);
    EXPECT_EQ(answer.status, c.status) << c.url;
    EXPECT_EQ(MembersOf(answer), c.members) << c.url;
  }
}

TEST(ProblemTest, ABatchAndAnActionNameWhatTheyRefuse) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const HttpResponse batch =
      AskForProblem(host.port(), "POST", "/vars", "rss_DeviceName=Loft&rss_Upl_IP=nonsense");
  EXPECT_EQ(batch.status, 422);
  EXPECT_EQ(json::parse(batch.body)["detail"], "not a value that this takes: rss_Upl_IP");
  EXPECT_EQ(MembersOf(batch)["variable"], "rss_Upl_IP");
  Put(host.port(), "/vars/rss_Wl2_WlEnbl", "7");
  const HttpResponse verify = AskForProblem(host.port(), "POST", "/actions/VerifyAllRssVars", "");
  EXPECT_EQ(verify.status, 422);
  EXPECT_EQ(MembersOf(verify),
            json({{"code", 3},
                  {"element", "Device/Wireless2.4/WlEnbl"},
                  {"variable", "rss_Wl2_WlEnbl"},
                  {"rule", "any number; no other one than now when that is 2 or more"},
                  {"changeableNow", true},
                  {"accepts", {{"minimum", 0}, {"maximum", 3}}}}));
  const HttpResponse none = AskForProblem(host.port(), "POST", "/actions/None", "");
  EXPECT_EQ(none.status, 404);
  EXPECT_EQ(MembersOf(none), json({{"code", 2}}));
}

TEST(ProblemTest, ARefusedDocumentIsAProblemOnRequestOnly) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string document = With(FactoryDocument(), "Channel", "99");
  for (const char* accept : {"", "*/*", "application/xml, application/json", "application/xml"}) {
    const HttpResponse plain =
        Request(host.port(), RequestText({"POST", "/settings", document, "", 0, "", ""}, accept));
    EXPECT_EQ(plain.status, 200) << accept;
    EXPECT_EQ(plain.body, ResultDocument(3, "Device/Wireless2.4/Channel", 0)) << accept;
  }
  const HttpResponse answer = AskForProblem(host.port(), "POST", "/settings", document);
  EXPECT_EQ(answer.status, 422);
  EXPECT_EQ(json::parse(answer.body)["detail"],
            "a value is invalid or cannot be changed: Device/Wireless2.4/Channel");
  const json members = MembersOf(answer);
  EXPECT_EQ(members["code"], 3);
  EXPECT_EQ(members["element"], "Device/Wireless2.4/Channel");
  EXPECT_EQ(members["variable"], "rss_Wl2_Channel");
  EXPECT_EQ(members["accepts"]["words"].size(), 14U);
  // An element of the uplink is reported by another path than its own.
  const HttpResponse uplink = AskForProblem(host.port(), "POST", "/settings",
                                            With(FactoryDocument(), "ConnType", "Carrier"));
  EXPECT_EQ(MembersOf(uplink)["variable"], "rss_Upl_ConnType");
  EXPECT_EQ(MembersOf(uplink)["element"], "Device/Uplink/ConnType");
  // What was accepted is no problem.
  EXPECT_EQ(AskForProblem(host.port(), "POST", "/settings", FactoryDocument()).body,
            ResultDocument(0, "", 0));
  // The last result stays a result document.
  const HttpResponse last = AskForProblem(host.port(), "GET", "/result", "");
  EXPECT_EQ(last.Header("Content-Type"), "application/xml");
}

TEST(ProblemTest, ASlowBodyIsRefusedInTheFormThatItsHeadAsksFor) {
  HostProcess host;
  HostClock clock(&host);
  ASSERT_TRUE(clock.Start());
  Connection client(host.port());
  ASSERT_TRUE(
      client.Send("POST /settings HTTP/1.1\r\nHost: router\r\nContent-Length: 9\r\n"
                  "Accept: application/problem+json\r\n\r\n<"));
  constexpr auto kTimeForNineBytes = std::chrono::seconds(11);
  ASSERT_TRUE(clock.Advance(kTimeForNineBytes));
  const HttpResponse answer = client.Read();
  EXPECT_EQ(answer.status, 408);
  EXPECT_EQ(answer.Header("Content-Type"), "application/problem+json");
  EXPECT_EQ(json::parse(answer.body, nullptr, false)["detail"],
            "the body of the request came too slowly");
}

TEST(ProblemTest, HeadTellsTheFormWithoutTheBody) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  Connection client(host.port());
  ASSERT_TRUE(
      client.Send("HEAD /none HTTP/1.1\r\nHost: router\r\nAccept: application/json\r\n\r\n"));
  const HttpResponse head = client.ReadHead();
  EXPECT_EQ(head.status, 404);
  EXPECT_EQ(head.Header("Content-Type"), "application/problem+json");
}

}  // namespace
