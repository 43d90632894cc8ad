// The finders against a plain model of them, on random texts.
#include <array>
#include <cstring>
#include <random>
#include <string>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/guarded_text.h"

namespace kio::test {
namespace {

constexpr int kUntouched = -77;

struct Found {
  long offset;
  int length;

  bool operator==(const Found&) const = default;
};

void PrintTo(const Found& found, std::ostream* out) {
  *out << "offset " << found.offset << ", length " << found.length;
}

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

 private:
  std::mt19937 engine_;
};

class FindModelTest : public ::testing::TestWithParam<unsigned> {};

TEST_P(FindModelTest, FindsWhatThePlainModelFinds) {
  static constexpr std::array kKeys = {"a", "A", "ab", "b", "aB", ""};
  RandomText random(GetParam());
  for (int round = 0; round < 400; ++round) {
    const std::string text = random.Text(random.Below(60));
    const GuardedText guarded(text);
    const int len = random.Below(static_cast<int>(text.size()) + 6) - 2;
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

TEST(FindAlignmentTest, ElementAtEveryPosition) {
  for (std::size_t before = 0; before < 100; ++before) {
    for (std::size_t size = 0; size < 40; size += 3) {
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
