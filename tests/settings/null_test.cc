// Null pointers given to the XML functions and to the functions of the store.
#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "settings/lost_keys.h"
#include "support/exchange.h"
#include "support/guarded_text.h"
#include "testing/heap_chars.h"

namespace kio::test {
namespace {

class NullTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    Reports().clear();
    XmlErrMsg_LostKey = Record;
  }

  const GuardedText text_{"<a>12</a>"};
};

TEST_F(NullTest, NothingIsFoundInNothingOrForNothing) {
  EXPECT_EQ(strstri(nullptr, "a"), nullptr);
  EXPECT_EQ(strstri("a", nullptr), nullptr);
  EXPECT_EQ(SearchKeyArray(nullptr, DeviceTypeArray), -1);
  HeapChars word("AP");
  EXPECT_EQ(SearchKeyArray(word, nullptr), -1);
  EXPECT_STREQ(word, "AP");
}

TEST_F(NullTest, BlockWithoutAKeyIsNeitherFoundNorReported) {
  HeapChars<128> path("before");
  int length = 42;
  EXPECT_EQ(prepareXmlBlockData("P", text_.get(), 0, nullptr, path, &length), nullptr);
  EXPECT_STREQ(path, "before");
  EXPECT_EQ(length, 42);
  EXPECT_TRUE(Reports().empty());
}

TEST_F(NullTest, MissingTextHasNoBlock) {
  HeapChars<128> path("before");
  int length = 42;
  EXPECT_EQ(prepareXmlBlockData("P", nullptr, 0, "a", path, &length), nullptr);
  EXPECT_STREQ(path, "before");
  EXPECT_EQ(length, 0);
  EXPECT_EQ(Reports(), (std::vector<Report>{{std::nullopt, "a"}}));
}

TEST_F(NullTest, PathAndLengthOfABlockNeedNotBeAskedFor) {
  EXPECT_EQ(prepareXmlBlockData("P", text_.get(), 0, "a", nullptr, nullptr), text_.get() + 3);
  EXPECT_EQ(prepareXmlBlockData("P", text_.get(), 0, "b", nullptr, nullptr), nullptr);
}

TEST_F(NullTest, ValuesWithoutABlockAKeyOrAPlaceAreNotRead) {
  HeapChars<16> value("before");
  int number = 42;
  EXPECT_EQ(GetXmlKeyStrValue_(nullptr, 0, "a", value, value.size()), 0);
  EXPECT_EQ(GetXmlKeyStrValue_(text_.get(), 0, nullptr, value, value.size()), 0);
  EXPECT_EQ(GetXmlKeyStrValue_(text_.get(), 0, "a", nullptr, 16), 0);
  EXPECT_EQ(GetXmlKeyIntValue_(nullptr, 0, "a", &number), 0);
  EXPECT_EQ(GetXmlKeyIntValue_(text_.get(), 0, nullptr, &number), 0);
  EXPECT_EQ(GetXmlKeyIntValue_(text_.get(), 0, "a", nullptr), 0);
  EXPECT_STREQ(value, "before");
  EXPECT_EQ(number, 42);
}

TEST_F(NullTest, NullKeyIsNotReported) {
  HeapChars<16> value("before");
  int number = 42;
  EXPECT_EQ(GetXmlKeyStrValue(text_.get(), 0, "P", nullptr, value, value.size()), 0);
  EXPECT_EQ(GetXmlKeyIntValue(text_.get(), 0, "P", nullptr, &number), 0);
  EXPECT_TRUE(Reports().empty());
}

TEST_F(NullTest, SectionsWithoutAPlaceAreNotRead) {
  const GuardedText version("<v><major>1</major><minor>1</minor></v>");
  EXPECT_EQ(do_XmlSpecVersion_Parser("P", version.get(), 0, nullptr, "v"), 0);
  EXPECT_EQ(do_RssISP_Parser("P", text_.get(), 0, nullptr, "a"), 0);
  EXPECT_EQ(do_RssExtender_Parser("P", text_.get(), 0, nullptr), 0);
  EXPECT_TRUE(Reports().empty());
}

TEST_F(NullTest, NullDocumentIsOneWithoutARoot) {
  EXPECT_EQ(do_RssXml_Parser(nullptr), 0);
  EXPECT_EQ(do_RssXml_Parser_for_ApCloning(nullptr), 0);
  EXPECT_TRUE(Host().commands().empty());
  EXPECT_TRUE(Host().Writes().empty());
}

TEST_F(NullTest, MaximumNeedNotBeTold) {
  Host().Set("/n", 0);
  EXPECT_EQ(IntMaxCmpWithXStr(2, "/n", 0, 1, nullptr), 0);
  EXPECT_EQ(Host().Text("/n"), "0");
  EXPECT_EQ(IntMaxCmpWithXStr(1, "/n", 0, 1, nullptr), 1);
  EXPECT_EQ(Host().Text("/n"), "1");
}

TEST_F(NullTest, NodeWithoutAPlaceIsNotRead) {
  EXPECT_EQ(getXNode(nullptr, "/n", "default"), nullptr);
  EXPECT_EQ(getXNode_(nullptr, "/n", "default", 1), nullptr);
  EXPECT_TRUE(Host().calls().empty());
}

TEST_F(NullTest, MessageOfTheRecordItselfStays) {
  std::snprintf(rssXmlData.setMsg, sizeof(rssXmlData.setMsg), "the message");
  EXPECT_EQ(write_RssXml_ResultXml(3, rssXmlData.setMsg, 7), 0);
  EXPECT_STREQ(rssXmlData.setMsg, "the message");
  EXPECT_EQ(Host().commands(), ResultCommands(3, "the message", 7, ""));
  EXPECT_EQ(write_RssXml_ResultXml(3, nullptr, 7), 0);
  EXPECT_STREQ(rssXmlData.setMsg, "");
}

}  // namespace
}  // namespace kio::test
