#include "profile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "temp_dir.h"

namespace kiohost {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST(ProfileTest, ReadsNodesCommentsAndBlankLines) {
  std::vector<Node> nodes;
  ASSERT_TRUE(ParseProfile(
                  "# head\n\n  /sys/a =  one two \t\r\n/sys/b=\n/sys/c = a=b#c\n/sys/d = 1", &nodes)
                  .ok());
  EXPECT_THAT(nodes, ElementsAre(Node{"/sys/a", "one two"}, Node{"/sys/b", ""},
                                 Node{"/sys/c", "a=b#c"}, Node{"/sys/d", "1"}));
}

TEST(ProfileTest, ReadsQuotedTexts) {
  std::vector<Node> nodes;
  ASSERT_TRUE(ParseProfile(R"(/sys/a = "  \"q\" \\ \x0a\xFf ")", &nodes).ok());
  EXPECT_THAT(nodes, ElementsAre(Node{"/sys/a", "  \"q\" \\ \n\xFF "}));
}

TEST(ProfileTest, ABrokenLineIsNamedByItsNumberAndChangesNothing) {
  const std::vector<Node> before = {{"/sys/kept", "1"}};
  for (const char* line :
       {"nonsense", "sys/a = 1", "/sys/a/ = 1", "/sys/a# = 1", "/sys/a = \"open", "/sys/a = \"",
        R"(/sys/a = "a"b")", R"(/sys/a = "\x00")", R"(/sys/a = "\x1")", R"(/sys/a = "\n")",
        R"(/sys/a = "\")", "/SYS/ok = 2"}) {
    std::vector<Node> nodes = before;
    const Status status = ParseProfile("# comment\n/sys/ok = 1\n" + std::string(line), &nodes);
    EXPECT_EQ(status.code(), ExitCode::kProfile) << line;
    EXPECT_THAT(status.reason(), HasSubstr("line 3: ")) << line;
    EXPECT_EQ(nodes, before) << line;
  }
}

TEST(ProfileTest, ATextLongerThanANodeIsABrokenLine) {
  std::vector<Node> nodes;
  EXPECT_TRUE(ParseProfile("/sys/a = " + std::string(4095, 'x'), &nodes).ok());
  EXPECT_FALSE(ParseProfile("/sys/a = " + std::string(4096, 'x'), &nodes).ok());
}

TEST(ProfileTest, WhatIsFormattedReadsBack) {
  const std::vector<Node> nodes = {{"/sys/a", ""},
                                   {"/sys/b", "plain = text"},
                                   {"/sys/c", " blank at the start"},
                                   {"/sys/d", "blank at the end "},
                                   {"/sys/e", "\"quoted\""},
                                   {"/sys/f", "two\nlines\r\\\x01\x7f"},
                                   {"/sys/g", "back\\slash \"inside\""},
                                   {"/sys/h", "\xC3\xA9"}};
  std::vector<Node> read;
  ASSERT_TRUE(ParseProfile(FormatProfile(nodes), &read).ok()) << FormatProfile(nodes);
  EXPECT_EQ(read, nodes);
  EXPECT_THAT(FormatProfile(nodes), HasSubstr("/sys/b = plain = text\n"));
}

TEST(ProfileTest, AFileThatCannotBeReadIsNamed) {
  std::vector<Node> nodes;
  for (const char* file : {"/nowhere/x.profile", "/tmp"}) {
    const Status status = ReadProfile(file, &nodes);
    EXPECT_EQ(status.code(), ExitCode::kProfile);
    EXPECT_THAT(status.reason(), HasSubstr(file));
  }
}

TEST(ProfileTest, TheDeliveredProfileFillsAStore) {
  std::vector<Node> nodes;
  const Status status = ReadProfile(KIO_HOST_DIR "/profiles/dual-band-router.profile", &nodes);
  ASSERT_TRUE(status.ok()) << status.reason();
  const TempDir dir;
  Store store;
  ASSERT_TRUE(store.Open(dir.File("store.db"), Store::Mode::kCreate).ok());
  ASSERT_TRUE(store.Replace(nodes).ok());
  EXPECT_EQ(store.List().size(), nodes.size());
  EXPECT_EQ(store.Get("/lan/wireless5:1/accesscontrol/acrule#"), "1");
  EXPECT_EQ(store.Get("/sys/user:1/password_validate"), "0,32,5,0,0, ");
}

}  // namespace
}  // namespace kiohost
