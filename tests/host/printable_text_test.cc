#include "printable_text.h"

#include <gtest/gtest.h>

#include <string>

namespace kiohost {
namespace {

TEST(PrintableTextTest, KeepsWhatCanBePrinted) {
  EXPECT_EQ(PrintableText(""), "");
  EXPECT_EQ(PrintableText(" Home router, 'a' \"b\" %s ~"), " Home router, 'a' \"b\" %s ~");
  const std::string characters =
      "\xC2\xA0\xC3\xA9\xE2\x82\xAC\xEF\xBF\xBD\xF0\x9F\x93\xB6\xF4\x8F\xBF\xBF";
  EXPECT_EQ(PrintableText(characters), characters);
}

TEST(PrintableTextTest, EscapesControlCharacters) {
  EXPECT_EQ(PrintableText("a\nb\r\nc\td"), R"(a\nb\r\nc\td)");
  EXPECT_EQ(PrintableText("\x1b[31m\x07\x7f"), R"(\x1b[31m\x07\x7f)");
  EXPECT_EQ(PrintableText(std::string("a\0b", 3)), R"(a\x00b)");
  EXPECT_EQ(PrintableText("\xC2\x9B"
                          "31m\xC2\x80\xC2\x9F"),
            R"(\xc2\x9b31m\xc2\x80\xc2\x9f)");
}

TEST(PrintableTextTest, EscapesEveryControlByteOfASCII) {
  for (int c = 0; c < 0x80; ++c) {
    const std::string text(1, static_cast<char>(c));
    const bool kept = c >= ' ' && c != '\\' && c != 0x7f;
    EXPECT_EQ(PrintableText(text) == text, kept) << c;
  }
}

TEST(PrintableTextTest, ABackslashIsNoEscape) { EXPECT_EQ(PrintableText(R"(a\nb)"), R"(a\\nb)"); }

TEST(PrintableTextTest, EscapesBytesThatAreNoCharacters) {
  EXPECT_EQ(PrintableText("\xFF\x80x"), R"(\xff\x80x)");
  EXPECT_EQ(PrintableText("\xC3"), R"(\xc3)");                          // cut short
  EXPECT_EQ(PrintableText("\xE2\x82"), R"(\xe2\x82)");                  // cut short
  EXPECT_EQ(PrintableText("\xC3\n"), R"(\xc3\n)");                      // a line end for a tail
  EXPECT_EQ(PrintableText("\xC0\x8A"), R"(\xc0\x8a)");                  // a longer form of \n
  EXPECT_EQ(PrintableText("\xED\xA0\x80x"), R"(\xed\xa0\x80x)");        // a surrogate
  EXPECT_EQ(PrintableText("\xF4\x90\x80\x80"), R"(\xf4\x90\x80\x80)");  // beyond the last one
}

}  // namespace
}  // namespace kiohost
