// Searching text for a pair of characters a fixed distance apart: the inner loop of every search.
#ifndef KIO_SETTINGS_SCAN_H
#define KIO_SETTINGS_SCAN_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/text.h"
#include "settings/stride.h"

namespace kio::settings {

// Looks for positions where two characters stand `distance` apart, each in its case or, when it is
// folded, in any. Such a position is worth a full comparison, which it also needs: folding takes
// some characters for others.
template <bool kFoldFirst, bool kFoldSecond>
class PairSearch {
 public:
  [[gnu::always_inline]] PairSearch(char first, char second, std::size_t distance)
      : first_(first),
        second_(second),
        first_character_(first),
        second_character_(second),
        distance_(distance) {}

  // First match in [begin, end), or null. Nothing at or behind `readable` is read, and a match has
  // both its characters before it.
  [[nodiscard, gnu::always_inline]] const char* Find(const char* begin, const char* end,
                                                     const char* readable) const {
    // Positions before `last` have their second character before `readable`.
    const char* const last = readable - distance_;
    if (last - begin < kWidth) {
      return FindInFew(begin, end, readable);
    }
    end = std::min(end, last);
    // Most matches are near. What is farther, and the last few positions, where a stride has to
    // begin earlier so as not to reach past the end, are left to a loop that takes longer to get
    // going.
    const char* const near_end =
        std::min(last - begin > kNear ? begin + kNear : last - kWidth + 1, end);
    const char* position = begin;
    while (position < near_end) {
      const std::size_t match = FirstOf(Compare(position));
      if (match < static_cast<std::size_t>(kWidth)) {
        return position + match < end ? position + match : nullptr;
      }
      position += kWidth;
    }
    return position < end ? FindFar(position, end, last) : nullptr;
  }

 private:
  static constexpr std::ptrdiff_t kWidth = Stride<kFoldFirst>::kWidth;
  static constexpr std::ptrdiff_t kNear = 8 * kWidth;

  [[nodiscard, gnu::always_inline]] auto Compare(const char* position) const {
    return Both(first_.Compare(position), second_.Compare(position + distance_));
  }

  [[nodiscard, gnu::noinline]] const char* FindInFew(const char* position, const char* end,
                                                     const char* readable) const {
    const auto matches = [](char character, char wanted, bool fold) {
      return character == wanted ||
             (fold && platform::ToLower(character) == platform::ToLower(wanted));
    };
    for (; position < end && readable - position > static_cast<std::ptrdiff_t>(distance_);
         ++position) {
      if (matches(position[0], first_character_, kFoldFirst) &&
          matches(position[distance_], second_character_, kFoldSecond)) {
        return position;
      }
    }
    return nullptr;
  }

  // At least one stride fits before `last`.
  [[nodiscard, gnu::noinline]] const char* FindFar(const char* position, const char* end,
                                                   const char* last) const {
    const PairSearch search = *this;
    while (position < end) {
      while (position < end && last - position >= 4 * kWidth && !search.IsAnyInFour(position)) {
        position += 4 * kWidth;
      }
      // There is a match in the next four strides, or fewer are left.
      for (int i = 0; i < 4 && position < end; ++i) {
        position = std::min(position, last - kWidth);
        const std::size_t match = FirstOf(search.Compare(position));
        if (match < static_cast<std::size_t>(kWidth)) {
          return position + match < end ? position + match : nullptr;
        }
        position += kWidth;
      }
    }
    return nullptr;
  }

  [[nodiscard, gnu::always_inline]] bool IsAnyInFour(const char* position) const {
    return IsAnyIn(Compare(position), Compare(position + kWidth), Compare(position + 2 * kWidth),
                   Compare(position + 3 * kWidth));
  }

  Stride<kFoldFirst> first_;
  Stride<kFoldSecond> second_;
  char first_character_;
  char second_character_;
  std::size_t distance_;
};

// The first and the last word of two runs of `size` characters, which may overlap.
template <typename Word>
class EndComparison {
 public:
  [[gnu::always_inline]] EndComparison(const char* a, const char* b, std::size_t size)
      : differences_(static_cast<Word>(
            (Load(a) ^ Load(b)) | (Load(a + size - sizeof(Word)) ^ Load(b + size - sizeof(Word))))),
        covers_all_(size <= 2 * sizeof(Word)) {}

  // Whether the runs are equal, and that in every character.
  [[nodiscard, gnu::always_inline]] bool AreSame() const {
    return differences_ == 0 && covers_all_;
  }
  // Whether they differ in more than the cases of letters.
  [[nodiscard, gnu::always_inline]] bool Differ() const {
    constexpr Word kCaseBits =
        static_cast<Word>(static_cast<Word>(-1) / 0xFF * static_cast<Word>(kCaseBit));
    return (differences_ & static_cast<Word>(~kCaseBits)) != 0;
  }

 private:
  [[gnu::always_inline]] static Word Load(const char* text) {
    Word word = 0;
    std::memcpy(&word, text, sizeof(word));
    return word;
  }

  Word differences_;
  bool covers_all_;
};

// For runs of more than two words: compares word by word, which telling ends leave to do.
bool EqualsFoldInside(const char* a, const char* b, std::size_t size);

// Whether the `size` characters at `a` and `b` are equal, ignoring ASCII case. All of them are
// there. Whole words tell nearly always; letters are folded one by one only when they do not.
[[gnu::always_inline]] inline bool EqualsFold(const char* a, const char* b, std::size_t size) {
  if (size >= sizeof(std::uint64_t)) {
    const EndComparison<std::uint64_t> ends(a, b, size);
    if (ends.AreSame() || ends.Differ()) {
      return ends.AreSame();
    }
  } else if (size >= sizeof(std::uint32_t)) {
    const EndComparison<std::uint32_t> ends(a, b, size);
    if (ends.AreSame() || ends.Differ()) {
      return ends.AreSame();
    }
  } else if (size >= sizeof(std::uint16_t)) {
    const EndComparison<std::uint16_t> ends(a, b, size);
    if (ends.AreSame() || ends.Differ()) {
      return ends.AreSame();
    }
  }
  return size > 2 * sizeof(std::uint64_t)
             ? EqualsFoldInside(a, b, size)
             : platform::StartsWithFold(a, platform::TextView(b, size));
}

// First position of [from, end) where a tag may begin, or null. Nothing at or behind `readable` is
// read.
[[gnu::always_inline]] inline const char* FindTagStart(const char* from, const char* end,
                                                       const char* readable) {
  const Stride<false> start('<');
  constexpr auto kWidth = static_cast<std::ptrdiff_t>(Stride<false>::kWidth);
  for (; from < end && readable - from >= kWidth; from += kWidth) {
    const std::size_t match = FirstOf(start.Compare(from));
    if (match < static_cast<std::size_t>(kWidth)) {
      return from + match < end ? from + match : nullptr;
    }
  }
  while (from < end && *from != '<') {
    ++from;
  }
  return from < end ? from : nullptr;
}

// A text to search whose end may not be known: it ends after `limit` characters or at its
// terminator, whichever comes first. The end is looked for as the search proceeds, so that a hit
// near the start costs no pass over the rest.
class SearchText {
 public:
  static constexpr std::size_t kNoLimit = static_cast<std::size_t>(-1);

  // `first_step` characters are looked at before the search begins: as many as it takes at least.
  [[gnu::always_inline]] SearchText(const char* begin, std::size_t limit, std::size_t first_step)
      : known_(begin), readable_(begin), left_(limit), step_(first_step) {
    ExtendKnown();
  }

  // A text known to reach to `end`; more of it may be read up to `readable`.
  [[gnu::always_inline]] SearchText(const char* end, const char* readable)
      : known_(end), readable_(readable), is_whole_(true) {}

  // The text is known to reach here.
  [[nodiscard]] const char* known() const { return known_; }
  [[nodiscard]] const char* readable() const { return readable_; }

  // Where to look, from `from` on, for what takes `size` characters: while the end is not known,
  // not so far that it would reach beyond what is known.
  [[nodiscard, gnu::always_inline]] const char* HitsEnd(const char* from, std::size_t size) const {
    if (is_whole_) {
      return known_;
    }
    return static_cast<std::size_t>(known_ - from) > size ? known_ - size : from;
  }

  // Learns of more text. Returns false when there is none.
  bool Extend() { return !is_whole_ && ExtendKnown(); }

 private:
  static constexpr std::size_t kLongestStep = 4096;

  bool ExtendKnown() {
    const std::size_t wanted = std::min(step_, left_);
    const std::size_t found = strnlen(known_, wanted);
    known_ += found;
    readable_ = known_;
    left_ -= found;
    is_whole_ = found < step_;
    step_ = std::min(step_ * 2, kLongestStep);
    return true;
  }

  const char* known_;
  const char* readable_;
  std::size_t left_ = 0;  // behind `known_`
  std::size_t step_ = 0;
  bool is_whole_ = false;
};

}  // namespace kio::settings

#endif
