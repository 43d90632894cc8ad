// The index of the resources, and what holds for each of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "host_process.h"
#include "http_client.h"

namespace {

using nlohmann::ordered_json;
using ::testing::HasSubstr;
using ::testing::Not;

std::string Named(std::string path) {
  for (const auto& [place, name] :
       {std::pair<std::string, std::string>{"{name}", "rss_DeviceName"}, {"{action}", "9"}}) {
    if (const size_t at = path.find(place); at != std::string::npos) {
      path.replace(at, place.size(), name);
    }
  }
  return path;
}

HttpResponse Fetch(int port, const std::string& method, const std::string& url,
                   const std::string& headers = "") {
  Connection connection(port);
  connection.Send(method + " " + url + " HTTP/1.1\r\nHost: router\r\n" + headers +
                  "Content-Length: 0\r\n\r\n");
  return method == "HEAD" ? connection.ReadHead() : connection.Read();
}

class IndexTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(host_.Start());
    index_ = ordered_json::parse(Fetch(host_.port(), "GET", "/").body, nullptr, false);
    ASSERT_TRUE(index_.is_object());
    ASSERT_GE(index_["resources"].size(), 16U);
  }

  static std::vector<std::string> Methods(const ordered_json& resource) {
    std::vector<std::string> methods;
    for (const auto& [method, summary] : resource["methods"].items()) {
      methods.push_back(method);
    }
    return methods;
  }

  static std::string Joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
      text += (text.empty() ? "" : ", ") + word;
    }
    return text;
  }

  HostProcess host_;
  ordered_json index_;
};

TEST_F(IndexTest, EachResourceHasASentenceForEachMethod) {
  for (const auto& resource : index_["resources"]) {
    for (const auto& [method, summary] : resource["methods"].items()) {
      EXPECT_THAT(summary.get<std::string>(), testing::MatchesRegex("[A-Z][^.]*(3.1)?\\."))
          << resource;
    }
  }
  EXPECT_EQ(index_["resources"][0]["path"], "/settings");
}

TEST_F(IndexTest, EveryOtherMethodIsRefusedAndTheRightOnesAreNamed) {
  for (const auto& resource : index_["resources"]) {
    const std::vector<std::string> methods = Methods(resource);
    const std::string url = Named(resource["path"]);
    for (const char* method : {"GET", "HEAD", "POST", "PUT", "DELETE", "PATCH"}) {
      if (std::find(methods.begin(), methods.end(), method) == methods.end()) {
        const HttpResponse answer = Fetch(host_.port(), method, url);
        EXPECT_EQ(answer.status, 405) << method << " " << url;
        EXPECT_EQ(answer.Header("Allow"), Joined(methods)) << method << " " << url;
      }
    }
    const HttpResponse options = Fetch(host_.port(), "OPTIONS", url);
    EXPECT_EQ(options.status, 204) << url;
    EXPECT_EQ(options.Header("Allow"), Joined(methods) + ", OPTIONS") << url;
  }
}

TEST_F(IndexTest, HeadIsGetWithoutTheBody) {
  int compared = 0;
  for (const auto& resource : index_["resources"]) {
    const auto& methods = resource["methods"];
    EXPECT_EQ(methods.contains("GET"), methods.contains("HEAD")) << resource;
    if (!methods.contains("GET")) {
      continue;
    }
    const std::string url = Named(resource["path"]);
    const HttpResponse get = Fetch(host_.port(), "GET", url);
    const HttpResponse head = Fetch(host_.port(), "HEAD", url);
    EXPECT_EQ(head.status, get.status) << url;
    for (const char* header : {"Content-Type", "Content-Length", "ETag", "Cache-Control"}) {
      EXPECT_EQ(head.Header(header), get.Header(header)) << url << ", " << header;
    }
    ++compared;
  }
  EXPECT_GE(compared, 8);
}

TEST_F(IndexTest, EveryAnswerHasADate) {
  for (const auto& resource : index_["resources"]) {
    const HttpResponse answer = Fetch(host_.port(), "OPTIONS", Named(resource["path"]));
    EXPECT_THAT(answer.Header("Date"), testing::EndsWith(" GMT")) << resource["path"];
  }
}

TEST_F(IndexTest, ABrowserGetsAPageOfLinks) {
  const HttpResponse page =
      Fetch(host_.port(), "GET", "/", "Accept: text/html,application/xhtml+xml,*/*;q=0.8\r\n");
  EXPECT_EQ(page.status, 200);
  EXPECT_EQ(page.Header("Content-Type"), "text/html; charset=utf-8");
  for (const auto& resource : index_["resources"]) {
    const std::string path = resource["path"];
    std::string link = "<a href=\"";
    link.append(path).append("\">").append(path).append("</a>");
    if (resource["methods"].contains("GET") && path.find('{') == std::string::npos) {
      EXPECT_THAT(page.body, HasSubstr("GET " + link + ": "));
    } else {
      EXPECT_THAT(page.body, Not(HasSubstr(link)));
      EXPECT_THAT(page.body, HasSubstr(" " + path + ": "));
    }
  }
  for (const char* accept : {"*/*", "application/json", "text/html;q=0.5, application/json"}) {
    const std::string header = std::string("Accept: ") + accept + "\r\n";
    EXPECT_EQ(Fetch(host_.port(), "GET", "/", header).Header("Content-Type"), "application/json");
  }
}

TEST_F(IndexTest, WhoIsNotLoggedInGetsNothingButTheDeviceAndTheLogin) {
  HostProcess closed;
  ASSERT_TRUE(closed.StartClosed());
  for (const auto& resource : index_["resources"]) {
    const std::string path = resource["path"];
    for (const std::string& method : Methods(resource)) {
      const HttpResponse answer = Fetch(closed.port(), method, Named(path));
      const bool is_open = path == "/device" || path == "/login";
      EXPECT_EQ(answer.status, path == "/device" ? 200 : 401) << method << " " << path;
      if (!is_open && method != "HEAD") {
        EXPECT_EQ(answer.body, "log in first: POST /login\n") << method << " " << path;
      }
    }
  }
}

TEST_F(IndexTest, AListThatTheClientHasIsNotSentAgain) {
  for (const char* url : {"/vars", "/openapi.json"}) {
    const HttpResponse first = Fetch(host_.port(), "GET", url);
    const std::string tag = first.Header("ETag");
    EXPECT_THAT(tag, testing::MatchesRegex("\"[0-9a-f]{16}\"")) << url;
    EXPECT_EQ(first.Header("Cache-Control"), "private, no-cache") << url;
    for (const std::string& known : {tag, "\"x\", " + tag, "W/" + tag, std::string("*")}) {
      const HttpResponse answer =
          Fetch(host_.port(), "GET", url, "If-None-Match: " + known + "\r\n");
      EXPECT_EQ(answer.status, 304) << url << " " << known;
      EXPECT_EQ(answer.body, "") << url << " " << known;
      EXPECT_EQ(answer.Header("ETag"), tag) << url << " " << known;
    }
    const HttpResponse other = Fetch(host_.port(), "GET", url, "If-None-Match: \"x\"\r\n");
    EXPECT_EQ(other.status, 200) << url;
    EXPECT_EQ(other.body, first.body) << url;
  }
  // The values have no tag, and nobody may keep them.
  const HttpResponse values = Fetch(host_.port(), "GET", "/vars?values=1");
  EXPECT_EQ(values.Header("ETag"), "");
  EXPECT_EQ(values.Header("Cache-Control"), "no-store");
}

TEST(EntityTagTest, AListThatHasChangedIsSentAgain) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string tag = Get(host.port(), "/vars").Header("ETag");
  EXPECT_EQ(host.End(SIGTERM), 0);
  HostProcess locked;
  locked.UseProfile(ProfileWith({"/uplink/configurable = 0"}));
  ASSERT_TRUE(locked.Start());
  const HttpResponse answer =
      Fetch(locked.port(), "GET", "/vars", "If-None-Match: " + tag + "\r\n");
  EXPECT_EQ(answer.status, 200);
  EXPECT_NE(answer.Header("ETag"), tag);
}

}  // namespace
