// Tags whose text reaches the 127 characters that a tag text has at most: it is cut there, and what
// is left of it is looked for.
#include <strings.h>

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "settings/found.h"
#include "support/exchange.h"
#include "support/guarded_text.h"

namespace kio::test {
namespace {

constexpr std::size_t kTagLimit = 127;

std::string Tag(const std::string& before, const std::string& key, const std::string& behind) {
  return (before + key + behind).substr(0, kTagLimit);
}

std::optional<std::size_t> Position(const std::string& text, const std::string& tag,
                                    std::size_t from) {
  for (std::size_t i = from; i + tag.size() <= text.size(); ++i) {
    if (strncasecmp(text.c_str() + i, tag.c_str(), tag.size()) == 0) {
      return i;
    }
  }
  return std::nullopt;
}

// What a search with the four tag texts, each cut, finds.
Found Expected(const std::string& text, const std::string& key, bool header_only) {
  const std::string open = Tag("<", key, ">");
  if (const auto opening = Position(text, open, 0)) {
    if (header_only) {
      return {static_cast<long>(*opening), kUntouched};
    }
    const std::size_t content = *opening + open.size();
    const auto closing = Position(text, Tag("</", key, ">"), content);
    return closing ? Found{static_cast<long>(content), static_cast<int>(*closing - content)}
                   : Found{-1, 0};
  }
  for (const char* const form : {"/>", " />"}) {
    if (const auto empty = Position(text, Tag("<", key, form), 0)) {
      return {static_cast<long>(*empty), header_only ? kUntouched : 0};
    }
  }
  return {-1, 0};
}

void ExpectFound(const std::string& text, int length, const std::string& key) {
  const std::string searched = length > 0 ? text.substr(0, static_cast<std::size_t>(length)) : text;
  const GuardedText guarded(text);
  for (const bool header_only : {false, true}) {
    int found_length = kUntouched;
    const char* const hit =
        FindXmlKeyContain_(guarded.get(), length, key.c_str(), &found_length, header_only ? 1 : 0);
    const Found found{hit == nullptr ? -1 : hit - guarded.get(), found_length};
    ASSERT_EQ(found, Expected(searched, key, header_only))
        << "key of " << key.size() << ", header " << header_only << ", searched '" << searched
        << "'";
  }
}

// The text ends where its memory does, and once more where the search is told to end.
void ExpectFoundEitherWay(const std::string& text, const std::string& key) {
  ExpectFound(text, 0, key);
  ExpectFound(text + "kk/>>", static_cast<int>(text.size()), key);
}

class LongTagTest : public ::testing::TestWithParam<std::size_t> {
 protected:
  // With a first and a last character of its own.
  const std::string key_ = "A" + std::string(GetParam() - 2, 'k') + "z";
  const std::string other_case_ = "a" + std::string(GetParam() - 2, 'K') + "Z";
};

// Every tag, whole and without its last characters, at the end of the text.
TEST_P(LongTagTest, TagAtTheEnd) {
  for (const char* const behind : {">", "/>", " />", " >", "x>", "//"}) {
    for (const std::string& key : {key_, other_case_}) {
      const std::string tag = "<" + key + behind;
      for (std::size_t lost = 0; lost < 6; ++lost) {
        for (const std::size_t before : {0U, 1U, 15U, 16U, 63U, 64U, 200U, 400U}) {
          const std::string text = std::string(before, '.') + tag.substr(0, tag.size() - lost);
          ASSERT_NO_FATAL_FAILURE(ExpectFoundEitherWay(text, key_));
        }
      }
    }
  }
}

TEST_P(LongTagTest, ClosingTagAtTheEnd) {
  for (const char* const behind : {">", " >", "x>", "/>"}) {
    for (const std::string& key : {key_, other_case_}) {
      const std::string tag = "</" + key + behind;
      for (std::size_t lost = 0; lost < 6; ++lost) {
        for (const std::size_t inside : {0U, 1U, 15U, 16U, 63U, 64U, 200U, 400U}) {
          const std::string text =
              "<" + key_ + ">" + std::string(inside, '.') + tag.substr(0, tag.size() - lost);
          ASSERT_NO_FATAL_FAILURE(ExpectFoundEitherWay(text, key_));
        }
      }
    }
  }
}

// What stands behind a cut tag belongs to what follows it.
TEST_P(LongTagTest, TagBeforeOthers) {
  const std::vector<std::string> forms = {">", "/>", " />", " a>", "x>", "/x>", " /x"};
  for (const std::string& first : forms) {
    for (const std::string& second : forms) {
      std::string text = ".<";
      text += key_;
      text += first;
      text += "one</";
      text += key_;
      text += "!two<";
      text += other_case_;
      text += second;
      ASSERT_NO_FATAL_FAILURE(ExpectFoundEitherWay(text, key_));
      text += "three</" + other_case_ + ">";
      ASSERT_NO_FATAL_FAILURE(ExpectFoundEitherWay(text, key_));
    }
  }
}

// Another key that begins with this one, or that it begins with.
TEST_P(LongTagTest, KeysThatShareTheirBeginning) {
  for (const std::string& other :
       {key_ + "y", key_ + key_, key_.substr(0, key_.size() - 1), key_.substr(0, 123)}) {
    for (const char* const behind : {">", "/>", " />"}) {
      std::string text = "<";
      text += other;
      text += behind;
      text += "v</";
      text += other;
      text += ">";
      ASSERT_NO_FATAL_FAILURE(ExpectFoundEitherWay(text, key_));
      ASSERT_NO_FATAL_FAILURE(
          ExpectFoundEitherWay("<" + key_ + behind + "v</" + key_ + ">", other));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(KeySizes, LongTagTest,
                         ::testing::Values(3, 64, 121, 122, 123, 124, 125, 126, 127, 128, 129,
                                           140));

// The model above tells apart what it should.
TEST(LongTagModelTest, CutsAreWhereTheyShouldBe) {
  const auto key = [](std::size_t size) { return std::string(size, 'k'); };
  EXPECT_EQ(Expected("<" + key(124) + " /", key(124), false), (Found{0, 0}));
  EXPECT_EQ(Expected("<" + key(124) + " ", key(124), false), (Found{-1, 0}));
  EXPECT_EQ(Expected("<" + key(125) + "/", key(125), false), (Found{0, 0}));
  EXPECT_EQ(Expected("<" + key(125) + " ", key(125), false), (Found{0, 0}));
  EXPECT_EQ(Expected("<" + key(125) + "></" + key(125), key(125), false), (Found{127, 0}));
  EXPECT_EQ(Expected("<" + key(126) + "</" + key(125), key(126), false), (Found{127, 0}));
}

}  // namespace
}  // namespace kio::test
