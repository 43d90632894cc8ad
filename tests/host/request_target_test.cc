#include "request_target.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kiohost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

TEST(RequestTargetTest, APathIsDecodedAndItsQueryIsNoPartOfIt) {
  const RequestTarget target = ParseTarget("/vars/a%2Fb+c?path=1");
  EXPECT_EQ(target.path, "/vars/a/b+c");
  EXPECT_FALSE(target.authority.has_value());
  EXPECT_FALSE(target.nul_in_path);
  EXPECT_FALSE(target.is_server);
  EXPECT_EQ(ParseTarget("/a%zz%2").path, "/a%zz%2");
}

TEST(RequestTargetTest, ANulByteIsSeenInThePathAlone) {
  EXPECT_TRUE(ParseTarget("/device%00/x").nul_in_path);
  EXPECT_EQ(ParseTarget("/device%00/x").path, "/device");
  EXPECT_TRUE(ParseTarget("http://router/device%00").nul_in_path);
  EXPECT_FALSE(ParseTarget("/device?x=%00").nul_in_path);
}

TEST(RequestTargetTest, ArgumentsAreTakenApart) {
  EXPECT_THAT(ParseTarget("/a").arguments, IsEmpty());
  EXPECT_THAT(ParseTarget("/a?").arguments, IsEmpty());
  EXPECT_THAT(ParseTarget("/a?b").arguments, ElementsAre(Pair("b", "")));
  EXPECT_THAT(ParseTarget("/a?b=c&d&&e==&f=%26+%00%3d&g?h").arguments,
              ElementsAre(Pair("b", "c"), Pair("d", ""), Pair("", ""), Pair("e", "="),
                          Pair("f", std::string("& \0=", 4)), Pair("g?h", "")));
}

TEST(RequestTargetTest, ArgumentsHaveALimit) {
  constexpr size_t kMost = RequestTarget::kMostArguments;
  const RequestTarget most = ParseTarget("/?" + std::string(kMost, '&'));
  EXPECT_EQ(most.arguments.size(), kMost);
  EXPECT_FALSE(most.too_many_arguments);
  const RequestTarget more = ParseTarget("/?" + std::string(kMost + 1, '&'));
  EXPECT_THAT(more.arguments, IsEmpty());
  EXPECT_TRUE(more.too_many_arguments);
  EXPECT_EQ(more.path, "/");
}

TEST(RequestTargetTest, TheAbsoluteFormNamesTheHost) {
  const RequestTarget target = ParseTarget("HTTP://router:80/device?x=1");
  EXPECT_EQ(target.authority, "router:80");
  EXPECT_EQ(target.path, "/device");
  EXPECT_THAT(target.arguments, ElementsAre(Pair("x", "1")));
  EXPECT_EQ(ParseTarget("http://[fe80::1]").authority, "[fe80::1]");
  EXPECT_EQ(ParseTarget("http://[fe80::1]").path, "/");
  EXPECT_EQ(ParseTarget("http://router?x").authority, "router");
  EXPECT_EQ(ParseTarget("http://router?x").path, "/");
  EXPECT_EQ(ParseTarget("http:///device").authority, "");
  EXPECT_EQ(ParseTarget("http://evil@router/x").authority, "evil@router");
  EXPECT_FALSE(ParseTarget("https://router/device").authority.has_value());
  EXPECT_FALSE(ParseTarget("/http://router/device").authority.has_value());
}

TEST(RequestTargetTest, AnAsteriskAloneOrAHostAloneIsTheServer) {
  EXPECT_TRUE(ParseTarget("*").is_server);
  EXPECT_TRUE(ParseTarget("http://router").is_server);
  for (const char* target :
       {"/*", "**", "%2A", "*?x", "http://router/", "http://router/*", "http://router?"}) {
    EXPECT_FALSE(ParseTarget(target).is_server) << target;
  }
}

}  // namespace
}  // namespace kiohost
