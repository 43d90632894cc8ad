#include "platform/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <string>
#include <utility>
#include <vector>

#include "guarded.h"
#include "testing/heap_chars.h"

namespace kio::platform {
namespace {

using test::Guarded;

TEST(TextBuffer, BuildsAText) {
  HeapChars<32> chars;
  TextBuffer text(chars.array());
  EXPECT_STREQ(chars, "");
  text.Append("sta:").AppendNumber(-12).Append('/').Append(TextView("ifname", 2));
  EXPECT_STREQ(chars, "sta:-12/if");
  EXPECT_EQ(text.c_str(), chars.array());
  EXPECT_EQ(text.size(), 10U);
  EXPECT_EQ(text.view(), "sta:-12/if");
}

TEST(TextBuffer, CutsWhatDoesNotFit) {
  for (std::size_t size = 1; size <= 12; ++size) {
    const Guarded memory(size);
    TextBuffer text(memory.data(), size);
    text.Append("abcd").Append("").Append(TextView()).Append("efgh").Append('i');
    EXPECT_EQ(memory.data(), std::string("abcdefghi").substr(0, size - 1));
    EXPECT_EQ(text.size(), std::min<std::size_t>(size - 1, 9));
  }
}

TEST(TextBuffer, TruncateOnlyShortens) {
  HeapChars<8> chars;
  TextBuffer text(chars.array());
  text.Append("abcdef").Truncate(9);
  EXPECT_STREQ(chars, "abcdef");
  text.Truncate(2);
  EXPECT_STREQ(chars, "ab");
  text.Append("X");
  EXPECT_STREQ(chars, "abX");
}

TEST(TextBuffer, Numbers) {
  for (const long number : {0L, 7L, -7L, LONG_MAX, LONG_MIN}) {
    HeapChars<32> chars;
    TextBuffer(chars.array()).AppendNumber(number);
    EXPECT_EQ(chars.array(), std::to_string(number));
  }
}

TEST(CopyText, CutsAndTerminates) {
  for (std::size_t size = 1; size <= 6; ++size) {
    const Guarded memory(size);
    CopyText(memory.data(), size, "abcd");
    EXPECT_EQ(memory.data(), std::string("abcd").substr(0, size - 1));
    CopyText(memory.data(), size, TextView());
    EXPECT_STREQ(memory.data(), "");
  }
}

TEST(ParseInt, ReadsWhatTheTextBeginsWith) {
  const std::vector<std::pair<const char*, int>> numbers = {{"", 0},
                                                            {"x", 0},
                                                            {"12", 12},
                                                            {" \t\n12x", 12},
                                                            {"+3", 3},
                                                            {"-3,4", -3},
                                                            {"- 3", 0},
                                                            {"0x10", 0},
                                                            {"007", 7},
                                                            {"1.9", 1},
                                                            {"2000000000", 2000000000},
                                                            {"2147483647", INT_MAX},
                                                            {"-2147483648", INT_MIN}};
  for (const auto& [text, number] : numbers) {
    EXPECT_EQ(ParseInt(Guarded(TextView(text)).data()), number) << text;
  }
}

TEST(ParseInt, NumbersBeyondIntGiveTheEndOfTheRange) {
  for (const char* const text : {"2147483648", "4294967296", "9999999999999999999999"}) {
    EXPECT_EQ(ParseInt(text), INT_MAX) << text;
    EXPECT_EQ(ParseInt((std::string("-") + text + "9").c_str()), INT_MIN) << text;
  }
}

TEST(ScanInt, MovesBehindTheNumber) {
  const char* cursor = "  12.-3x";
  int number = 77;
  EXPECT_TRUE(ScanInt(&cursor, &number));
  EXPECT_EQ(number, 12);
  EXPECT_STREQ(cursor, ".-3x");
  EXPECT_FALSE(ScanInt(&cursor, &number));
  EXPECT_EQ(number, 12);
  EXPECT_STREQ(cursor, ".-3x");
  ++cursor;
  EXPECT_TRUE(ScanInt(&cursor, &number));
  EXPECT_EQ(number, -3);
  EXPECT_STREQ(cursor, "x");
}

TEST(StartsWithFold, IgnoresAsciiCaseOnly) {
  EXPECT_TRUE(StartsWithFold(Guarded(TextView("DeviceName")).data(), "deviceNAME"));
  EXPECT_TRUE(StartsWithFold("abc", ""));
  EXPECT_FALSE(StartsWithFold(Guarded(TextView("dev")).data(), "device"));
  EXPECT_FALSE(StartsWithFold("@", "`"));
  EXPECT_FALSE(StartsWithFold("[", "{"));
  EXPECT_FALSE(StartsWithFold("\xC4", "\xE4"));
}

TEST(NullText, IsAnEmptyOne) {
  EXPECT_EQ(ViewOf(nullptr), TextView());
  EXPECT_STREQ(TextOf(nullptr), "");
}

}  // namespace
}  // namespace kio::platform
