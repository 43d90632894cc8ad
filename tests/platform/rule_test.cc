#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "guarded.h"
#include "kioapp/settings.h"
#include "kioapp/validate.h"

namespace kio::test {
namespace {

int Judge(const std::string& value, const std::string& rule) {
  return validate_RssData(Guarded(std::string_view(value)).data(),
                          Guarded(std::string_view(rule)).data());
}

TEST(Rule, MissingValueOrRule) {
  EXPECT_EQ(validate_RssData(nullptr, nullptr), 3);
  EXPECT_EQ(validate_RssData(nullptr, "0,32,0"), 3);
  EXPECT_EQ(validate_RssData(nullptr, "2"), 3);
  EXPECT_EQ(validate_RssData("", nullptr), 3);
  EXPECT_EQ(validate_RssData("\x01", nullptr), 0);
}

TEST(Rule, EmptyRuleWantsOneToManyPrintableCharacters) {
  EXPECT_EQ(Judge("", ""), 10);
  EXPECT_EQ(Judge("x", ""), 0);
  EXPECT_EQ(Judge("\t", ""), 11);
  EXPECT_EQ(Judge(std::string(9999, 'x'), ""), 0);
  EXPECT_EQ(Judge(std::string(10000, 'x'), ""), 10);
}

TEST(Rule, OtherKindsAcceptAnything) {
  for (const char* const rule : {"2", "2,1,1", "-1", "10", "99999999999", "3,0,0,0,1"}) {
    EXPECT_EQ(Judge("", rule), 0) << rule;
    EXPECT_EQ(Judge("\x01\xFF", rule), 0) << rule;
  }
}

TEST(Rule, KindIsTheNumberThatTheFieldBeginsWith) {
  EXPECT_EQ(Judge("", " 1x"), 0);  // a number rule: an empty value is 0
  EXPECT_EQ(Judge("", "x1"), 10);  // a text rule
  EXPECT_EQ(Judge("", ",32"), 10);
  EXPECT_EQ(Judge("", "\\,1"), 10);
}

// Number rules.

TEST(NumberRule, Bounds) {
  const std::vector<std::pair<std::string, int>> values = {
      {"1", 0},     {"14", 0},   {"7.5", 0},  {"15", 20},  {"14.001", 20}, {"0", 21},
      {"0.99", 21}, {"-3", 21},  {"abc", 21}, {"", 21},    {"7abc", 0},    {" 7", 0},
      {"1e1", 0},   {"1e2", 20}, {"0x0A", 0}, {"inf", 20}, {"-inf", 21},   {"1e999", 20}};
  for (const auto& [value, code] : values) {
    EXPECT_EQ(Judge(value, "1,14,1"), code) << value;
  }
}

TEST(NumberRule, MissingBounds) {
  EXPECT_EQ(Judge("1e37", "1"), 0);
  EXPECT_EQ(Judge("-1e37", "1"), 0);
  EXPECT_EQ(Judge("1e38", "1"), 0);
  EXPECT_EQ(Judge("2e38", "1"), 20);
  EXPECT_EQ(Judge("-2e38", "1"), 21);
  EXPECT_EQ(Judge("-1000", "1,14"), 0);
  EXPECT_EQ(Judge("15", "1,14"), 20);
}

TEST(NumberRule, EmptyBoundsAreZero) {
  EXPECT_EQ(Judge("1", "1,"), 20);
  EXPECT_EQ(Judge("-1", "1,,"), 21);
  EXPECT_EQ(Judge("0", "1,,"), 0);
}

TEST(NumberRule, MaximumIsLookedAtFirst) { EXPECT_EQ(Judge("5", "1,1,10"), 20); }

TEST(NumberRule, ComparisonIsInSinglePrecision) {
  EXPECT_EQ(Judge("16777217", "1,16777216,1"), 0);  // rounds to 16777216
  EXPECT_EQ(Judge("16777218", "1,16777216,1"), 20);
  EXPECT_EQ(Judge("0.1", "1,0.1,0.1"), 0);
  EXPECT_EQ(Judge("0.1000000001", "1,0.1,0.1"), 0);
}

TEST(NumberRule, UnorderedValuesPass) {
  EXPECT_EQ(Judge("nan", "1,14,1"), 0);
  EXPECT_EQ(Judge("99", "1,nan,nan"), 0);
  EXPECT_EQ(Judge("NaN", "1"), 0);
}

TEST(NumberRule, CharactersAreNotLookedAt) { EXPECT_EQ(Judge("7\x01", "1,14,1,0,1"), 0); }

// Text rules.

TEST(TextRule, Lengths) {
  for (std::size_t length = 0; length <= 40; ++length) {
    EXPECT_EQ(Judge(std::string(length, 'x'), "0,32,1"), length >= 1 && length <= 32 ? 0 : 10);
    EXPECT_EQ(Judge(std::string(length, 'x'), "0,32,0"), length <= 32 ? 0 : 10);
    EXPECT_EQ(Judge(std::string(length, 'x'), "0,8,8"), length == 8 ? 0 : 10);
    EXPECT_EQ(Judge(std::string(length, 'x'), "0,4"), length >= 1 && length <= 4 ? 0 : 10);
    EXPECT_EQ(Judge(std::string(length, 'x'), "0,-1,-5"), 10);
    EXPECT_EQ(Judge(std::string(length, 'x'), "0,,"), length == 0 ? 0 : 10);
    EXPECT_EQ(Judge(std::string(length, 'x'), "0,4,9"), 10);
  }
}

TEST(TextRule, LengthIsLookedAtFirst) { EXPECT_EQ(Judge("\x01\x01", "0,1,1"), 10); }

TEST(TextRule, PrintableTest) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string value(1, static_cast<char>(byte));
    const int code = byte >= 0x20 && byte <= 0x7E ? 0 : 11;
    for (const char* const rule : {"0,9,1", "0,9,1,0", "0,9,1,", "0,9,1,x", "0,9,1,0,0"}) {
      EXPECT_EQ(Judge(value, rule), code) << byte << " " << rule;
    }
    for (const char* const rule : {"0,9,1,1", "0,9,1,-1", "0,9,1,2x,0"}) {
      EXPECT_EQ(Judge(value, rule), 0) << byte << " " << rule;
    }
  }
}

TEST(TextRule, AllowList) {
  const std::string rule = "0,63,8,0,1,0-9,a-z,A-Z";
  EXPECT_EQ(Judge("abcXYZ019", rule), 0);
  EXPECT_EQ(Judge("abcXYZ 19", rule), 11);
  EXPECT_EQ(Judge("abcXYZ01-", rule), 11);
  EXPECT_EQ(Judge("abc", rule), 10);
  for (int byte = 1; byte < 256; ++byte) {
    const bool alphanumeric = (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') ||
                              (byte >= 'A' && byte <= 'Z');
    EXPECT_EQ(Judge("aaaaaaaa" + std::string(1, static_cast<char>(byte)), rule),
              alphanumeric ? 0 : 11)
        << byte;
  }
}

TEST(TextRule, AllowListWithoutRangesAllowsOnlyTheEmptyValue) {
  EXPECT_EQ(Judge("a", "0,9,0,0,1"), 11);
  EXPECT_EQ(Judge("", "0,9,0,0,1"), 0);
  EXPECT_EQ(Judge("a", "0,9,0,0,1,"), 11);
}

TEST(TextRule, DenyList) {
  for (const std::string rule : {"0,9,0,0,0,x,0-3", "0,9,0,0,,x,0-3", "0,9,0,0,no,x,0-3"}) {
    EXPECT_EQ(Judge("abc456", rule), 0) << rule;
    EXPECT_EQ(Judge("abcx", rule), 11) << rule;
    EXPECT_EQ(Judge("2abc", rule), 11) << rule;
    EXPECT_EQ(Judge("", rule), 0) << rule;
  }
}

TEST(TextRule, ListsAndThePrintableTestGoTogether) {
  EXPECT_EQ(Judge("\t", "0,9,0,0,1,\t"), 11);
  EXPECT_EQ(Judge("\t", "0,9,0,1,1,\t"), 0);
  EXPECT_EQ(Judge("\t", "0,9,0,1,0,\t"), 11);
}

TEST(TextRule, NegativeAllowSwitchIsNonZero) { EXPECT_EQ(Judge("a", "0,9,0,0,-1,a"), 0); }

TEST(TextRule, RangesAreSignedCharacters) {
  // 0x80 to 0xFF lie below the terminator, so a range from them up to a letter covers them all.
  EXPECT_EQ(Judge("\x81\xFE\x05z", "0,9,0,1,1,\x80-z"), 0);
  EXPECT_EQ(Judge("{", "0,9,0,1,1,\x80-z"), 11);
  // From a letter up to them there is nothing.
  EXPECT_EQ(Judge("b", "0,9,0,1,1,a-\xFF"), 11);
  EXPECT_EQ(Judge("\xFF", "0,9,0,1,1,a-\xFF"), 11);
  EXPECT_EQ(Judge("\xC3\xA4", "0,9,0,1,1,\x80-\xFF"), 0);
}

TEST(TextRule, ShapesOfRanges) {
  EXPECT_EQ(Judge("-", "0,9,0,0,1,-"), 0);
  EXPECT_EQ(Judge("a", "0,9,0,0,1,-"), 11);
  EXPECT_EQ(Judge("-./", "0,9,0,0,1,--/"), 0);
  EXPECT_EQ(Judge("0", "0,9,0,0,1,--/"), 11);
  EXPECT_EQ(Judge("a", "0,9,0,0,1,abc"), 0);  // only the first character counts
  EXPECT_EQ(Judge("b", "0,9,0,0,1,abc"), 11);
  EXPECT_EQ(Judge("b", "0,9,0,0,1,a-cx"), 0);
  EXPECT_EQ(Judge("x", "0,9,0,0,1,a-cx"), 11);
  EXPECT_EQ(Judge("b", "0,9,0,0,1,c-a"), 11);
  EXPECT_EQ(Judge("b", "0,9,0,0,1,b-b"), 0);
  EXPECT_EQ(Judge(" ", "0,9,0,0,1, "), 0);
}

TEST(TextRule, OpenRangeEndsAtTheTerminator) {
  EXPECT_EQ(Judge("a", "0,9,0,0,1,a-"), 11);
  EXPECT_EQ(Judge("a", "0,9,0,0,0,a-"), 0);
  EXPECT_EQ(Judge("\x90", "0,9,0,1,1,\x80-"), 0);
}

TEST(TextRule, EmptyRangesAreSkipped) {
  EXPECT_EQ(Judge("ab", "0,9,0,0,1,,a,,b,"), 0);
  EXPECT_EQ(Judge("ab", "0,9,0,0,0,,,"), 0);
  EXPECT_EQ(Judge("a", "0,9,0,0,1,,-z"), 11);  // nor is the next field taken for its end
}

// Splitting.

TEST(RuleFields, EscapedCommaIsACharacter) {
  const std::string rule = "0,64,0,1,0,\\,";
  EXPECT_EQ(Judge("any\x01 text", rule), 0);
  EXPECT_EQ(Judge("a,b", rule), 11);
  EXPECT_EQ(Judge("a\\b", rule), 0);
}

TEST(RuleFields, EscapedBackslashIsACharacter) {
  EXPECT_EQ(Judge("a\\b", "0,9,0,0,0,\\\\"), 11);
  EXPECT_EQ(Judge("ab", "0,9,0,0,0,\\\\"), 0);
  // After an escaped backslash a comma ends the field.
  EXPECT_EQ(Judge("x", "0,9,0,0,1,\\\\,x"), 0);
  EXPECT_EQ(Judge(",", "0,9,0,0,1,\\\\,x"), 11);
}

TEST(RuleFields, OtherBackslashesStay) {
  EXPECT_EQ(Judge("\\", "0,9,0,0,1,\\n"), 0);
  EXPECT_EQ(Judge("n", "0,9,0,0,1,\\n"), 11);
  EXPECT_EQ(Judge("\\", "0,9,0,0,1,\\"), 0);
  EXPECT_EQ(Judge("x", "0,9,0,0,1,x,\\"), 0);
}

TEST(RuleFields, EscapesInsideRanges) {
  EXPECT_EQ(Judge("+,-.", "0,9,0,0,1,+-."), 0);
  EXPECT_EQ(Judge(",-.", "0,9,0,0,1,\\,-."), 0);
  EXPECT_EQ(Judge("+", "0,9,0,0,1,\\,-."), 11);
  EXPECT_EQ(Judge("[\\", "0,9,0,0,1,[-\\\\"), 0);
  EXPECT_EQ(Judge("]", "0,9,0,0,1,[-\\\\"), 11);
  EXPECT_EQ(Judge("a", "0\\,9,2,1"), 0);  // field 0 is "0,9"
}

TEST(RuleFields, EverythingFromThe32ndCommaOnIsIgnored) {
  std::string rule = "0,99,0,0,1";  // fields 0 to 4
  for (char range = 'a'; range < 'a' + 26; ++range) {
    rule += std::string(",") + range;  // fields 5 to 30
  }
  rule += ",0";  // field 31, the last one
  EXPECT_EQ(Judge("azz0", rule), 0);
  EXPECT_EQ(Judge("1", rule), 11);
  EXPECT_EQ(Judge("0", rule + ",1"), 0);
  EXPECT_EQ(Judge("1", rule + ",1"), 11);
  EXPECT_EQ(Judge("1", rule + "\\,,1"), 11);
  EXPECT_EQ(Judge("0", rule + "-1"), 0);
  EXPECT_EQ(Judge("1", rule + "-1"), 0);
  EXPECT_EQ(Judge("1", rule + "-,1"), 11);
}

TEST(RuleFields, LongestRuleOfTheStore) {
  std::string rule = "0,99,0,0,1,0-9,z";
  rule += std::string(127 - rule.size(), 'y');
  ASSERT_EQ(rule.size(), 127U);
  EXPECT_EQ(Judge("5z", rule), 0);
  EXPECT_EQ(Judge("y", rule), 11);
}

TEST(RuleFields, RulesOfAnyLengthAreSafe) {
  for (std::size_t length = 1; length < 1200; ++length) {
    EXPECT_EQ(Judge("x", "0,9,1,0,1,x" + std::string(length, 'y')), 0) << length;
    EXPECT_EQ(Judge("x", "0,9,1,0,1,x" + std::string(length, ',')), 0) << length;
    EXPECT_EQ(Judge("x", "0,9,1,0,1,x" + std::string(length, '\\')), 0) << length;
  }
}

TEST(Rule, CodesAreThoseOfTheResultDocument) {
  EXPECT_EQ(validate_RssData(nullptr, nullptr), KIOAPP_RESULT_INVALID_VALUE);
  EXPECT_EQ(Judge("", "0"), KIOAPP_RESULT_BAD_LENGTH);
  EXPECT_EQ(Judge("\n", "0"), KIOAPP_RESULT_BAD_CHARACTER);
  EXPECT_EQ(Judge("2", "1,1,1"), KIOAPP_RESULT_ABOVE_MAXIMUM);
  EXPECT_EQ(Judge("0", "1,1,1"), KIOAPP_RESULT_BELOW_MINIMUM);
}

}  // namespace
}  // namespace kio::test
