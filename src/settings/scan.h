// Searching text for a pair of characters a fixed distance apart: the inner loop of every search.
#ifndef KIO_SETTINGS_SCAN_H
#define KIO_SETTINGS_SCAN_H

#include <cstddef>

#include "platform/text.h"

namespace kio::settings {

// Two characters of a searched text, `distance` apart, letters in either case. A position where
// both match is worth a full comparison.
struct CharacterPair {
  constexpr CharacterPair(char first_character, char second_character, std::size_t apart)
      : first(platform::ToLower(first_character)),
        second(platform::ToLower(second_character)),
        first_case(CaseBit(first)),
        second_case(CaseBit(second)),
        distance(apart) {}

  [[nodiscard]] constexpr bool Matches(const char* position) const {
    return (position[0] | first_case) == first && (position[distance] | second_case) == second;
  }

  char first;
  char second;
  // Folds an upper-case letter onto `first` or `second`; 0 where that is no letter.
  char first_case;
  char second_case;
  std::size_t distance;

 private:
  static constexpr char CaseBit(char folded) {
    return folded >= 'a' && folded <= 'z' ? char{0x20} : char{0};
  }
};

// The pair to look for a text by: its first character and, behind it, the last one that differs
// from it, so that a run of one letter never matches a text that holds another. `needle` is not
// empty.
CharacterPair PairIn(platform::TextView needle);

// First position of [begin, end) where the pair matches, or null. All of a match, its second
// character included, lies before `readable`; nothing at or behind `readable` is read.
const char* FindPair(const char* begin, const char* end, const char* readable,
                     const CharacterPair& pair);

// A text to search whose end may not be known: it ends after `limit` characters or at its
// terminator, whichever comes first. The end is looked for as the search proceeds, so that a hit
// near the start costs no pass over the rest.
class SearchText {
 public:
  static constexpr std::size_t kNoLimit = static_cast<std::size_t>(-1);

  SearchText(const char* begin, std::size_t limit) : begin_(begin), known_(begin), limit_(limit) {}

  // A text known to hold `limit` characters; it may be read up to `readable`.
  SearchText(const char* begin, std::size_t limit, const char* readable)
      : begin_(begin), known_(readable), limit_(limit), end_found_(true) {}

  // First position at or after `from` where the pair matches, or null.
  const char* Find(const char* from, const CharacterPair& pair);

  // Whether `text` stands at `position`, ignoring ASCII case.
  [[nodiscard]] bool HasAt(const char* position, platform::TextView text) const {
    return text.size() <= limit_ - static_cast<std::size_t>(position - begin_) &&
           platform::StartsWithFold(position, text);
  }

 private:
  static constexpr std::size_t kFirstStep = 128;
  static constexpr std::size_t kLongestStep = 4096;

  // Learns of more text behind `known_`. Returns false when there is none.
  bool Extend();

  const char* begin_;
  const char* known_;  // readable up to here
  std::size_t limit_;
  std::size_t step_ = kFirstStep;
  bool end_found_ = false;
};

}  // namespace kio::settings

#endif
