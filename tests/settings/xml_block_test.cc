// Blocks, their path texts, and the report of missing elements.
#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kioapp/kioapp.h"
#include "settings/lost_keys.h"
#include "support/exchange.h"
#include "support/guarded_text.h"
#include "testing/heap_chars.h"

namespace kio::test {
namespace {

using ::testing::HasSubstr;

class BlockTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    Reports().clear();
    XmlErrMsg_LostKey = Record;
  }
};

constexpr const char* kText = "<a><b>one</b></a><c/>";

TEST_F(BlockTest, FindsTheBlockAndBuildsItsPath) {
  const GuardedText text(kText);
  HeapChars<128> path("before");
  int length = -1;
  EXPECT_EQ(prepareXmlBlockData("Device", text.get(), 0, "A", path, &length), text.get() + 3);
  EXPECT_EQ(length, 10);
  EXPECT_STREQ(path, "Device/A");
  EXPECT_TRUE(Reports().empty());
}

TEST_F(BlockTest, PathWithoutParentIsTheKey) {
  const GuardedText text(kText);
  HeapChars<128> path("before");
  int length = -1;
  EXPECT_NE(prepareXmlBlockData(nullptr, text.get(), 0, "a", path, &length), nullptr);
  EXPECT_STREQ(path, "a");
  EXPECT_NE(prepareXmlBlockData("", text.get(), 0, "b", path, &length), nullptr);
  EXPECT_STREQ(path, "b");
  EXPECT_EQ(length, 3);
}

TEST_F(BlockTest, EmptyElementIsABlockOfLengthZero) {
  const GuardedText text(kText);
  HeapChars<128> path;
  int length = -1;
  EXPECT_EQ(prepareXmlBlockData("P", text.get(), 0, "c", path, &length), text.get() + 17);
  EXPECT_EQ(length, 0);
}

TEST_F(BlockTest, PathIsCutAt127Characters) {
  const GuardedText text(kText);
  const std::string parent(126, 'p');
  HeapChars<144> path;
  std::fill(std::begin(path), std::end(path), '#');
  int length = -1;
  EXPECT_NE(prepareXmlBlockData(parent.c_str(), text.get(), 0, "a", path, &length), nullptr);
  EXPECT_EQ(std::string(path), parent + "/");
  EXPECT_EQ(std::string(path + 128, 16), std::string(16, '#'));
  const std::string longer(300, 'q');
  EXPECT_NE(prepareXmlBlockData(longer.c_str(), text.get(), 0, "a", path, &length), nullptr);
  EXPECT_EQ(std::string(path), std::string(127, 'q'));
  EXPECT_EQ(std::string(path + 128, 16), std::string(16, '#'));
}

TEST_F(BlockTest, MissingBlockIsReportedWithoutAPath) {
  const GuardedText text(kText);
  HeapChars<128> path("before");
  int length = -1;
  EXPECT_EQ(prepareXmlBlockData("Device", text.get(), 0, "d", path, &length), nullptr);
  EXPECT_EQ(Reports(), (std::vector<Report>{{std::nullopt, "d"}}));
  EXPECT_STREQ(path, "before");
}

TEST_F(BlockTest, LengthBoundsTheSearch) {
  const GuardedText text(kText);
  HeapChars<128> path("before");
  int length = -1;
  EXPECT_EQ(prepareXmlBlockData("Device", text.get(), 17, "c", path, &length), nullptr);
  EXPECT_EQ(prepareXmlBlockData("Device", text.get(), 13, "b", path, &length), text.get() + 6);
}

TEST_F(BlockTest, LogsItsName) {
  log_file::Start(7);
  const GuardedText text(kText);
  HeapChars<128> path;
  int length = 0;
  prepareXmlBlockData("Device", text.get(), 0, "a", path, &length);
  EXPECT_THAT(log_file::Contents(), HasSubstr("prepareXmlBlockData"));
}

// An empty element has length 0, which a later search takes as reaching to the end of the text.
TEST_F(BlockTest, SearchInsideAnEmptyBlockCoversTheRestOfTheText) {
  const GuardedText text("<x><Channel/></x><y><deep>7</deep></y>");
  int length = -1;
  char* block = FindXmlKeyContain(text.get(), 17, "Channel", &length);
  ASSERT_EQ(block, text.get() + 3);
  ASSERT_EQ(length, 0);
  int value = 0;
  EXPECT_EQ(GetXmlKeyIntValue_(block, length, "deep", &value), 1);
  EXPECT_EQ(value, 7);
}

TEST_F(BlockTest, MissingTextIsReportedWithThePath) {
  const GuardedText text(kText);
  HeapChars<16> value("before");
  EXPECT_EQ(GetXmlKeyStrValue(text.get(), 0, "Device/X", "d", value, value.size()), 0);
  EXPECT_STREQ(value, "");
  EXPECT_EQ(Reports(), (std::vector<Report>{{"Device/X", "d"}}));
}

TEST_F(BlockTest, MissingIntegerIsReportedWithThePath) {
  const GuardedText text(kText);
  int value = 42;
  EXPECT_EQ(GetXmlKeyIntValue(text.get(), 0, "Device/X", "e", &value), 0);
  EXPECT_EQ(value, 42);
  EXPECT_EQ(Reports(), (std::vector<Report>{{"Device/X", "e"}}));
}

TEST_F(BlockTest, PresentValuesAreNotReported) {
  const GuardedText text("<s>text</s><n>5</n>");
  HeapChars<16> value;
  int number = 0;
  EXPECT_EQ(GetXmlKeyStrValue(text.get(), 0, "P", "S", value, value.size()), 1);
  EXPECT_STREQ(value, "text");
  EXPECT_EQ(GetXmlKeyIntValue(text.get(), 0, "P", "N", &number), 1);
  EXPECT_EQ(number, 5);
  EXPECT_TRUE(Reports().empty());
}

TEST_F(BlockTest, PlainReadersAreQuiet) {
  const GuardedText text(kText);
  HeapChars<16> value;
  int number = 0;
  EXPECT_EQ(GetXmlKeyStrValue_(text.get(), 0, "d", value, value.size()), 0);
  EXPECT_EQ(GetXmlKeyIntValue_(text.get(), 0, "d", &number), 0);
  EXPECT_TRUE(Reports().empty());
}

TEST_F(BlockTest, NoHookNoReport) {
  XmlErrMsg_LostKey = nullptr;
  const GuardedText text(kText);
  HeapChars<128> path("before");
  HeapChars<16> value("before");
  int number = 42;
  EXPECT_EQ(prepareXmlBlockData("P", text.get(), 0, "d", path, &number), nullptr);
  EXPECT_EQ(GetXmlKeyStrValue(text.get(), 0, "P", "d", value, value.size()), 0);
  EXPECT_EQ(GetXmlKeyIntValue(text.get(), 0, "P", "d", &number), 0);
  EXPECT_TRUE(Reports().empty());
}

}  // namespace
}  // namespace kio::test
