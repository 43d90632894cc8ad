// Refusals in two forms: a line of text, or problem details for who prefers them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "documents.h"
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

std::string Text(const RefusedRequest& request, const std::string& accept) {
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
    const HttpResponse line = Request(port, Text(request, accept));
    EXPECT_EQ(line.status, request.status) << what;
    EXPECT_EQ(line.body, request.line + "\n") << what;
    EXPECT_EQ(line.Header("Content-Type"), "text/plain; charset=utf-8") << what;
  }
  for (const char* accept : {"application/problem+json", "application/json"}) {
    const HttpResponse problem = Request(port, Text(request, accept));
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
      const HttpResponse answer = Request(host.port(), Text(request, "application/json"));
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

TEST(ProblemTest, ASlowBodyIsRefusedInTheFormThatItsHeadAsksFor) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  Connection client(host.port());
  ASSERT_TRUE(
      client.Send("POST /settings HTTP/1.1\r\nHost: router\r\nContent-Length: 9\r\n"
                  "Accept: application/problem+json\r\n\r\n<"));
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
