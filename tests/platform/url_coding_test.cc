#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "coder.h"
#include "kioapp/text.h"
#include "testing/heap_chars.h"

namespace kio::test {
namespace {

using namespace std::string_literals;

TEST(UrlCoding, NullAndLimits) {
  for (const Coder coder : {strncpy_HtmlDecode, strncpy_HtmlEncode}) {
    EXPECT_EQ(coder(nullptr, "a", 5), nullptr);
    EXPECT_EQ(coder(nullptr, nullptr, 0), nullptr);
    HeapChars<4> text("xyz");
    EXPECT_EQ(coder(text, nullptr, 5), text.array());
    EXPECT_STREQ(text, "");
    for (const int n : {0, -1, INT_MIN}) {
      EXPECT_EQ(Written(coder, "abc", n, 3), "\0~~"s);
    }
    EXPECT_EQ(Written(coder, "", 1, 2), "\0~"s);
    EXPECT_EQ(Written(coder, "abc", INT_MAX, 4), "abc\0"s);
  }
}

TEST(UrlDecode, Samples) {
  const std::vector<std::pair<std::string, std::string>> samples = {
      {"a%20b+c", "a b c"}, {"%4", "%4"},          {"%", "%"},     {"a%", "a%"},
      {"%41%42", "AB"},     {"%4a%4A", "JJ"},      {"+++", "   "}, {"%2B%25", "+%"},
      {"&amp;", "&amp;"},   {"%e4%FC", "\xE4\xFC"}};
  for (const auto& [src, expected] : samples) {
    EXPECT_EQ(Text(strncpy_HtmlDecode, src), expected) << src;
  }
}

TEST(UrlDecode, OtherDigitsGiveWhatTheFormulaYields) {
  const auto decoded = [](int high, int low) {
    return std::string(1, static_cast<char>(high * 16 | low));
  };
  EXPECT_EQ(Text(strncpy_HtmlDecode, "%zz"), decoded('z' - 87, 'z' - 87));
  EXPECT_EQ(Text(strncpy_HtmlDecode, "%GZ"), decoded('g' - 87, 'z' - 87));
  EXPECT_EQ(Text(strncpy_HtmlDecode, "%%41"), decoded('%' - 87, 4) + "1");
  EXPECT_EQ(Text(strncpy_HtmlDecode, "%4 "), decoded(4, ' ' - 87));
  EXPECT_EQ(Text(strncpy_HtmlDecode, "%\xE4\xFF"), decoded(0xE4 - 87, 0xFF - 87));
}

TEST(UrlDecode, EscapedTerminatorDoesNotEndTheCopy) {
  EXPECT_EQ(Written(strncpy_HtmlDecode, "a%00b", 10, 6), "a\0b\0~~"s);
}

TEST(UrlDecode, LimitLeavesNoTerminator) {
  const std::string src = "a%20b+%41";
  const std::string decoded = "a b A";
  for (int n = 1; n <= static_cast<int>(src.size()) + 2; ++n) {
    const std::size_t count = std::min<std::size_t>(static_cast<std::size_t>(n), 6);
    EXPECT_EQ(Written(strncpy_HtmlDecode, src, n, count), (decoded + '\0').substr(0, count)) << n;
  }
}

TEST(UrlDecode, WorksInPlace) {
  HeapChars text("%41+%42%43");
  EXPECT_STREQ(strncpy_HtmlDecode(text, text, 64), "A BC");
}

TEST(UrlEncode, Samples) {
  const std::vector<std::pair<std::string, std::string>> samples = {
      {"a b/c", "a+b%2Fc"}, {"AZaz09-._", "AZaz09-._"}, {"~*/", "%7E%2A%2F"}, {"+%", "%2B%25"},
      {"\n", "%0A"},        {"@[`{", "%40%5B%60%7B"},   {"/:,", "%2F%3A%2C"}};
  for (const auto& [src, expected] : samples) {
    EXPECT_EQ(Text(strncpy_HtmlEncode, src), expected) << src;
  }
}

TEST(UrlEncode, HighBytesShowTheirUpperHalf) {
  EXPECT_EQ(Text(strncpy_HtmlEncode, "\x80\xC3\xA4\xFF"), "%80%C3%A4%FF");
}

TEST(UrlEncode, EscapeBegunWithOneUnitWritesTwoCharacters) {
  // Always one character beyond the budget, and no terminator.
  EXPECT_EQ(Written(strncpy_HtmlEncode, "a b/c", 4, 6), "a+b%2~");
  EXPECT_EQ(Written(strncpy_HtmlEncode, "/", 1, 3), "%2~");
}

TEST(UrlEncode, BudgetOfEachSize) {
  const std::vector<std::pair<int, std::string>> outputs = {
      {1, "a"},      {2, "a+"},      {3, "a+b"},        {4, "a+b%2"},     {5, "a+b%2"},
      {6, "a+b%2F"}, {7, "a+b%2Fc"}, {8, "a+b%2Fc\0"s}, {9, "a+b%2Fc\0"s}};
  for (const auto& [n, output] : outputs) {
    // The buffer ends with the output; a second one shows that nothing follows it.
    EXPECT_EQ(Written(strncpy_HtmlEncode, "a b/c", n, output.size()), output) << n;
    EXPECT_EQ(Written(strncpy_HtmlEncode, "a b/c", n, output.size() + 1), output + "~") << n;
  }
}

TEST(UrlEncode, NeverMoreThanOneBeyondTheBudget) {
  const std::string src = "/a//b /";
  for (int n = 1; n < 30; ++n) {
    const auto size = static_cast<std::size_t>(n) + 1;
    EXPECT_EQ(Written(strncpy_HtmlEncode, src, n, size).size(), size);
  }
}

TEST(UrlCoding, EveryByteComesBack) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string text = {'<', static_cast<char>(byte), '>'};
    const std::string encoded = Text(strncpy_HtmlEncode, text);
    EXPECT_EQ(Text(strncpy_HtmlDecode, encoded), text) << byte;
    const bool plain = std::isalnum(byte) != 0 || byte == '-' || byte == '.' || byte == '_';
    EXPECT_EQ(encoded.size(), 6U + (plain || byte == ' ' ? 1 : 3)) << byte;
  }
  std::string all;
  for (int byte = 1; byte < 256; ++byte) {
    all.push_back(static_cast<char>(byte));
  }
  EXPECT_EQ(Text(strncpy_HtmlDecode, Text(strncpy_HtmlEncode, all, 1000), 1000), all);
}

}  // namespace
}  // namespace kio::test
