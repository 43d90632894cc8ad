#include "router.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <utility>
#include <vector>

namespace kiohost {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

// No request of these tests asks its connection for anything.
RequestView Request(const std::string& method, const std::string& path) {
  return {nullptr, method, ParseTarget(path)};
}

class RouterTest : public ::testing::Test {
 protected:
  void Add(const std::string& pattern, const std::string& method) {
    const Texts& texts = texts_.emplace_back(Texts{pattern, method});
    const RouteDescription& description = descriptions_.emplace_back(RouteDescription{
        .pattern = texts.pattern, .method = texts.method, .summary = "Is tested."});
    Route route = {.description = description};
    route.handle = [pattern, method](const RequestView& request) {
      Reply reply;
      reply.body = method + " " + pattern + " " + request.name();
      return reply;
    };
    router_.Add(std::move(route));
  }

  // What the route answers, or the status and the reason of the refusal.
  std::string Serve(const std::string& method, const std::string& path) {
    RequestView request = Request(method, path);
    Reply refusal;
    const Route* route = router_.Find(&request, &refusal);
    return route != nullptr ? route->handle(request).body
                            : std::to_string(refusal.status) + " " + refusal.body;
  }

  struct Texts {
    std::string pattern;
    std::string method;
  };
  // They stay where they are when there are more.
  std::deque<Texts> texts_;
  std::deque<RouteDescription> descriptions_;
  Router router_;
};

TEST_F(RouterTest, APathIsServedAsItStands) {
  Add("/one", "GET");
  Add("/two", "POST");
  EXPECT_EQ(Serve("GET", "/one"), "GET /one ");
  EXPECT_EQ(Serve("POST", "/two"), "POST /two ");
  for (const char* path : {"", "/", "/One", "/one/", "/on", "//one", "*"}) {
    EXPECT_EQ(Serve("GET", path), "404 there is only /one and /two\n") << path;
  }
}

TEST_F(RouterTest, AStarIsAnythingButEmpty) {
  Add("/vars/*", "GET");
  EXPECT_EQ(Serve("GET", "/vars/a"), "GET /vars/* a");
  EXPECT_EQ(Serve("GET", "/vars/a/b/"), "GET /vars/* a/b/");
  EXPECT_EQ(Serve("GET", "/vars//a"), "GET /vars/* /a");
  EXPECT_EQ(Serve("GET", "/vars/"), "404 there is only /vars\n");
  EXPECT_EQ(Serve("GET", "/vars"), "404 there is only /vars\n");
}

TEST_F(RouterTest, TheClosestPatternServesWhicheverCameFirst) {
  for (const bool reverse : {false, true}) {
    router_ = Router();
    std::vector<std::string> patterns = {"/vars/*", "/vars/*/validate", "/vars/all"};
    if (reverse) {
      std::swap(patterns.front(), patterns.back());
    }
    for (const std::string& pattern : patterns) {
      Add(pattern, "GET");
    }
    EXPECT_EQ(Serve("GET", "/vars/all"), "GET /vars/all ");
    EXPECT_EQ(Serve("GET", "/vars/alles"), "GET /vars/* alles");
    EXPECT_EQ(Serve("GET", "/vars/a/b/validate"), "GET /vars/*/validate a/b");
    EXPECT_EQ(Serve("GET", "/vars/validate"), "GET /vars/* validate");
    EXPECT_EQ(Serve("GET", "/vars//validate"), "GET /vars/* /validate");
  }
}

TEST_F(RouterTest, AResourceMayHaveSeveralMethods) {
  Add("/vars/*", "GET");
  Add("/other", "GET");
  Add("/vars/*", "PUT");
  Add("/vars/*", "DELETE");
  EXPECT_EQ(Serve("GET", "/vars/a"), "GET /vars/* a");
  EXPECT_EQ(Serve("PUT", "/vars/a"), "PUT /vars/* a");
  EXPECT_EQ(Serve("POST", "/other"), "405 /other takes GET and HEAD only\n");
  RequestView request = Request("POST", "/vars/a");
  Reply refusal;
  EXPECT_EQ(router_.Find(&request, &refusal), nullptr);
  EXPECT_EQ(refusal.status, 405U);
  EXPECT_EQ(refusal.body, "/vars/* takes GET, HEAD, PUT and DELETE only\n");
  EXPECT_THAT(refusal.headers, ElementsAre(Pair("Allow", "GET, HEAD, PUT, DELETE")));
}

TEST_F(RouterTest, HeadIsServedWhereGetIs) {
  Add("/one", "GET");
  Add("/two", "POST");
  EXPECT_EQ(Serve("HEAD", "/one"), "GET /one ");
  EXPECT_EQ(Serve("HEAD", "/two"), "405 /two takes POST only\n");
}

TEST_F(RouterTest, OptionsNamesTheMethods) {
  Add("/vars/*", "GET");
  Add("/vars/*", "PUT");
  Add("/other", "POST");
  const auto allow = [this](const char* target) {
    const Reply reply = router_.DescribeMethods(Request("OPTIONS", target));
    return std::to_string(reply.status) + " " +
           (reply.headers.empty() ? reply.body : reply.headers.front().second);
  };
  EXPECT_EQ(allow("/vars/a"), "204 GET, HEAD, PUT, OPTIONS");
  EXPECT_EQ(allow("/other"), "204 POST, OPTIONS");
  EXPECT_EQ(allow("*"), "204 GET, HEAD, PUT, POST, OPTIONS");
  EXPECT_EQ(allow("/none"), "404 there is only /vars and /other\n");
}

TEST_F(RouterTest, TheResourcesAreNamedOnce) {
  Add("/vars", "GET");
  Add("/vars/*", "GET");
  Add("/firmware/*", "GET");
  Add("/device", "GET");
  EXPECT_EQ(Serve("GET", "/"), "404 there is only /vars, /firmware and /device\n");
}

TEST_F(RouterTest, TheFirstGateThatRefusesDecides) {
  EXPECT_FALSE(router_.ApplyFilters(Request("GET", "/a")));
  router_.AddFilter([](const RequestView& request) -> std::optional<Reply> {
    return request.path() == "/a" ? std::optional(ErrorReply(403, "not a")) : std::nullopt;
  });
  router_.AddFilter([](const RequestView& request) -> std::optional<Reply> {
    return request.method() == "GET" ? std::optional(ErrorReply(401, "no GET")) : std::nullopt;
  });
  EXPECT_EQ(router_.ApplyFilters(Request("GET", "/a"))->body, "not a\n");
  EXPECT_EQ(router_.ApplyFilters(Request("GET", "/b"))->status, 401U);
  EXPECT_FALSE(router_.ApplyFilters(Request("POST", "/b")));
}

}  // namespace
}  // namespace kiohost
