// Finding elements in a text.
#include <ostream>
#include <string>

#include "kioapp/kioapp.h"
#include "settings/found.h"
#include "support/exchange.h"
#include "support/guarded_text.h"

namespace kio::test {
namespace {

// Searches in memory that cannot be written.
Found Find(const std::string& text, int len, const char* key, int header_only = 0) {
  const GuardedText guarded(text);
  int length = kUntouched;
  const char* hit = FindXmlKeyContain_(guarded.get(), len, key, &length, header_only);
  EXPECT_EQ(std::string(guarded.get()), text);
  return {hit == nullptr ? -1 : hit - guarded.get(), length};
}

TEST(XmlFindTest, FindsContent) {
  EXPECT_EQ(Find("<a>one</a>", 0, "a"), (Found{3, 3}));
  EXPECT_EQ(Find("..<abc></abc>", 0, "abc"), (Found{7, 0}));
}

TEST(XmlFindTest, TagNamesMatchInAnyMixOfCase) {
  EXPECT_EQ(Find("<wlenbl>1</WLENBL>", 0, "WlEnbl"), (Found{8, 1}));
  EXPECT_EQ(Find("<WLENBL>1</wlenbl>", 0, "wLeNbL"), (Found{8, 1}));
}

TEST(XmlFindTest, CaseIsAsciiOnly) {
  EXPECT_EQ(Find("<\xC4>1</\xC4>", 0, "\xE4"), (Found{-1, 0}));
  EXPECT_EQ(Find("<[>1</[>", 0, "{"), (Found{-1, 0}));
  EXPECT_EQ(Find("<@>1</@>", 0, "`"), (Found{-1, 0}));
}

TEST(XmlFindTest, TagsWithAttributesOrBlanksAreNotFound) {
  EXPECT_EQ(Find("<a x=\"1\">one</a>", 0, "a"), (Found{-1, 0}));
  EXPECT_EQ(Find("<a >one</a>", 0, "a"), (Found{-1, 0}));
  EXPECT_EQ(Find("< a>one</a>", 0, "a"), (Found{-1, 0}));
  EXPECT_EQ(Find("<a  />", 0, "a"), (Found{-1, 0}));
}

TEST(XmlFindTest, KeyIsNotAPrefix) {
  EXPECT_EQ(Find("<IPAddr>1</IPAddr>", 0, "IP"), (Found{-1, 0}));
  EXPECT_EQ(Find("<IPAddr>1</IPAddr><IP>2</IP>", 0, "IP"), (Found{22, 1}));
  EXPECT_EQ(Find("<IPAddr>1</IPAddr>", 0, "Addr"), (Found{-1, 0}));
}

TEST(XmlFindTest, EachCharacterOfANameCounts) {
  const std::string letters = "abcdefghijklmnopqrstuvwxyz";
  for (std::size_t size = 1; size <= letters.size(); ++size) {
    const std::string key = letters.substr(0, size);
    std::string text = "<" + key;
    text.append(">1</").append(key).append(">");
    EXPECT_EQ(Find(text, 0, key.c_str()).length, 1) << text;
    for (std::size_t i = 0; i < size; ++i) {
      std::string other = text;
      other[1 + i] = '-';
      EXPECT_EQ(Find(other, 0, key.c_str()), (Found{-1, 0})) << other;
    }
  }
}

TEST(XmlFindTest, FirstHitWinsInsideANestedChild) {
  EXPECT_EQ(Find("<b><a>in</a></b><a>out</a>", 0, "a"), (Found{6, 2}));
}

TEST(XmlFindTest, FirstClosingTagEndsTheContent) {
  EXPECT_EQ(Find("<a><a>x</a></a>", 0, "a"), (Found{3, 4}));
}

TEST(XmlFindTest, ClosingTagBeforeTheOpeningOneDoesNotCount) {
  EXPECT_EQ(Find("</a><a>x</a>", 0, "a"), (Found{7, 1}));
}

TEST(XmlFindTest, MissingClosingTagIsMissing) {
  EXPECT_EQ(Find("<a>one", 0, "a"), (Found{-1, 0}));
  EXPECT_EQ(Find("</a><a>one", 0, "a"), (Found{-1, 0}));
  EXPECT_EQ(Find("<a>one</a ", 0, "a"), (Found{-1, 0}));
}

TEST(XmlFindTest, MissingClosingTagHidesAnEmptyElement) {
  EXPECT_EQ(Find("<a>one<a/>", 0, "a"), (Found{-1, 0}));
}

TEST(XmlFindTest, EmptyElementInBothForms) {
  EXPECT_EQ(Find("..<Channel/>", 0, "channel"), (Found{2, 0}));
  EXPECT_EQ(Find("..<CHANNEL />", 0, "Channel"), (Found{2, 0}));
}

TEST(XmlFindTest, OpeningTagComesBeforeEmptyFormsWhereverItLies) {
  EXPECT_EQ(Find("<a/><a />..<a>x</a>", 0, "a"), (Found{14, 1}));
  EXPECT_EQ(Find("<a />..<a/>", 0, "a"), (Found{7, 0}));
}

TEST(XmlFindTest, HeaderModeGivesTheTagAndLeavesLengthUntouched) {
  EXPECT_EQ(Find("..<a>one</a>", 0, "a", 1), (Found{2, kUntouched}));
  EXPECT_EQ(Find("..<a>never closed", 0, "a", 1), (Found{2, kUntouched}));
  EXPECT_EQ(Find("...<a/>", 0, "a", 1), (Found{3, kUntouched}));
  EXPECT_EQ(Find("...<a />", 0, "a", 1), (Found{3, kUntouched}));
}

TEST(XmlFindTest, HeaderModeNothingFoundSetsLengthToZero) {
  EXPECT_EQ(Find("<b>one</b>", 0, "a", 1), (Found{-1, 0}));
}

TEST(XmlFindTest, LengthBoundsTheSearch) {
  const std::string text = "<a>one</a><b>two</b>";
  EXPECT_EQ(Find(text, 10, "a"), (Found{3, 3}));
  EXPECT_EQ(Find(text, 9, "a"), (Found{-1, 0}));
  EXPECT_EQ(Find(text, 2, "a"), (Found{-1, 0}));
  EXPECT_EQ(Find(text, 10, "b"), (Found{-1, 0}));
  EXPECT_EQ(Find(text, 19, "b"), (Found{-1, 0}));
  EXPECT_EQ(Find(text, 20, "b"), (Found{13, 3}));
  EXPECT_EQ(Find("...<a/>", 6, "a"), (Found{-1, 0}));
  EXPECT_EQ(Find("...<a/>", 7, "a"), (Found{3, 0}));
}

TEST(XmlFindTest, LengthOfZeroOrLessReachesToTheEnd) {
  EXPECT_EQ(Find("<a>one</a><b>two</b>", 0, "b"), (Found{13, 3}));
  EXPECT_EQ(Find("<a>one</a><b>two</b>", -5, "b"), (Found{13, 3}));
}

TEST(XmlFindTest, LengthBeyondTheTextReachesToItsEnd) {
  EXPECT_EQ(Find("<a>one</a>", 11, "a"), (Found{3, 3}));
  EXPECT_EQ(Find("<a>one</a>", 1000000, "a"), (Found{3, 3}));
  EXPECT_EQ(Find("", 1000, "a"), (Found{-1, 0}));
}

TEST(XmlFindTest, TextBehindANulIsNotSearched) {
  std::string text = "<b>x</b>";
  text += '\0';
  text += "<a>one</a>";
  int length = kUntouched;
  EXPECT_EQ(FindXmlKeyContain_(text.data(), static_cast<int>(text.size()), "a", &length, 0),
            nullptr);
  EXPECT_EQ(length, 0);
}

TEST(XmlFindTest, NullArguments) {
  std::string text = "<a>one</a>";
  int length = 5;
  EXPECT_EQ(FindXmlKeyContain_(nullptr, 0, "a", &length, 0), nullptr);
  EXPECT_EQ(FindXmlKeyContain_(text.data(), 0, nullptr, &length, 0), nullptr);
  EXPECT_EQ(FindXmlKeyContain_(nullptr, 0, nullptr, nullptr, 1), nullptr);
  EXPECT_EQ(FindXmlKeyContain(nullptr, 0, "a", nullptr), nullptr);
  EXPECT_EQ(SearchXmlKeyHeader(nullptr, 0, "a"), nullptr);
  EXPECT_EQ(SearchXmlKeyHeader(text.data(), 0, nullptr), nullptr);
}

TEST(XmlFindTest, LengthMayBeNull) {
  std::string text = "<a>one</a><b/><c>";
  EXPECT_EQ(FindXmlKeyContain_(text.data(), 0, "a", nullptr, 0), text.data() + 3);
  EXPECT_EQ(FindXmlKeyContain_(text.data(), 0, "b", nullptr, 0), text.data() + 10);
  EXPECT_EQ(FindXmlKeyContain_(text.data(), 0, "c", nullptr, 0), nullptr);
  EXPECT_EQ(FindXmlKeyContain_(text.data(), 0, "d", nullptr, 0), nullptr);
}

TEST(XmlFindTest, ShortFormsAreTheSameSearch) {
  std::string text = "..<a>one</a>";
  int length = kUntouched;
  EXPECT_EQ(FindXmlKeyContain(text.data(), 0, "A", &length), text.data() + 5);
  EXPECT_EQ(length, 3);
  EXPECT_EQ(FindXmlKeyContain(text.data(), 8, "a", &length), nullptr);
  EXPECT_EQ(length, 0);
  EXPECT_EQ(SearchXmlKeyHeader(text.data(), 0, "A"), text.data() + 2);
  EXPECT_EQ(SearchXmlKeyHeader(text.data(), 4, "a"), nullptr);
}

TEST(XmlFindTest, RepeatedElementsAreWalkedByTheirHeaders) {
  const GuardedText text("<AcRule>1</AcRule><AcRule/><AcRule>2</AcRule>");
  char* first = SearchXmlKeyHeader(text.get(), 45, "AcRule");
  ASSERT_EQ(first, text.get());
  char* second = SearchXmlKeyHeader(first + 8, 45 - 8, "AcRule");
  EXPECT_EQ(second, text.get() + 27) << "an opening tag comes before an empty element";
}

TEST(XmlFindTest, EmptyKey) {
  EXPECT_EQ(Find("a<>b</>c", 0, ""), (Found{3, 1}));
  EXPECT_EQ(Find("a</>c", 0, ""), (Found{1, 0}));
  EXPECT_EQ(Find("a< />c", 0, ""), (Found{1, 0}));
  EXPECT_EQ(Find("a</a>c", 0, ""), (Found{-1, 0}));
}

// Tag texts hold at most 127 characters: a longer key is cut, and with it the tag's last
// characters.
class LongKeyTest : public ::testing::TestWithParam<int> {};

TEST_P(LongKeyTest, TagTextsAreCutAt127Characters) {
  const auto size = static_cast<std::size_t>(GetParam());
  const std::string key(size, 'k');
  const std::string open = ("<" + key + ">").substr(0, 127);
  const std::string close = ("</" + key + ">").substr(0, 127);
  const std::string text = "<" + key + ">value</" + key + ">";
  const std::size_t end = text.find(close, open.size());
  ASSERT_NE(end, std::string::npos);
  const Found expected{static_cast<long>(open.size()), static_cast<int>(end - open.size())};
  EXPECT_EQ(Find(text, 0, key.c_str()), expected);
  EXPECT_EQ(Find(text, 0, key.c_str(), 1), (Found{0, kUntouched}));
}

TEST_P(LongKeyTest, EmptyFormsAreCutAt127Characters) {
  const std::string key(static_cast<std::size_t>(GetParam()), 'k');
  // From 126 characters on the cut forms all read the same, and the opening form is tried first.
  const bool looks_open = key.size() >= 126;
  const Found expected = looks_open ? Found{-1, 0} : Found{1, 0};
  EXPECT_EQ(Find(".<" + key + "/>", 0, key.c_str()), expected);
  EXPECT_EQ(Find(".<" + key + " />", 0, key.c_str()), expected);
}

INSTANTIATE_TEST_SUITE_P(Lengths, LongKeyTest,
                         ::testing::Values(1, 2, 63, 64, 120, 122, 123, 124, 125, 126, 127, 128,
                                           129, 150, 199, 200));

TEST(XmlFindTest, KeysThatDifferBehindTheCutAreTheSame) {
  const std::string stem(126, 'k');
  EXPECT_EQ(Find("<" + stem + "A>v</" + stem + "A>", 0, (stem + "B").c_str()), (Found{127, 3}));
}

TEST(StrstriTest, FindsTheFirstMatchInAnyCase) {
  const char* text = "one TWO two";
  EXPECT_EQ(strstri(text, "two"), text + 4);
  EXPECT_EQ(strstri(text, "ONE"), text);
  EXPECT_EQ(strstri(text, "o tWO"), text + 6);
  EXPECT_EQ(strstri(text, "o twoo"), nullptr);
  EXPECT_EQ(strstri(text, "E tWo T"), text + 2);
}

TEST(StrstriTest, EmptyTexts) {
  EXPECT_EQ(strstri("abc", ""), nullptr);
  EXPECT_EQ(strstri("", ""), nullptr);
  EXPECT_EQ(strstri("", "a"), nullptr);
}

TEST(StrstriTest, NeedleAtTheEndAndBeyond) {
  const GuardedText text("xxAbC");
  EXPECT_EQ(strstri(text.get(), "aBc"), text.get() + 2);
  EXPECT_EQ(strstri(text.get(), "abcd"), nullptr);
  EXPECT_EQ(strstri(text.get(), "c"), text.get() + 4);
}

TEST(StrstriTest, OnlyAsciiLettersFold) {
  EXPECT_EQ(strstri("\xC4", "\xE4"), nullptr);
  EXPECT_NE(strstri("a\xE4", "\xE4"), nullptr);
  const char* signs = "@[`{";
  EXPECT_EQ(strstri(signs, "`"), signs + 2);
  EXPECT_EQ(strstri("@", "`"), nullptr);
  EXPECT_EQ(strstri("{", "["), nullptr);
}

}  // namespace
}  // namespace kio::test
