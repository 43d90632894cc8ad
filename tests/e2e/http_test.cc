// The HTTP interface: resources, limits and errors.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <utility>
#include <vector>

#include "documents.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

constexpr size_t kMaxBody = size_t{64} * 1024;

class HttpTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(host_.Start()); }

  // A factory document of exactly `size` bytes.
  static std::string Padded(size_t size) {
    const std::string document = FactoryDocument();
    return document + std::string(size - document.size(), ' ');
  }

  static std::string Chunked(const std::string& body) {
    constexpr size_t kPiece = 5000;
    std::string request =
        "POST /settings HTTP/1.1\r\nHost: router\r\nTransfer-Encoding: chunked\r\n\r\n";
    for (size_t at = 0; at < body.size(); at += kPiece) {
      const std::string piece = body.substr(at, kPiece);
      char length[16];
      std::snprintf(length, sizeof length, "%zx\r\n", piece.size());
      request += length + piece + "\r\n";
    }
    return request + "0\r\n\r\n";
  }

  HostProcess host_;
};

TEST_F(HttpTest, DeviceSaysWhatItIs) {
  const HttpResponse answer = Get(host_.port(), "/device");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.Header("Content-Type"), "application/json");
  EXPECT_THAT(answer.body,
              MatchesRegex("\\{\n  \"model\": \"DR-2400\",\n  \"name\": \"Home router\",\n  "
                           "\"uptime\": [0-9]+,\n  \"bootId\": \"[0-9a-f]{32}\",\n  \"state\": "
                           "\"ready\",\n  \"lastApply\": null,\n  \"pendingConfirm\": null,\n  "
                           "\"events\": \\[\\]\n\\}\n"));
}

TEST_F(HttpTest, ResultIsTheLastResultDocument) {
  const HttpResponse none = Get(host_.port(), "/result");
  EXPECT_EQ(none.status, 404);
  EXPECT_EQ(none.body, "there is no result document\n");
  const std::string result = Post(host_.port(), "/settings", FactoryDocument()).body;
  const HttpResponse answer = Get(host_.port(), "/result");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.Header("Content-Type"), "application/xml");
  EXPECT_EQ(answer.body, result);
}

TEST_F(HttpTest, OtherPathsDoNotExist) {
  for (const char* url : {"//", "/settings/", "/Settings", "/result/x", "/../device", "*"}) {
    const HttpResponse answer = Get(host_.port(), url);
    EXPECT_EQ(answer.status, 404) << url;
    EXPECT_EQ(
        answer.body,
        "there is only /settings, /result, /backup, /restore, /device, /events, /vars, /actions, "
        "/login, /logout, /firmware and /openapi.json\n")
        << url;
  }
  EXPECT_EQ(Post(host_.port(), "/none", FactoryDocument()).status, 404);
}

TEST_F(HttpTest, OtherMethodsAreNotAllowed) {
  const HttpResponse get = Get(host_.port(), "/settings");
  EXPECT_EQ(get.status, 405);
  EXPECT_EQ(get.Header("Allow"), "POST");
  EXPECT_EQ(get.body, "/settings takes POST only\n");
  for (const char* url : {"/result", "/device"}) {
    const HttpResponse post = Post(host_.port(), url, "body");
    EXPECT_EQ(post.status, 405) << url;
    EXPECT_EQ(post.Header("Allow"), "GET, HEAD") << url;
  }
  const HttpResponse put =
      Request(host_.port(), "PUT /settings HTTP/1.1\r\nHost: router\r\nContent-Length: 0\r\n\r\n");
  EXPECT_EQ(put.status, 405);
}

TEST_F(HttpTest, ANulByteInThePathEndsNoPath) {
  for (const char* url : {"/device%00", "/device%00/more", "/device%00?x=1"}) {
    const HttpResponse answer = Get(host_.port(), url);
    EXPECT_EQ(answer.status, 400) << url;
    EXPECT_EQ(answer.body, "the path holds a NUL byte\n") << url;
  }
  EXPECT_EQ(Get(host_.port(), "/device?x=%00").status, 200);
}

TEST_F(HttpTest, APathIsPercentDecoded) { EXPECT_EQ(Get(host_.port(), "/%64evice").status, 200); }

TEST_F(HttpTest, ABodyMayHave64KiB) {
  EXPECT_EQ(Post(host_.port(), "/settings", Padded(kMaxBody)).body, ResultDocument(0, "", 0));
  EXPECT_EQ(Request(host_.port(), Chunked(Padded(kMaxBody))).body, ResultDocument(0, "", 0));
}

TEST_F(HttpTest, AnyLargerBodyIsTooLarge) {
  for (const std::string& request :
       {PostRequest("/settings", Padded(kMaxBody + 1)), Chunked(Padded(kMaxBody + 1)),
        PostRequest("/settings", Padded(10 * kMaxBody)), Chunked(Padded(10 * kMaxBody))}) {
    const HttpResponse answer = Request(host_.port(), request);
    EXPECT_EQ(answer.status, 413);
    EXPECT_EQ(answer.body, "a document has at most 65536 bytes\n");
  }
  EXPECT_EQ(Get(host_.port(), "/result").status, 404) << "an exchange ran";
}

TEST_F(HttpTest, AHugeBodyIsRefusedBeforeItIsSent) {
  const std::string head = "POST /settings HTTP/1.1\r\nHost: router\r\nContent-Length: ";
  EXPECT_EQ(Request(host_.port(), head + "99999999\r\n\r\n").status, 413);
  EXPECT_EQ(Request(host_.port(), head + "65537\r\nExpect: 100-continue\r\n\r\n").status, 413);
}

TEST_F(HttpTest, AnEndlessBodyIsCutOff) {
  Connection client(host_.port());
  ASSERT_TRUE(
      client.Send("POST /settings HTTP/1.1\r\nHost: router\r\nTransfer-Encoding: chunked\r\n\r\n"));
  const std::string piece = "1000\r\n" + std::string(0x1000, 'x') + "\r\n";
  constexpr size_t kMaxPieces = 4096;
  size_t pieces = 0;
  while (pieces < kMaxPieces && client.Send(piece)) {
    ++pieces;
  }
  EXPECT_LT(pieces, kMaxPieces);
  EXPECT_EQ(Get(host_.port(), "/device").status, 200);
}

TEST_F(HttpTest, AContinueIsGivenToABodyThatFits) {
  const std::string document = FactoryDocument();
  Connection client(host_.port());
  ASSERT_TRUE(
      client.Send("POST /settings HTTP/1.1\r\nHost: router\r\nExpect: 100-continue\r\n"
                  "Content-Length: " +
                  std::to_string(document.size()) + "\r\n\r\n"));
  EXPECT_EQ(client.Read().status, 100);
  ASSERT_TRUE(client.Send(document));
  EXPECT_EQ(client.Read().body, ResultDocument(0, "", 0));
}

TEST_F(HttpTest, AnEmptyBodyIsNoDocument) {
  const HttpResponse answer = Post(host_.port(), "/settings", "");
  EXPECT_EQ(answer.status, 400);
  EXPECT_EQ(answer.body, "the settings document is missing\n");
}

TEST_F(HttpTest, ANulByteIsRefused) {
  const std::string document = With(FactoryDocument(), "DeviceName", std::string("a\0b", 3));
  const HttpResponse answer = Post(host_.port(), "/settings", document);
  EXPECT_EQ(answer.status, 400);
  EXPECT_EQ(answer.body, "the settings document holds a NUL byte\n");
  EXPECT_EQ(Get(host_.port(), "/result").status, 404) << "an exchange ran";
}

TEST_F(HttpTest, ModesAreSaidWith0And1) {
  for (const char* query : {"?cloning=2", "?cloning=", "?cloning", "?cloning=1&full=yes"}) {
    const HttpResponse answer =
        Post(host_.port(), std::string("/settings") + query, FactoryDocument());
    EXPECT_EQ(answer.status, 400) << query;
    EXPECT_EQ(answer.body, "cloning and full take 0 or 1\n") << query;
  }
  EXPECT_EQ(Post(host_.port(), "/settings?full=1", FactoryDocument()).status, 400);
  EXPECT_EQ(Post(host_.port(), "/settings?cloning=0", FactoryDocument()).status, 200);
}

TEST_F(HttpTest, OneConnectionCarriesManyRequests) {
  Connection client(host_.port());
  const std::string renamed = PostRequest("/settings", With(FactoryDocument(), "DeviceName", "N"));
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(client.Send(renamed));
    EXPECT_EQ(client.Read().status, 200) << i;
    ASSERT_TRUE(client.Send("GET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
    EXPECT_THAT(client.Read().body, HasSubstr("\"name\": \"N\"")) << i;
  }
}

TEST_F(HttpTest, TheServerAnswersWhatIsNoRequestItself) {
  const std::string device = "GET /device HTTP/1.1\r\nHost: router\r\n";
  const std::vector<std::pair<std::string, int>> requests = {
      {"GET /device\r\n\r\n", 400},
      {device + "no header\r\n\r\n", 400},
      {"GET /" + std::string(100000, 'a') + " HTTP/1.1\r\nHost: router\r\n\r\n", 414},
      {device + "X: " + std::string(100000, 'a') + "\r\n\r\n", 431},
      {"GET /device HTTP/2.0\r\nHost: router\r\n\r\n", 505},
  };
  for (const auto& [request, status] : requests) {
    Connection client(host_.port());
    client.Send(request);
    const HttpResponse answer = client.Read();
    EXPECT_EQ(answer.status, status) << request.substr(0, 50);
    EXPECT_THAT(answer.body, HasSubstr("<html>")) << request.substr(0, 50);
  }
  EXPECT_EQ(Get(host_.port(), "/device").status, 200);
}

// The server would close such a connection without a word.
TEST_F(HttpTest, ALineThatIsNoRequestLineIsAnswered) {
  for (const char* request :
       {"GET\r\n\r\n", " /device HTTP/1.1\r\nHost: router\r\n\r\n", "\r\n\r\nhello\r\n"}) {
    Connection client(host_.port());
    ASSERT_TRUE(client.Send(request));
    const HttpResponse answer = client.Read();
    EXPECT_EQ(answer.status, 400) << request;
    EXPECT_EQ(answer.body, "this is no HTTP/1 request\n") << request;
    EXPECT_EQ(answer.Header("Connection"), "close");
    EXPECT_EQ(answer.Header("X-Content-Type-Options"), "nosniff");
    EXPECT_EQ(answer.Header("Cache-Control"), "no-store");
    EXPECT_TRUE(client.WaitForClose(5)) << request;
  }
  // Also on a connection that has served.
  Connection client(host_.port());
  ASSERT_TRUE(client.Send("GET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
  EXPECT_EQ(client.Read().status, 200);
  ASSERT_TRUE(client.Send("hello\r\n"));
  EXPECT_EQ(client.Read().status, 400);
  EXPECT_TRUE(client.WaitForClose(5));
}

TEST_F(HttpTest, AQueryHas64ParametersAtMost) {
  const HttpResponse most = Get(host_.port(), "/device?" + std::string(64, '&'));
  EXPECT_EQ(most.status, 200);
  for (const size_t count : {size_t{65}, size_t{600}, size_t{20000}}) {
    Connection client(host_.port());
    ASSERT_TRUE(
        client.Send("GET /?" + std::string(count, '&') + " HTTP/1.1\r\nHost: router\r\n\r\n"));
    const HttpResponse answer = client.Read();
    EXPECT_EQ(answer.status, 400) << count;
    EXPECT_EQ(answer.body, "a query has at most 64 parameters\n") << count;
    EXPECT_TRUE(client.WaitForClose(5)) << count;
  }
}

TEST_F(HttpTest, RequestsThatTheServerGivesUpOnLeaveNothingBehind) {
  const std::vector<std::string> requests = {
      "GET /?" + std::string(600, '&') + " HTTP/1.1\r\nHost: router\r\n\r\n",
      "GET /" + std::string(40000, 'a') + " HTTP/1.1\r\nHost: router\r\n\r\n",
      "GET /device?x=1 HTTP/1.1\r\nHost: router\r\n" + std::string(40000, 'a'),
      "GET /device HTTP/1.1\r\nCookie: " + std::string(15000, ';') + "\r\n\r\n",
      "GET /device HTTP/1.1\r\nno header\r\n\r\n",
      "hello\r\n"};
  const auto send_all = [&](int times) {
    for (int i = 0; i < times; ++i) {
      for (const std::string& request : requests) {
        Connection client(host_.port());
        client.Send(request);
        EXPECT_GE(client.Read().status, 400) << request.substr(0, 50);
      }
    }
  };
  send_all(50);
  const long before = host_.PrivateMemory();
  send_all(200);
  // A sanitized host keeps what was given back, and looks for leaks itself.
  if (!host_.IsSanitized()) {
    constexpr long kMostKiB = 40;  // less than the smallest request that could be left behind takes
    EXPECT_LE(host_.PrivateMemory() - before, kMostKiB);
  }
  EXPECT_EQ(host_.End(SIGTERM), 0) << host_.Errors();
}

TEST_F(HttpTest, AHeadThatCanBeReadInTwoWaysIsRefused) {
  const std::vector<std::pair<std::string, std::string>> heads = {
      {"Content-Length: 4\r\nContent-Length: 5\r\n", "there are two different Content-Length"},
      {"Content-Length: 0\r\nContent-Length: 5\r\n", "there are two different Content-Length"},
      {"Content-Length: 4\r\nTransfer-Encoding: chunked\r\n", "Content-Length and Transfer"},
      {"Transfer-Encoding: chunked\r\nContent-Length: 4\r\n", "Content-Length and Transfer"},
      {"Transfer-Encoding: gzip\r\n", "a body is sent as it is, or chunked"},
      {"Transfer-Encoding: gzip, chunked\r\n", "a body is sent as it is, or chunked"},
      {"Transfer-Encoding: chunked\r\nTransfer-Encoding: gzip\r\n", "a body is sent as it is"},
      {"Content-Length : 4\r\n", "a header has no proper name"},
      {"Host: router\r\n", "there is more than one Host header"},
      {"Host: evil.example\r\n", "there is more than one Host header"}};
  for (const auto& [lines, reason] : heads) {
    Connection client(host_.port());
    ASSERT_TRUE(client.Send("POST /settings HTTP/1.1\r\nHost: router\r\n" + lines +
                            "\r\n0\r\n\r\nGET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
    const HttpResponse answer = client.Read();
    EXPECT_EQ(answer.status, 400) << lines;
    EXPECT_THAT(answer.body, StartsWith(reason)) << lines;
    EXPECT_EQ(answer.Header("Connection"), "close") << lines;
    EXPECT_TRUE(client.WaitForClose(5)) << lines;
  }
  EXPECT_EQ(Request(host_.port(),
                    "POST /settings HTTP/1.1\r\nHost: router\r\nContent-Length: 1\r\n"
                    "content-length: 1\r\n\r\nx")
                .body,
            "the settings document has no root element\n");
}

TEST_F(HttpTest, ARequestOfHttp11NamesItsHost) {
  const HttpResponse answer = Request(host_.port(), "GET /device HTTP/1.1\r\n\r\n");
  EXPECT_EQ(answer.status, 400);
  EXPECT_EQ(answer.body, "the Host header is missing\n");
  EXPECT_EQ(Request(host_.port(), "GET /device HTTP/1.1\r\nHost:\r\n\r\n").status, 421);
  EXPECT_EQ(Request(host_.port(), "GET /device HTTP/1.0\r\n\r\n").status, 421);
  EXPECT_EQ(Request(host_.port(), "GET /device HTTP/1.0\r\nHost: router\r\n\r\n").status, 200);
  EXPECT_EQ(Request(host_.port(), "GET http://router HTTP/1.1\r\n\r\n").status, 400);
}

TEST_F(HttpTest, ANulByteInTheRequestLineEndsNoPath) {
  const std::string line = std::string("GET /device\0x HTTP/1.1", 22);
  const HttpResponse answer = Request(host_.port(), line + "\r\nHost: router\r\n\r\n");
  EXPECT_EQ(answer.status, 400);
  EXPECT_EQ(answer.body, "the request line holds a NUL byte\n");
}

// The part of a head that is the same for GET and HEAD.
std::string SteadyPart(const std::string& head) {
  const size_t date = head.find("\r\nDate: ");
  return head.substr(0, date) + head.substr(head.find("\r\n", date + 2));
}

TEST_F(HttpTest, HeadIsGetWithoutABody) {
  for (const char* url : {"/vars", "/vars/rss_DeviceName", "/firmware", "/result", "/nothing"}) {
    const HttpResponse get = Get(host_.port(), url);
    Connection client(host_.port());
    ASSERT_TRUE(client.Send(std::string("HEAD ") + url + " HTTP/1.1\r\nHost: router\r\n\r\n"));
    const HttpResponse head = client.ReadHead();
    EXPECT_EQ(SteadyPart(head.head), SteadyPart(get.head)) << url;
    EXPECT_EQ(head.Header("Content-Length"), std::to_string(get.body.size())) << url;
    // No byte of a body stands before the next answer.
    ASSERT_TRUE(client.Send("GET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
    EXPECT_EQ(client.Read().status, 200) << url;
  }
  Connection client(host_.port());
  ASSERT_TRUE(client.Send("HEAD /settings HTTP/1.1\r\nHost: router\r\n\r\n"));
  const HttpResponse head = client.ReadHead();
  EXPECT_EQ(head.status, 405);
  EXPECT_EQ(head.Header("Allow"), "POST");
}

TEST_F(HttpTest, AnAbsoluteTargetNamesTheHostItself) {
  const auto status = [this](const std::string& target, const std::string& host = "router") {
    return Request(host_.port(), "GET " + target + " HTTP/1.1\r\nHost: " + host + "\r\n\r\n")
        .status;
  };
  EXPECT_EQ(status("http://router/device"), 200);
  EXPECT_EQ(status("HTTP://127.0.0.1:80/%64evice?x=1"), 200);
  EXPECT_EQ(status("http://router/device", "evil.example"), 200);
  EXPECT_EQ(status("http://evil.example/device"), 421);
  EXPECT_EQ(status("http://router@evil.example/device"), 421);
  EXPECT_EQ(status("http:///device"), 421);
  EXPECT_EQ(status("http://router"), 200);
  EXPECT_EQ(status("http://router/device%00"), 400);
  EXPECT_EQ(status("http://router/vars/rss_DeviceName?path=2"), 400);
  EXPECT_EQ(status("https://router/device"), 404);
  // The origin is compared with the same name.
  EXPECT_EQ(Request(host_.port(),
                    "PUT http://router/vars/rss_DeviceName HTTP/1.1\r\nHost: evil.example\r\n"
                    "Origin: http://evil.example\r\nContent-Length: 1\r\n\r\nx")
                .status,
            403);
}

TEST_F(HttpTest, OptionsTellsTheMethods) {
  const auto options = [this](const std::string& target) {
    return Request(host_.port(), "OPTIONS " + target + " HTTP/1.1\r\nHost: router\r\n\r\n");
  };
  EXPECT_EQ(options("*").status, 204);
  EXPECT_EQ(options("*").Header("Allow"), "POST, GET, HEAD, DELETE, PUT, OPTIONS");
  EXPECT_EQ(options("http://router").Header("Allow"), options("*").Header("Allow"));
  EXPECT_EQ(options("/device").Header("Allow"), "GET, HEAD, OPTIONS");
  EXPECT_EQ(options("/vars/rss_DeviceName").Header("Allow"), "GET, HEAD, PUT, OPTIONS");
  EXPECT_EQ(options("/nothing").status, 404);
  EXPECT_EQ(Request(host_.port(), "OPTIONS * HTTP/1.1\r\nHost: evil.example\r\n\r\n").status, 421);
  // A browser asks so whether a page of another origin may change something.
  EXPECT_EQ(Request(host_.port(),
                    "OPTIONS /settings HTTP/1.1\r\nHost: router\r\nOrigin: http://evil.example\r\n"
                    "Access-Control-Request-Method: POST\r\n\r\n")
                .status,
            403);
}

TEST_F(HttpTest, NoRequestHeadIsTrusted) {
  for (const char* request :
       {"\r\n\r\n", "GET\r\n\r\n", "GET /device\r\n\r\n", "POST /settings HTTP/1.1\r\n\r\n",
        "POST /settings HTTP/1.1\r\nHost: router\r\nContent-Length: -5\r\n\r\n",
        "POST /settings HTTP/1.1\r\nHost: router\r\nContent-Length: 9999999999999999999999\r\n\r\n",
        "POST /settings HTTP/1.1\r\nHost: router\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n"}) {
    Connection client(host_.port());
    ASSERT_TRUE(client.Send(request));
    if (!client.StaysSilent(1)) {
      const int status = client.Read().status;
      EXPECT_TRUE(status == 0 || status >= 400) << request << " " << status;
    }
  }
  EXPECT_EQ(Get(host_.port(), "/device").status, 200);
}

}  // namespace
