#include "platform/text_functions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include "guarded.h"
#include "kioapp/text.h"
#include "platform/text.h"
#include "sandbox.h"

namespace kio::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// strChgKeyword into a buffer that just holds the result.
std::string Replaced(std::string_view src, std::string_view key, std::string_view replacement,
                     std::size_t result_size) {
  const Guarded dst(result_size + 1);
  const Guarded guarded_src(src);
  const Guarded guarded_key(key);
  const Guarded guarded_replacement(replacement);
  EXPECT_EQ(
      strChgKeyword(dst.data(), guarded_src.data(), guarded_key.data(), guarded_replacement.data()),
      dst.data());
  return dst.data();
}

TEST(StrChgKeyword, ReplacesEveryOccurrence) {
  const std::vector<std::tuple<const char*, const char*, const char*, std::string>> cases = {
      {"aXXb", "XX", "-", "a-b"},
      {"aXXb", "", "-", "aXXb"},
      {"", "XX", "-", ""},
      {"", "", "-", ""},
      {"aaa", "aa", "b", "ba"},
      {"aaaa", "aa", "b", "bb"},
      {"XX", "XX", "", ""},
      {"XXXX", "XX", "X", "XX"},
      {"$x", "$x", "$x$x", "$x$x"},
      {"a$xb$xc", "$x", "12345", "a12345b12345c"},
      {"none here", "XX", "-", "none here"},
      {"aX", "XX", "-", "aX"},
      {"aXxb", "XX", "-", "aXxb"},
      {"XXb", "XX", "-", "-b"},
      {"aXX", "XX", "-", "a-"},
  };
  for (const auto& [src, key, replacement, expected] : cases) {
    EXPECT_EQ(Replaced(src, key, replacement, expected.size()), expected)
        << src << " " << key << " " << replacement;
  }
}

TEST(StrChgKeyword, ChecksNoLength) {
  std::string src;
  std::string expected;
  for (int i = 0; i < 500; ++i) {
    src += "[$url]";
    expected += "[" + std::string(100, 'u') + "]";
  }
  EXPECT_EQ(Replaced(src, "$url", std::string(100, 'u'), expected.size()), expected);
}

class RssKeywordsTest : public SandboxTest {
 protected:
  RssKeywordsTest() {
    host_.Set("/runtime/zentrolinks/lanip", "192.168.1.1");
    host_.Set("/zentrolinks/rsshttpport", "80");
  }

  static std::string Replaced(const std::string& text) {
    const Guarded buffer(256);
    std::memcpy(buffer.data(), text.c_str(), text.size() + 1);
    EXPECT_EQ(strChgRssKeywords(buffer.data()), buffer.data());
    return buffer.data();
  }
};

TEST_F(RssKeywordsTest, AddressAndPort) {
  EXPECT_EQ(Replaced("$lanip:$rssport"), "192.168.1.1:80");
  EXPECT_THAT(
      host_.calls(),
      ElementsAre(StoreCall{StoreCall::Kind::kGetText, "/runtime/zentrolinks/lanip", "192.168.1.1"},
                  StoreCall{StoreCall::Kind::kGetText, "/zentrolinks/rsshttpport", "80"}));
  EXPECT_EQ(Replaced("http://$lanip/a?b=$lanip&p=$rssport$rssport"),
            "http://192.168.1.1/a?b=192.168.1.1&p=8080");
  EXPECT_EQ(Replaced("no keyword, $LANIP $lani $ rssport"), "no keyword, $LANIP $lani $ rssport");
}

TEST_F(RssKeywordsTest, EmptyTextReadsNothing) {
  EXPECT_EQ(Replaced(""), "");
  EXPECT_THAT(host_.calls(), IsEmpty());
}

TEST_F(RssKeywordsTest, AbsentNodesGiveEmptyTexts) {
  host_.Delete("/zentrolinks/rsshttpport");
  for (const bool untouched : {true, false}) {
    host_.absent_leaves_buffer = untouched;
    EXPECT_EQ(Replaced("$lanip:$rssport"), "192.168.1.1:");  // not the address a second time
  }
  host_.Delete("/runtime/zentrolinks/lanip");
  EXPECT_EQ(Replaced("[$lanip:$rssport]"), "[:]");
}

TEST_F(RssKeywordsTest, ValuesAreCutAt63Characters) {
  host_.text_for_every_node = std::string(4000, 'v');
  EXPECT_EQ(Replaced("$lanip"), std::string(63, 'v'));
  EXPECT_EQ(Replaced("$rssport"), std::string(63, 'v'));
}

TEST_F(RssKeywordsTest, ResultIsCutAt255Characters) {
  host_.Set("/runtime/zentrolinks/lanip", std::string(63, 'v'));
  std::string text;
  for (int i = 0; i < 42; ++i) {
    text += "$lanip";
  }
  EXPECT_EQ(Replaced(text), std::string(255, 'v'));
  const std::string longest(255, 'l');
  EXPECT_EQ(Replaced(longest), longest);
}

TEST_F(RssKeywordsTest, PortKeywordInsideTheAddressIsReplacedToo) {
  host_.Set("/runtime/zentrolinks/lanip", "<$rssport>");
  EXPECT_EQ(Replaced("$lanip"), "<80>");
  host_.Set("/zentrolinks/rsshttpport", "$lanip");
  EXPECT_EQ(Replaced("$rssport"), "$lanip");
}

TEST_F(RssKeywordsTest, BoundedFormKeepsToItsBuffer) {
  for (std::size_t size = 16; size <= 20; ++size) {
    const Guarded buffer(size);
    platform::CopyText(buffer.data(), size, "$lanip:$rssport");
    platform::ReplaceRssKeywords(buffer.data(), size);
    EXPECT_STREQ(buffer.data(), "192.168.1.1:80");
  }
  const Guarded small(8);
  platform::CopyText(small.data(), 8, "$lanip!");
  platform::ReplaceRssKeywords(small.data(), 8);
  EXPECT_STREQ(small.data(), "192.168");
}

int Compare(std::string_view subject, std::string_view pattern, int n) {
  return strnWildcardCmp(Guarded(subject).data(), Guarded(pattern).data(), n);
}
int Compare(std::string_view subject, std::string_view pattern) {
  return strWildcardCmp(Guarded(subject).data(), Guarded(pattern).data());
}

TEST(Wildcard, Matches) {
  EXPECT_EQ(Compare("Site:07/BSSID", "Site:?\?/*"), 0);
  EXPECT_EQ(Compare("Acl_R03_MAC", "Acl_R??_", 8), 0);
  EXPECT_NE(Compare("Acl_R03_MAC", "Acl_R??_", 9), 0);
  EXPECT_EQ(Compare("", ""), 0);
  EXPECT_EQ(Compare("abc", "abc"), 0);
  EXPECT_EQ(Compare("", "*"), 0);
  EXPECT_EQ(Compare("abc", "a*"), 0);
  EXPECT_EQ(Compare("abc", "abc*"), 0);
  EXPECT_EQ(Compare("?", "?"), 0);
}

TEST(Wildcard, StarMatchesWhateverFollowsIt) {
  EXPECT_EQ(Compare("abc", "a*xyz"), 0);
  EXPECT_EQ(Compare("a", "a*xyz"), 0);
}

TEST(Wildcard, StarOfTheSubjectIsNoWildcard) {
  EXPECT_EQ(Compare("*", "a"), '*' - 'a');
  EXPECT_EQ(Compare("?", "a"), '?' - 'a');
  EXPECT_EQ(Compare("a", "\\*"), 'a' - '\\');
}

TEST(Wildcard, DifferenceOfTheFirstMismatch) {
  EXPECT_EQ(Compare("abc", "abd"), 'c' - 'd');
  EXPECT_EQ(Compare("abd", "abc"), 'd' - 'c');
  EXPECT_EQ(Compare("ab", "abc"), -'c');
  EXPECT_EQ(Compare("abc", "ab"), 'c');
  EXPECT_EQ(Compare("A", "a"), 'A' - 'a');
  EXPECT_EQ(Compare("", "x*"), -'x');
  EXPECT_EQ(Compare("ax", "?y"), 'x' - 'y');
}

TEST(Wildcard, CharactersAreSigned) {
  EXPECT_EQ(Compare("\xFF", "a"), -1 - 'a');
  EXPECT_EQ(Compare("a", "\x80"), 'a' + 128);
  EXPECT_EQ(Compare("\x80", ""), -128);
}

TEST(Wildcard, QuestionMarkMatchesTheEndOfTheSubject) {
  EXPECT_EQ(Compare("ab", "ab?"), 0);
  EXPECT_EQ(Compare("ab", "ab????????"), 0);
  EXPECT_EQ(Compare("", "??"), 0);
  EXPECT_EQ(Compare("ab", "ab??*"), 0);
  // Positions beyond the end count as terminators.
  EXPECT_EQ(Compare("ab", "ab??c"), -'c');
}

TEST(Wildcard, Limits) {
  EXPECT_EQ(Compare("abc", "xyz", 0), 0);
  EXPECT_EQ(Compare("abc", "xyz", -1), 0);
  EXPECT_EQ(Compare("abc", "axz", 1), 0);
  EXPECT_NE(Compare("abc", "axz", 2), 0);
  const std::string common(32767, 'c');
  EXPECT_EQ(Compare(common + "x", common + "y"), 0);
  EXPECT_EQ(Compare(common.substr(1) + "x", common.substr(1) + "y"), -1);
  EXPECT_EQ(Compare(common + "x", common + "y", 32768), -1);
}

TEST(StripChars, CutsBothEnds) {
  const std::vector<std::tuple<const char*, const char*, std::string>> cases = {
      {"\r\n text \r\n", "\r\n", " text "},
      {"xxaxbxx", "x", "axb"},
      {"abc", "x", "abc"},
      {"abc", "", "abc"},
      {"", "x", ""},
      {"xyxy", "xy", ""},
      {"x", "x", ""},
      {"a", "x", "a"},
      {"axx", "x", "a"},
      {"xxa", "x", "a"},
      {"\xFF a\xFF", "\xFF ", "a"}};
  for (const auto& [text, set, expected] : cases) {
    const Guarded buffer{std::string_view(text)};
    const char* const result = strip_chars(buffer.data(), Guarded(std::string_view(set)).data());
    EXPECT_EQ(result, expected) << text;
    // The leading characters stay where they are.
    EXPECT_EQ(result, buffer.data() + std::strspn(text, set));
  }
}

TEST(StripChars, OverwritesTrailingCharactersWithTerminators) {
  using namespace std::string_literals;
  const Guarded buffer(std::string_view("xxaxbxx"));
  strip_chars(buffer.data(), "x");
  EXPECT_EQ(buffer.Bytes(), "xxaxb\0\0\0"s);
}

TEST(Trim, StripsBlanksAndTabs) {
  const std::vector<std::pair<const char*, std::string>> cases = {
      {" a b ", "a b"},   {"", ""},
      {" ", ""},          {"\t", ""},
      {" \t \t", ""},     {"a", "a"},
      {"a ", "a"},        {" a", "a"},
      {"\ta\t", "a"},     {"abc", "abc"},
      {"a  b", "a  b"},   {"\na\n", "\na\n"},
      {" \xA0 ", "\xA0"}, {"   abcdef", "abcdef"}};
  for (const auto& [text, expected] : cases) {
    const Guarded buffer{std::string_view(text)};
    EXPECT_EQ(trim(buffer.data()), buffer.data());
    EXPECT_EQ(buffer.data(), expected) << '"' << text << '"';
    const Guarded dst(std::strlen(text) + 1);
    const Guarded src{std::string_view(text)};
    EXPECT_EQ(trimTo(dst.data(), src.data()), dst.data());
    EXPECT_EQ(dst.data(), expected) << '"' << text << '"';
    EXPECT_STREQ(src.data(), text);
  }
}

// A pattern that is a view fits where one that is terminated compares as equal.
TEST(FitsWildcard, IsWhatTheComparisonGives) {
  const std::vector<std::string> texts = {"",     "a",  "b",   "ab",   "abc", "*",   "?",
                                          "a*",   "*b", "a?",  "??",   "?b",  "a?c", "ab*",
                                          "abc*", "*?", "a*c", "abcd", "\xFF"};
  for (const std::string& subject : texts) {
    for (const std::string& pattern : texts) {
      EXPECT_EQ(platform::FitsWildcard(subject.c_str(), pattern),
                strWildcardCmp(subject.c_str(), pattern.c_str()) == 0)
          << subject << " " << pattern;
      const std::string longer = pattern + "xyz";
      EXPECT_EQ(platform::FitsWildcard(subject.c_str(), {longer.data(), pattern.size()}),
                strWildcardCmp(subject.c_str(), pattern.c_str()) == 0);
    }
  }
  // A terminator ends it before its end.
  EXPECT_TRUE(platform::FitsWildcard("a", {"a\0b", 3}));
  EXPECT_FALSE(platform::FitsWildcard("ab", {"a\0b", 3}));
}

TEST_F(RssKeywordsTest, NullTextIsReturnedAndNoKeywordRead) {
  EXPECT_EQ(strChgRssKeywords(nullptr), nullptr);
  EXPECT_THAT(host_.calls(), IsEmpty());
}

TEST(NullTexts, AreReturnedOrEmpty) {
  EXPECT_EQ(strChgKeyword(nullptr, "aXb", "X", "-"), nullptr);
  EXPECT_EQ(Replaced("ab", "a", "", 1), "b");
  const Guarded dst(3);
  EXPECT_EQ(strChgKeyword(dst.data(), "aXb", "X", nullptr), dst.data());
  EXPECT_STREQ(dst.data(), "ab");
  EXPECT_EQ(strip_chars(nullptr, " "), nullptr);
  const Guarded text(std::string_view(" a "));
  EXPECT_EQ(strip_chars(text.data(), nullptr), text.data());
  EXPECT_STREQ(text.data(), " a ");
  EXPECT_EQ(trim(nullptr), nullptr);
  EXPECT_EQ(trimTo(nullptr, " a "), nullptr);
  EXPECT_EQ(trimTo(text.data(), nullptr), text.data());
  EXPECT_STREQ(text.data(), "");
  EXPECT_EQ(strWildcardCmp(nullptr, ""), 0);
  EXPECT_EQ(strWildcardCmp(nullptr, "a"), -'a');
  EXPECT_EQ(strWildcardCmp("a", nullptr), 'a');
}

}  // namespace
}  // namespace kio::test
