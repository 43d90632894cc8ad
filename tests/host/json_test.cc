#include "json.h"

#include <gtest/gtest.h>

namespace kiohost {
namespace {

TEST(JsonTest, EscapesWhatJsonEscapes) {
  EXPECT_EQ(JsonString(""), R"("")");
  EXPECT_EQ(JsonString("Home router"), R"("Home router")");
  EXPECT_EQ(JsonString("a\"b\\c\n\x01/"), R"("a\"b\\c\n\u0001/")");
}

TEST(JsonTest, KeepsWellFormedCharacters) {
  EXPECT_EQ(JsonString("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\xB6"),
            "\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\xB6\"");
}

TEST(JsonTest, ReplacesOtherBytes) {
  EXPECT_EQ(JsonString("\xFF"), "\"\xEF\xBF\xBD\"");
  EXPECT_EQ(JsonString("\xC3"), "\"\xEF\xBF\xBD\"");                  // cut short
  EXPECT_EQ(JsonString("\xC0\xAF"), "\"\xEF\xBF\xBD\xEF\xBF\xBD\"");  // longer than needed
  EXPECT_EQ(JsonString("\xF5x"), "\"\xEF\xBF\xBDx\"");                // beyond Unicode
}

TEST(JsonTest, ADocumentKeepsTheOrderOfItsMembersAndReadsBack) {
  const Json value = {{"z", "\xFF\n"}, {"a", Json::array({1, nullptr})}};
  EXPECT_EQ(JsonText(value),
            "{\n  \"z\": \"\xEF\xBF\xBD\\n\",\n  \"a\": [\n    1,\n    null\n  ]\n}\n");
  EXPECT_EQ(Json::parse(JsonText(value))["a"][0], 1);
}

}  // namespace
}  // namespace kiohost
