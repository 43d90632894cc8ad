#include "profile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

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

// What a file says, and where.
std::vector<std::string> Placed(const std::vector<ProfileNode>& nodes) {
  std::vector<std::string> lines;
  lines.reserve(nodes.size());
  for (const ProfileNode& node : nodes) {
    lines.push_back(node.place.substr(node.place.rfind('/') + 1) + ": " + node.node.path + " = " +
                    node.node.text);
  }
  return lines;
}

void WriteProfile(const std::string& file, const std::string& text) { std::ofstream(file) << text; }

TEST(ProfileTest, AFileIncludesOthersAndSaysWhatIsDifferent) {
  const TempDir dir;
  std::filesystem::create_directory(dir.File("base"));
  WriteProfile(dir.File("base/root"), "/sys/a = 1\n/sys/b = 2\n/lan/c:1 = 3\n/lan/c:1/d = 4\n");
  WriteProfile(dir.File("base/middle"), "include root\n/lan/c:10 = 5\n");
  WriteProfile(dir.File("top"),
               "# comment\ninclude  base/middle \nwithout /LAN/c:1\n/SYS/b = two\n/sys/e = 6\n");
  std::vector<ProfileNode> nodes;
  const Status status = ReadProfile(dir.File("top"), &nodes);
  ASSERT_TRUE(status.ok()) << status.reason();
  EXPECT_THAT(Placed(nodes),
              ElementsAre("root: line 1: /sys/a = 1", "top: line 4: /SYS/b = two",
                          "middle: line 2: /lan/c:10 = 5", "top: line 5: /sys/e = 6"));
}

TEST(ProfileTest, ABrokenIncludeIsNamedByItsFileAndLineAndChangesNothing) {
  const TempDir dir;
  WriteProfile(dir.File("base"), "/sys/a = 1\n");
  WriteProfile(dir.File("broken"), "/sys/a = 1\nnonsense\n");
  struct Case {
    const char* text;
    const char* reason;
  };
  for (const Case& broken :
       {Case{"include none\n", "top: line 1: cannot read the profile "},
        Case{"include .\n", "top: line 1: cannot read the profile "},
        Case{"include top\n", "top: line 1: more than 8 files"},
        Case{"\ninclude broken\n", "broken: line 2: expected"},
        Case{"/sys/b = 1\ninclude base\n", "top: line 2: an include stands before all nodes"},
        Case{"include base\nwithout /sys/b\n", "top: line 2: there is no /sys/b to leave out"},
        Case{"include\n", "top: line 1: expected"},
        Case{"includes base\n", "top: line 1: expected"},
        Case{"include base\n/sys/a = 2\n/SYS/a = 3\n", "line 3: /SYS/a stands here a second"}}) {
    WriteProfile(dir.File("top"), broken.text);
    std::vector<ProfileNode> nodes = {{.node = {"/sys/kept", "1"}, .place = "here"}};
    const Status status = ReadProfile(dir.File("top"), &nodes);
    EXPECT_EQ(status.code(), ExitCode::kProfile) << broken.text;
    EXPECT_THAT(status.reason(), HasSubstr(broken.reason));
    EXPECT_THAT(Placed(nodes), ElementsAre("here: /sys/kept = 1")) << broken.text;
  }
}

TEST(ProfileTest, ATextWithoutAFileIncludesNothing) {
  std::vector<Node> nodes;
  EXPECT_FALSE(ParseProfile("include /etc/hostname\n", &nodes).ok());
  EXPECT_FALSE(ParseProfile("/sys/a = 1\nwithout /sys/a\n", &nodes).ok());
}

TEST(ProfileTest, AFileThatCannotBeReadIsNamed) {
  std::vector<ProfileNode> nodes;
  for (const char* file : {"/nowhere/x.profile", "/tmp"}) {
    const Status status = ReadProfile(file, &nodes);
    EXPECT_EQ(status.code(), ExitCode::kProfile);
    EXPECT_THAT(status.reason(), HasSubstr(file));
  }
}

TEST(ProfileTest, TheDeliveredProfileFillsAStore) {
  std::vector<ProfileNode> nodes;
  const Status status = ReadProfile(KIO_HOST_DIR "/profiles/dual-band-router.profile", &nodes);
  ASSERT_TRUE(status.ok()) << status.reason();
  const TempDir dir;
  Store store;
  ASSERT_TRUE(store.Open(dir.File("store.db"), Store::Mode::kCreate).ok());
  ASSERT_TRUE(store.Replace(PlainNodes(nodes)).ok());
  EXPECT_EQ(store.List().size(), nodes.size());
  EXPECT_EQ(store.Get("/lan/wireless5:1/accesscontrol/acrule#"), "1");
  EXPECT_EQ(store.Get("/sys/user:1/password_validate"), "0,32,5,0,0, ");
}

}  // namespace
}  // namespace kiohost
