// Reading the values of elements.
#include <array>
#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/guarded_text.h"
#include "testing/heap_chars.h"

namespace kio::test {
namespace {

// A value read into a buffer of `cap` bytes that was full of '#', with the bytes behind it.
struct Value {
  int result;
  std::string text;

  bool operator==(const Value&) const = default;
};

void PrintTo(const Value& value, std::ostream* out) {
  *out << value.result << " '" << value.text << "'";
}

Value Read(const std::string& document, const char* key, int cap, int len = 0) {
  const GuardedText text(document);
  constexpr std::size_t kGuard = 16;
  const auto size = static_cast<std::size_t>(cap);
  std::vector<char> buffer(size + kGuard, '#');
  const int result = GetXmlKeyStrValue_(text.get(), len, key, buffer.data(), cap);
  EXPECT_EQ(std::string(buffer.end() - kGuard, buffer.end()), std::string(kGuard, '#'))
      << "written behind the buffer";
  EXPECT_LT(strnlen(buffer.data(), buffer.size()), size) << "not terminated";
  return {result, buffer.data()};
}

TEST(XmlValueTest, ReadsAndDecodes) {
  EXPECT_EQ(Read("<a>one</a>", "a", 32), (Value{1, "one"}));
  EXPECT_EQ(Read("<a>1 &lt; 2 &amp; 3&#160;x&apos;</a>", "a", 64), (Value{1, "1 < 2 & 3 x'"}));
  EXPECT_EQ(Read("<a>&unknown;</a>", "a", 32), (Value{1, "&unknown;"}));
}

TEST(XmlValueTest, DoesNotTrim) {
  EXPECT_EQ(Read("<a>  one\t\n</a>", "a", 32), (Value{1, "  one\t\n"}));
}

TEST(XmlValueTest, EmptyValuesArePresent) {
  EXPECT_EQ(Read("<a></a>", "a", 32), (Value{1, ""}));
  EXPECT_EQ(Read("<a/>", "a", 32), (Value{1, ""}));
  EXPECT_EQ(Read("<a />", "a", 32), (Value{1, ""}));
}

TEST(XmlValueTest, MissingEmptiesTheBuffer) {
  EXPECT_EQ(Read("<b>one</b>", "a", 32), (Value{0, ""}));
  EXPECT_EQ(Read("<a>one", "a", 32), (Value{0, ""}));
  EXPECT_EQ(Read("", "a", 1), (Value{0, ""}));
}

TEST(XmlValueTest, LengthBoundsTheSearch) {
  EXPECT_EQ(Read("<a>one</a>", "a", 32, 10), (Value{1, "one"}));
  EXPECT_EQ(Read("<a>one</a>", "a", 32, 9), (Value{0, ""}));
  EXPECT_EQ(Read("<a>one</a>", "a", 32, -1), (Value{1, "one"}));
}

TEST(XmlValueTest, CapacityCuts) {
  EXPECT_EQ(Read("<a>abcdef</a>", "a", 1), (Value{1, ""}));
  EXPECT_EQ(Read("<a>abcdef</a>", "a", 2), (Value{1, "a"}));
  EXPECT_EQ(Read("<a>abcdef</a>", "a", 6), (Value{1, "abcde"}));
  EXPECT_EQ(Read("<a>abcdef</a>", "a", 7), (Value{1, "abcdef"}));
  EXPECT_EQ(Read("<a>abcdef</a>", "a", 8), (Value{1, "abcdef"}));
}

TEST(XmlValueTest, LongValueGivesIts127FirstRawCharactersDecoded) {
  const std::string value = "&lt;" + std::string(196, 'v');
  EXPECT_EQ(Read("<a>" + value + "</a>", "a", 128), (Value{1, "<" + std::string(123, 'v')}));
}

TEST(XmlValueTest, CutCountsRawCharacters) {
  // Four entities of five raw characters each; 12 raw characters hold two and a part of the third.
  EXPECT_EQ(Read("<a>&amp;&amp;&amp;&amp;</a>", "a", 11), (Value{1, "&&"}));
  EXPECT_EQ(Read("<a>&amp;&amp;&amp;&amp;</a>", "a", 21), (Value{1, "&&&&"}));
}

// Never more than the characters before the cut are looked at: an entity that the cut divides stays
// as it stands.
TEST(XmlValueTest, EntityDividedByTheCutIsNotDecoded) {
  const std::string document = "<a>ab&lt;cd</a>";
  EXPECT_EQ(Read(document, "a", 4), (Value{1, "ab&"}));
  EXPECT_EQ(Read(document, "a", 5), (Value{1, "ab&l"}));
  EXPECT_EQ(Read(document, "a", 6), (Value{1, "ab&lt"}));
  EXPECT_EQ(Read(document, "a", 7), (Value{1, "ab<"}));
  EXPECT_EQ(Read(document, "a", 8), (Value{1, "ab<c"}));
}

// The decoded text is shorter than the raw one; what the buffer held before must not show.
TEST(XmlValueTest, DecodingLeavesNoStaleCharacters) {
  EXPECT_EQ(Read("<a>&lt;</a>", "a", 32), (Value{1, "<"}));
  EXPECT_EQ(Read("<a>&lt;&gt;&quot;</a>", "a", 15), (Value{1, "<>\""}));
  EXPECT_EQ(Read("<a>&nbsp;&#39;</a>", "a", 12), (Value{1, " '"}));
}

TEST(XmlValueTest, ValueAtAllEntitiesOfTheTable) {
  EXPECT_EQ(Read("<a>&nbsp;&lt;&gt;&amp;&quot;&apos;&#160;&#60;&#62;&#38;&#34;&#39;</a>", "a", 128),
            (Value{1, " <>&\"' <>&\"'"}));
}

TEST(XmlValueTest, NullArgumentsLeaveTheBufferUntouched) {
  std::string text = "<a>one</a>";
  HeapChars<8> buffer("before");
  EXPECT_EQ(GetXmlKeyStrValue_(nullptr, 0, "a", buffer, buffer.size()), 0);
  EXPECT_STREQ(buffer, "before");
  EXPECT_EQ(GetXmlKeyStrValue_(text.data(), 0, nullptr, buffer, buffer.size()), 0);
  EXPECT_STREQ(buffer, "before");
  EXPECT_EQ(GetXmlKeyStrValue_(text.data(), 0, "a", nullptr, 8), 0);
}

TEST(XmlValueTest, NoCapacityIsNotFound) {
  std::string text = "<a>one</a>";
  HeapChars<8> buffer("before");
  EXPECT_EQ(GetXmlKeyStrValue_(text.data(), 0, "a", buffer, 0), 0);
}

TEST(XmlValueTest, DocumentIsNotChanged) {
  std::string text = "<a>&lt;one</a><b>2</b>";
  const std::string before = text;
  HeapChars<4> buffer;
  int number = 0;
  GetXmlKeyStrValue_(text.data(), 14, "a", buffer, buffer.size());
  GetXmlKeyIntValue_(text.data(), 20, "b", &number);
  EXPECT_EQ(text, before);
}

struct Number {
  const char* text;
  int expected;
};

TEST(XmlIntTest, ReadsAsAtoi) {
  static constexpr Number kNumbers[] = {{"12", 12},
                                        {"12x", 12},
                                        {"abc", 0},
                                        {"", 0},
                                        {"-7", -7},
                                        {" \t 9", 9},
                                        {"+3", 3},
                                        {"0x10", 0},
                                        {"1.9", 1},
                                        {"1:2", 1},
                                        {"007", 7},
                                        {"&#160;5", 5},
                                        {"1&lt;", 1},
                                        {"2 3", 2},
                                        {"--1", 0},
                                        {"2147483647", INT_MAX},
                                        {"-2147483648", INT_MIN}};
  for (const Number& number : kNumbers) {
    const GuardedText text("<n>" + std::string(number.text) + "</n>");
    int value = -99;
    EXPECT_EQ(GetXmlKeyIntValue_(text.get(), 0, "N", &value), 1) << number.text;
    EXPECT_EQ(value, number.expected) << number.text;
  }
}

TEST(XmlIntTest, MissingLeavesTheNumberUnchanged) {
  std::string text = "<m>5</m><n>7";
  int value = 42;
  EXPECT_EQ(GetXmlKeyIntValue_(text.data(), 0, "n", &value), 0);
  EXPECT_EQ(value, 42);
  EXPECT_EQ(GetXmlKeyIntValue_(text.data(), 0, "o", &value), 0);
  EXPECT_EQ(value, 42);
  EXPECT_EQ(GetXmlKeyIntValue_(nullptr, 0, "m", &value), 0);
  EXPECT_EQ(value, 42);
}

TEST(XmlIntTest, EmptyElementIsZero) {
  std::string text = "<n/>";
  int value = 42;
  EXPECT_EQ(GetXmlKeyIntValue_(text.data(), 0, "n", &value), 1);
  EXPECT_EQ(value, 0);
}

TEST(XmlIntTest, LooksAt127CharactersAtMost) {
  std::string near = "<n>" + std::string(126, ' ') + "45</n>";
  std::string beyond = "<n>" + std::string(127, ' ') + "45</n>";
  int value = -1;
  EXPECT_EQ(GetXmlKeyIntValue_(near.data(), 0, "n", &value), 1);
  EXPECT_EQ(value, 4);
  EXPECT_EQ(GetXmlKeyIntValue_(beyond.data(), 0, "n", &value), 1);
  EXPECT_EQ(value, 0);
}

TEST(XmlIntTest, HugeNumbersDoNoHarm) {
  std::string text = "<n>99999999999999999999999999</n>";
  int value = 0;
  EXPECT_EQ(GetXmlKeyIntValue_(text.data(), 0, "n", &value), 1);
}

}  // namespace
}  // namespace kio::test
