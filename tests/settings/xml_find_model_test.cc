// The finders against a plain model of them, on random texts.
#include <array>
#include <cctype>
#include <cstring>
#include <random>
#include <string>
#include <string_view>

#include "kioapp/kioapp.h"
#include "settings/found.h"
#include "support/exchange.h"
#include "support/guarded_text.h"

namespace kio::test {
namespace {

// First match of `needle` in `text` from `start` on, ignoring ASCII case; -1 when there is none.
long ModelSearch(const std::string& text, const std::string& needle, std::size_t start) {
  if (needle.empty()) {
    return -1;
  }
  for (std::size_t i = start; i + needle.size() <= text.size(); ++i) {
    if (strncasecmp(text.c_str() + i, needle.c_str(), needle.size()) == 0) {
      return static_cast<long>(i);
    }
  }
  return -1;
}

Found ModelFind(const std::string& whole, int len, const std::string& key, bool header_only) {
  const bool bounded = len > 0 && static_cast<std::size_t>(len) <= whole.size();
  const std::string text = bounded ? whole.substr(0, static_cast<std::size_t>(len)) : whole;
  const std::string open = "<" + key + ">";
  const long opening = ModelSearch(text, open, 0);
  if (opening >= 0) {
    if (header_only) {
      return {opening, kUntouched};
    }
    const auto content = static_cast<std::size_t>(opening) + open.size();
    const long closing = ModelSearch(text, "</" + key + ">", content);
    if (closing < 0) {
      return {-1, 0};
    }
    const auto start = static_cast<long>(content);
    return {start, static_cast<int>(closing - start)};
  }
  for (const char* form : {"/>", " />"}) {
    const long hit = ModelSearch(text, "<" + key + form, 0);
    if (hit >= 0) {
      return {hit, header_only ? kUntouched : 0};
    }
  }
  return {-1, 0};
}

// Random texts made of pieces that are close to tags.
class RandomText {
 public:
  explicit RandomText(unsigned seed) : engine_(seed) {}

  int Below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(engine_); }

  std::string Text(int pieces) {
    static constexpr std::array kPieces = {
        "<a>", "</a>", "<a/>", "<a />", "<A>",  "</A>", "<ab>", "</ab", "<",    ">",     "/",
        "a",   "ab",   " ",    "x",     "<<a>", "<b>",  "</b>", "<a\n", "\xE1", "<AB />"};
    std::string text;
    for (int i = 0; i < pieces; ++i) {
      text += kPieces.at(static_cast<std::size_t>(Below(static_cast<int>(kPieces.size()))));
    }
    return text;
  }

  // Mostly characters of tags, and few tags.
  std::string SparseText(int size) {
    static constexpr std::string_view kFiller = "xxxxab/>< B";
    std::string text;
    while (text.size() < static_cast<std::size_t>(size)) {
      if (Below(60) == 0) {
        text += Text(1);
      } else {
        text += kFiller.at(static_cast<std::size_t>(Below(static_cast<int>(kFiller.size()))));
      }
    }
    return text;
  }

  // The same letters in any case.
  std::string AnyCase(std::string text) {
    for (char& character : text) {
      const auto code = static_cast<unsigned char>(character);
      character = static_cast<char>(Below(2) == 0 ? std::toupper(code) : std::tolower(code));
    }
    return text;
  }

 private:
  std::mt19937 engine_;
};

class FindModelTest : public ::testing::TestWithParam<unsigned> {};

void ExpectSameFinds(const std::string& text, int len) {
  static constexpr std::array kKeys = {"a", "A", "ab", "b", "aB", ""};
  const GuardedText guarded(text);
  for (const char* key : kKeys) {
    for (const bool header_only : {false, true}) {
      int length = kUntouched;
      const char* hit = FindXmlKeyContain_(guarded.get(), len, key, &length, header_only ? 1 : 0);
      const Found found{hit == nullptr ? -1 : hit - guarded.get(), length};
      ASSERT_EQ(found, ModelFind(text, len, key, header_only))
          << "text '" << text << "' len " << len << " key '" << key << "' header " << header_only;
    }
  }
}

TEST_P(FindModelTest, FindsWhatThePlainModelFinds) {
  RandomText random(GetParam());
  for (int round = 0; round < 400; ++round) {
    const std::string text = random.Text(random.Below(60));
    ExpectSameFinds(text, random.Below(static_cast<int>(text.size()) + 6) - 2);
  }
}

TEST_P(FindModelTest, FindsTheSameFarAway) {
  RandomText random(GetParam() + 2000);
  for (int round = 0; round < 200; ++round) {
    const std::string text = random.SparseText(random.Below(1500));
    ExpectSameFinds(text, random.Below(static_cast<int>(text.size()) + 6) - 2);
  }
}

TEST_P(FindModelTest, StrstriFindsWhatThePlainModelFinds) {
  static constexpr std::array kNeedles = {"a", "<A>", "</AB", "x<", " />", "\xE1", "a>x", ""};
  RandomText random(GetParam() + 1000);
  for (int round = 0; round < 400; ++round) {
    const std::string text = random.Text(random.Below(80));
    const GuardedText guarded(text);
    for (const char* needle : kNeedles) {
      const char* hit = strstri(guarded.get(), needle);
      ASSERT_EQ(hit == nullptr ? -1 : hit - guarded.get(), ModelSearch(text, needle, 0))
          << "text '" << text << "' needle '" << needle << "'";
    }
  }
}

TEST_P(FindModelTest, StrstriFindsPiecesOfTheText) {
  RandomText random(GetParam() + 3000);
  for (int round = 0; round < 400; ++round) {
    const std::string text =
        round % 2 == 0 ? random.SparseText(random.Below(1200)) : random.Text(random.Below(300));
    const GuardedText guarded(text);
    const int begin = random.Below(static_cast<int>(text.size()) + 1);
    std::string needle = random.AnyCase(
        text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(random.Below(80))));
    if (!needle.empty() && random.Below(3) == 0) {
      needle.at(static_cast<std::size_t>(random.Below(static_cast<int>(needle.size())))) = 'y';
    }
    const char* hit = strstri(guarded.get(), needle.c_str());
    ASSERT_EQ(hit == nullptr ? -1 : hit - guarded.get(), ModelSearch(text, needle, 0))
        << "text '" << text << "' needle '" << needle << "'";
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, FindModelTest, ::testing::Range(0U, 8U));

// Every alignment of text and needle, for searches that look at many bytes at a time.
TEST(FindAlignmentTest, EveryPositionAndNeedleLength) {
  for (std::size_t before = 0; before < 70; ++before) {
    for (std::size_t size = 1; size < 40; ++size) {
      const std::string needle = std::string(size - 1, 'q') + "Z";
      const std::string text = std::string(before, 'q') + std::string(size - 1, 'Q') + "z";
      const GuardedText guarded(text);
      const char* hit = strstri(guarded.get(), needle.c_str());
      ASSERT_EQ(hit, guarded.get() + before) << before << " " << size;
    }
  }
}

// Only letters have cases: no other character is taken for one that differs in the same bit, or in
// the one that no ASCII has.
TEST(FindAlignmentTest, OnlyLettersHaveCases) {
  constexpr unsigned char kCaseBit = 0x20;
  constexpr unsigned char kHighBit = 0x80;
  for (std::size_t size = 1; size < 24; ++size) {
    for (std::size_t at = 0; at < size; ++at) {
      for (int code = 1; code < 256; ++code) {
        for (const unsigned char bit : {kCaseBit, kHighBit}) {
          const auto other = static_cast<unsigned char>(code ^ bit);
          std::string needle(size, 'm');
          needle.at(at) = static_cast<char>(code);
          std::string text = "--" + std::string(size, 'M');
          text.at(at + 2) = static_cast<char>(other);
          const long expected = other == 0 ? -1 : ModelSearch(text, needle, 0);
          const char* hit = strstri(text.c_str(), needle.c_str());
          ASSERT_EQ(hit == nullptr ? -1 : hit - text.c_str(), expected)
              << "size " << size << " at " << at << " code " << code;
        }
      }
    }
  }
}

TEST(FindAlignmentTest, ElementAtEveryPosition) {
  for (std::size_t before = 0; before < 420; ++before) {
    for (std::size_t size = 0; size < 260; size += size < 40 ? 3 : 43) {
      const std::string text =
          std::string(before, '<') + "<Key>" + std::string(size, '/') + "</kEY>";
      const GuardedText guarded(text);
      int length = kUntouched;
      const char* hit = FindXmlKeyContain(guarded.get(), 0, "kEy", &length);
      ASSERT_EQ(hit, guarded.get() + before + 5) << before << " " << size;
      ASSERT_EQ(length, static_cast<int>(size)) << before;
    }
  }
}

}  // namespace
}  // namespace kio::test
