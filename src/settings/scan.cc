#include "settings/scan.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__) && !defined(KIO_SCALAR_SCAN)
#include <emmintrin.h>
#endif

#include "kioapp/xml.h"

namespace kio::settings {

using platform::TextView;

namespace {

#if defined(__SSE2__) && !defined(KIO_SCALAR_SCAN)

// Sixteen neighbouring positions at once.
class Stride {
 public:
  static constexpr std::size_t kWidth = 16;

  explicit Stride(const CharacterPair& pair)
      : first_(_mm_set1_epi8(pair.first)),
        second_(_mm_set1_epi8(pair.second)),
        first_case_(_mm_set1_epi8(pair.first_case)),
        second_case_(_mm_set1_epi8(pair.second_case)),
        distance_(pair.distance) {}

  // Index of the first match among the positions from `position` on; kWidth when there is none.
  [[nodiscard]] std::size_t FirstMatch(const char* position) const {
    const __m128i first = _mm_or_si128(Load(position), first_case_);
    const __m128i second = _mm_or_si128(Load(position + distance_), second_case_);
    const __m128i matches =
        _mm_and_si128(_mm_cmpeq_epi8(first, first_), _mm_cmpeq_epi8(second, second_));
    const auto bits = static_cast<std::uint32_t>(_mm_movemask_epi8(matches));
    return static_cast<std::size_t>(std::countr_zero(bits | (1U << kWidth)));
  }

 private:
  static __m128i Load(const char* position) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(position));
  }

  __m128i first_;
  __m128i second_;
  __m128i first_case_;
  __m128i second_case_;
  std::size_t distance_;
};

#else

// As many neighbouring positions at once as a machine word has bytes.
class Stride {
 public:
  using Word = std::size_t;
  static constexpr std::size_t kWidth = sizeof(Word);

  explicit Stride(const CharacterPair& pair)
      : first_(Repeat(pair.first)),
        second_(Repeat(pair.second)),
        first_case_(Repeat(pair.first_case)),
        second_case_(Repeat(pair.second_case)),
        distance_(pair.distance) {}

  // Index of the first match among the positions from `position` on; kWidth when there is none.
  [[nodiscard]] std::size_t FirstMatch(const char* position) const {
    const Word differences = ((Load(position) | first_case_) ^ first_) |
                             ((Load(position + distance_) | second_case_) ^ second_);
    // Sets the top bit of exactly those bytes that are zero: no carry leaves a byte, so the order
    // of bytes in a word does not matter.
    constexpr Word kLowBits = Repeat(0x7F);
    const Word zeros = ~(((differences & kLowBits) + kLowBits) | differences | kLowBits);
    if constexpr (std::endian::native == std::endian::little) {
      return static_cast<std::size_t>(std::countr_zero(zeros)) / 8;
    } else {
      return static_cast<std::size_t>(std::countl_zero(zeros)) / 8;
    }
  }

 private:
  static constexpr Word Repeat(char character) {
    return static_cast<Word>(-1) / 0xFF * static_cast<unsigned char>(character);
  }
  static Word Load(const char* position) {
    Word word = 0;
    std::memcpy(&word, position, sizeof(word));
    return word;
  }

  Word first_;
  Word second_;
  Word first_case_;
  Word second_case_;
  std::size_t distance_;
};

#endif

}  // namespace

const char* FindPair(const char* begin, const char* end, const char* readable,
                     const CharacterPair& pair) {
  if (static_cast<std::size_t>(readable - begin) <= pair.distance) {
    return nullptr;
  }
  // Positions before `last` have their second character before `readable`.
  const char* const last = readable - pair.distance;
  end = std::min(end, last);
  const char* position = begin;
  if (static_cast<std::size_t>(last - begin) >= Stride::kWidth) {
    const Stride stride(pair);
    while (position < end) {
      // The last stride looks at some positions again rather than past the end.
      position = std::min(position, last - Stride::kWidth);
      const std::size_t match = stride.FirstMatch(position);
      if (match < Stride::kWidth) {
        return position + match < end ? position + match : nullptr;
      }
      position += Stride::kWidth;
    }
    return nullptr;
  }
  for (; position < end; ++position) {
    if (pair.Matches(position)) {
      return position;
    }
  }
  return nullptr;
}

CharacterPair PairIn(TextView needle) {
  std::size_t apart = needle.size() - 1;
  while (apart > 0 && platform::ToLower(needle[apart]) == platform::ToLower(needle[0])) {
    --apart;
  }
  // A needle of one repeated letter has its first and its last character alone to offer.
  apart = apart > 0 ? apart : needle.size() - 1;
  return {needle[0], needle[apart], apart};
}

const char* SearchText::Find(const char* from, const CharacterPair& pair) {
  for (;;) {
    const std::size_t searched = static_cast<std::size_t>(from - begin_);
    if (searched >= limit_) {
      return nullptr;
    }
    const std::size_t left = limit_ - searched;
    const auto known = static_cast<std::size_t>(known_ > from ? known_ - from : 0);
    const char* const hit = FindPair(from, from + std::min(left, known), from + known, pair);
    if (hit != nullptr) {
      return hit;
    }
    if (known > pair.distance) {
      from += known - pair.distance;
    }
    if (!Extend()) {
      return nullptr;
    }
  }
}

bool SearchText::Extend() {
  if (end_found_) {
    return false;
  }
  const std::size_t wanted = std::min(step_, limit_ - static_cast<std::size_t>(known_ - begin_));
  const std::size_t found = strnlen(known_, wanted);
  known_ += found;
  end_found_ = found < step_;
  step_ = std::min(step_ * 2, kLongestStep);
  return found > 0;
}

}  // namespace kio::settings

char* strstri(const char* haystack, const char* needle) {
  if (haystack == nullptr || needle == nullptr || needle[0] == '\0') {
    return nullptr;
  }
  using kio::settings::SearchText;
  const kio::platform::TextView text(needle);
  const kio::settings::CharacterPair pair = kio::settings::PairIn(text);
  SearchText search(haystack, SearchText::kNoLimit);
  for (const char* hit = search.Find(haystack, pair); hit != nullptr;
       hit = search.Find(hit + 1, pair)) {
    if (search.HasAt(hit, text)) {
      return const_cast<char*>(hit);
    }
  }
  return nullptr;
}
