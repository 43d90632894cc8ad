// The HTTP interface: resources, limits and errors.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
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
  EXPECT_THAT(answer.body, MatchesRegex("\\{\"model\": \"DR-2400\", \"name\": \"Home router\", "
                                        "\"uptime\": [0-9]+, \"events\": \\[\\]\\}\n"));
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
  for (const char* url : {"/", "/settings/", "/Settings", "/result/x", "/../device", "*"}) {
    const HttpResponse answer = Get(host_.port(), url);
    EXPECT_EQ(answer.status, 404) << url;
    EXPECT_EQ(answer.body,
              "there is only /settings, /result, /device, /vars, /actions, /login, /logout and "
              "/firmware\n")
        << url;
  }
  EXPECT_EQ(Post(host_.port(), "/", FactoryDocument()).status, 404);
}

TEST_F(HttpTest, OtherMethodsAreNotAllowed) {
  const HttpResponse get = Get(host_.port(), "/settings");
  EXPECT_EQ(get.status, 405);
  EXPECT_EQ(get.Header("Allow"), "POST");
  EXPECT_EQ(get.body, "/settings takes POST only\n");
  for (const char* url : {"/result", "/device"}) {
    const HttpResponse post = Post(host_.port(), url, "body");
    EXPECT_EQ(post.status, 405) << url;
    EXPECT_EQ(post.Header("Allow"), "GET") << url;
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

TEST_F(HttpTest, AtMost64ConnectionsAreServed) {
  constexpr size_t kLimit = 64;
  std::vector<std::unique_ptr<Connection>> clients;
  for (size_t i = 0; i < kLimit; ++i) {
    clients.push_back(std::make_unique<Connection>(host_.port()));
    ASSERT_TRUE(clients.back()->Send("GET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
    EXPECT_EQ(clients.back()->Read().status, 200) << i;
  }
  Connection beyond(host_.port());
  EXPECT_TRUE(beyond.WaitForClose(5));
  clients.pop_back();
  int status = 0;
  for (int i = 0; i < 100 && status != 200; ++i) {  // the host may not have seen the end yet
    status = Get(host_.port(), "/device").status;
  }
  EXPECT_EQ(status, 200);
}

TEST_F(HttpTest, AnIdleConnectionIsClosedAfter10Seconds) {
  Connection silent(host_.port());
  Connection half(host_.port());
  ASSERT_TRUE(
      half.Send("POST /settings HTTP/1.1\r\nHost: router\r\nContent-Length: 100\r\n\r\n<root"));
  EXPECT_FALSE(silent.WaitForClose(8));
  EXPECT_TRUE(silent.WaitForClose(5));
  EXPECT_TRUE(half.WaitForClose(5));
  EXPECT_EQ(Get(host_.port(), "/device").status, 200);
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
