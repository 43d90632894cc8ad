#include "json.h"

#include <gtest/gtest.h>

namespace kiohost {
namespace {

TEST(JsonTest, EscapesWhatJsonEscapes) {
  EXPECT_EQ(JsonString(""), R"("")");
  EXPECT_EQ(JsonString("Home router"), R"("Home router")");
  EXPECT_EQ(JsonString("a\"b\\c\n\x01/"), R"("a\"b\\c\u000a\u0001/")");
}

TEST(JsonTest, KeepsWellFormedCharacters) {
  EXPECT_EQ(JsonString("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\xB6"),
            "\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\xB6\"");
}

TEST(JsonTest, ReplacesOtherBytes) {
  EXPECT_EQ(JsonString("\xFF"), R"("\ufffd")");
  EXPECT_EQ(JsonString("\xC3"), R"("\ufffd")");                        // cut short
  EXPECT_EQ(JsonString("\xC0\xAF"), R"("\ufffd\ufffd")");              // longer than needed
  EXPECT_EQ(JsonString("\xED\xA0\x80x"), R"("\ufffd\ufffd\ufffdx")");  // a surrogate
}

}  // namespace
}  // namespace kiohost
