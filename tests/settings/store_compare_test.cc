// Comparing values with the store and writing what differs.
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"

namespace kio::test {
namespace {

using Kind = StoreCall::Kind;
using Calls = std::vector<StoreCall>;

class StoreCompareTest : public SettingsTest {};

TEST_F(StoreCompareTest, EqualTextIsOnlyRead) {
  Host().Set("/sys/name", "Kitchen");
  EXPECT_EQ(StrCmpWithXStr("Kitchen", "/sys/name", 0), 0);
  EXPECT_EQ(Host().calls(), (Calls{{Kind::kGetText, "/sys/name", "Kitchen"}}));
}

TEST_F(StoreCompareTest, DifferentTextIsWritten) {
  Host().Set("/sys/name", "Kitchen");
  EXPECT_EQ(StrCmpWithXStr("kitchen", "/sys/name", 0), 1) << "case counts";
  EXPECT_EQ(Host().calls(), (Calls{{Kind::kGetText, "/sys/name", "Kitchen"},
                                   {Kind::kSetText, "/sys/name", "kitchen"}}));
}

TEST_F(StoreCompareTest, CompareOnlyNeverWritesText) {
  Host().Set("/sys/name", "Kitchen");
  EXPECT_EQ(StrCmpWithXStr("Hall", "/sys/name", 1), 1);
  EXPECT_EQ(StrCmpWithXStr("Kitchen", "/sys/name", 1), 0);
  EXPECT_TRUE(Host().Writes().empty());
}

TEST_F(StoreCompareTest, AbsentTextIsEmpty) {
  for (const bool untouched : {true, false}) {
    Host().absent_leaves_buffer = untouched;
    EXPECT_EQ(StrCmpWithXStr("", "/none", 0), 0);
    EXPECT_TRUE(Host().Writes().empty());
    EXPECT_EQ(StrCmpWithXStr("x", "/none", 1), 1);
  }
  EXPECT_EQ(StrCmpWithXStr("x", "/none", 0), 1);
  EXPECT_EQ(Host().Text("/none"), "x");
}

TEST_F(StoreCompareTest, AbsentNodeAfterAFullOneIsStillEmpty) {
  Host().Set("/full", std::string(4000, 'f'));
  EXPECT_EQ(StrCmpWithXStr("", "/full", 1), 1);
  EXPECT_EQ(StrCmpWithXStr("", "/none", 1), 0);
  EXPECT_EQ(IntCmpWithXStr(0, "/none", 1), 0);
}

TEST_F(StoreCompareTest, LongTextsAreComparedWhole) {
  const std::string text(4000, 'l');
  Host().Set("/long", text);
  EXPECT_EQ(StrCmpWithXStr(text.c_str(), "/long", 1), 0);
  EXPECT_EQ(StrCmpWithXStr(text.substr(0, 3999).c_str(), "/long", 1), 1);
  EXPECT_EQ(StrCmpWithXStr(text.substr(0, 127).c_str(), "/long", 1), 1);
}

// Neither a path nor a value is ever a format.
TEST_F(StoreCompareTest, PercentSignsAreOrdinaryCharacters) {
  const std::string path = "/a%s%n%d/100%";
  const std::string value = "%s%n%x";
  EXPECT_EQ(StrCmpWithXStr(value.c_str(), path.c_str(), 0), 1);
  EXPECT_EQ(IntCmpWithXStr(7, path.c_str(), 0), 1);
  int too_large = -1;
  EXPECT_EQ(IntMaxCmpWithXStr(9, path.c_str(), 0, 10, &too_large), 1);
  EXPECT_EQ(Host().calls(), (Calls{{Kind::kGetText, path, ""},
                                   {Kind::kSetText, path, value},
                                   {Kind::kGetText, path, value},
                                   {Kind::kSetInt, path, "7"},
                                   {Kind::kGetInt, path, "7"},
                                   {Kind::kSetInt, path, "9"}}));
}

TEST_F(StoreCompareTest, IntegerIsComparedWithTheNumberOfTheText) {
  Host().Set("/n", " 12x");
  EXPECT_EQ(IntCmpWithXStr(12, "/n", 0), 0);
  EXPECT_EQ(Host().calls(), (Calls{{Kind::kGetText, "/n", " 12x"}}));
}

TEST_F(StoreCompareTest, DifferentIntegerIsWritten) {
  Host().Set("/n", "12");
  EXPECT_EQ(IntCmpWithXStr(-13, "/n", 0), 1);
  EXPECT_EQ(Host().calls(), (Calls{{Kind::kGetText, "/n", "12"}, {Kind::kSetInt, "/n", "-13"}}));
}

TEST_F(StoreCompareTest, CompareOnlyNeverWritesAnInteger) {
  Host().Set("/n", "12");
  EXPECT_EQ(IntCmpWithXStr(13, "/n", 1), 1);
  EXPECT_TRUE(Host().Writes().empty());
}

TEST_F(StoreCompareTest, AbsentIntegerIsZeroForTheTextComparison) {
  for (const bool untouched : {true, false}) {
    Host().absent_leaves_buffer = untouched;
    EXPECT_EQ(IntCmpWithXStr(0, "/none", 0), 0);
  }
  EXPECT_TRUE(Host().Writes().empty());
  EXPECT_EQ(IntCmpWithXStr(1, "/none", 0), 1);
  EXPECT_EQ(Host().Text("/none"), "1");
}

TEST_F(StoreCompareTest, MaximumEqualIsOnlyRead) {
  Host().Set("/n", "5");
  int too_large = 9;
  EXPECT_EQ(IntMaxCmpWithXStr(5, "/n", 0, 1, &too_large), 0);
  EXPECT_EQ(too_large, 0) << "an equal value is never too large";
  EXPECT_EQ(Host().calls(), (Calls{{Kind::kGetInt, "/n", "5"}}));
}

TEST_F(StoreCompareTest, MaximumExceededIsToldAndNotWritten) {
  Host().Set("/n", "0");
  int too_large = 9;
  EXPECT_EQ(IntMaxCmpWithXStr(5, "/n", 0, 1, &too_large), 0);
  EXPECT_EQ(too_large, 1);
  EXPECT_TRUE(Host().Writes().empty());
  too_large = 9;
  EXPECT_EQ(IntMaxCmpWithXStr(2, "/n", 1, 1, &too_large), 0);
  EXPECT_EQ(too_large, 1);
}

TEST_F(StoreCompareTest, MaximumItselfIsWritten) {
  Host().Set("/n", "0");
  int too_large = 9;
  EXPECT_EQ(IntMaxCmpWithXStr(1, "/n", 0, 1, &too_large), 1);
  EXPECT_EQ(too_large, 0);
  EXPECT_EQ(Host().Writes(), (Calls{{Kind::kSetInt, "/n", "1"}}));
}

TEST_F(StoreCompareTest, MaximumHasNoLowerBound) {
  Host().Set("/n", "0");
  int too_large = 9;
  EXPECT_EQ(IntMaxCmpWithXStr(-5, "/n", 0, 1, &too_large), 1);
  EXPECT_EQ(too_large, 0);
  EXPECT_EQ(Host().Text("/n"), "-5");
}

TEST_F(StoreCompareTest, MaximumCompareOnly) {
  Host().Set("/n", "0");
  int too_large = 9;
  EXPECT_EQ(IntMaxCmpWithXStr(1, "/n", 1, 1, &too_large), 1);
  EXPECT_EQ(too_large, 0);
  EXPECT_TRUE(Host().Writes().empty());
}

TEST_F(StoreCompareTest, MaximumAbsentNodeDiffersFromZero) {
  int too_large = 9;
  EXPECT_EQ(IntMaxCmpWithXStr(0, "/none", 0, 1, &too_large), 1);
  EXPECT_EQ(Host().Writes(), (Calls{{Kind::kSetInt, "/none", "0"}}));
  EXPECT_EQ(IntMaxCmpWithXStr(-1, "/none2", 0, 1, &too_large), 0);
}

}  // namespace
}  // namespace kio::test
