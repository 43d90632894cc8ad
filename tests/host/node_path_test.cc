#include "node_path.h"

#include <gtest/gtest.h>

#include <string>

namespace kiohost {
namespace {

TEST(NodePathTest, AcceptsNodePaths) {
  for (const char* path : {"/sys", "/sys/user:1/password", "/lan/wireless2.4:1/accesscontrol",
                           "/sys/friendlyname_validate", "/a:4096", "/A-b/C.d"}) {
    EXPECT_TRUE(IsNodePath(path)) << path;
  }
}

TEST(NodePathTest, RefusesOtherTexts) {
  for (const char* path :
       {"",         "/",        "sys",      "//sys",         "/sys/",
        "/sys//a",  "/a:",      "/a:0",     "/a:01",         "/a:x",
        "/a:1:2",   "/:1",      "/a#",      "/a b",          "/a=b",
        "/a%",      "/a:4097",  "/a:10000", "/a:4294967297", "/a:99999999999999999999",
        "/a:04096", "/a:5000/b"}) {
    EXPECT_FALSE(IsNodePath(path)) << path;
  }
}

TEST(NodePathTest, HasALimit) {
  EXPECT_TRUE(IsNodePath("/" + std::string(kMaxPathLength - 1, 'a')));
  EXPECT_FALSE(IsNodePath("/" + std::string(kMaxPathLength, 'a')));
}

TEST(NodePathTest, CountPathsEndInAHashAfterAName) {
  EXPECT_TRUE(IsCountPath("/lan/wireless2.4:1/acrule#"));
  EXPECT_TRUE(IsCountPath("/acrule#"));
  for (const char* path : {"", "#", "/#", "/a", "/a:1#", "/a##", "/a#/b"}) {
    EXPECT_FALSE(IsCountPath(path)) << path;
  }
}

}  // namespace
}  // namespace kiohost
