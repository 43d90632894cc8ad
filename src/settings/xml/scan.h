// The inner loop of every search, and the text that is searched.
#ifndef KIO_SETTINGS_XML_SCAN_H
#define KIO_SETTINGS_XML_SCAN_H

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/inline.h"
#include "platform/text.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#define KIO_BLOCKS
#elif defined(__aarch64__)
#include <arm_neon.h>
#define KIO_BLOCKS
#endif

namespace kio::settings {

// What a search looks for: two characters, in whatever case, at two places behind its position.
// They tell a tag from most others; what makes it one, `mark`, is all over a document.
struct Pattern {
  char first;
  std::size_t first_place;
  char last;
  std::size_t last_place;  // not before the first one
  char mark;               // stands at the position itself; 0 when anything may
  bool or_slash = false;   // the mark, or a slash behind it
};

// Clears the bit that tells the cases of a letter apart, and the one that no ASCII has. Characters
// that are then equal are alike; a search compares them for good afterwards.
inline constexpr char kComparedBits = 0x5F;

inline bool AreAlike(char a, char b) { return ((a ^ b) & kComparedBits) == 0; }

// Whether the `size` characters at `a` and `b` are equal, ignoring ASCII case. All of them are
// there. They are compared from their ends: what is looked for differs there from what it is like.
inline bool EqualsFold(const char* a, const char* b, std::size_t size) {
  const char* from_b = b + size;
  for (const char* from_a = a + size; from_a != a;) {
    --from_a;
    --from_b;
    if (*from_a != *from_b && platform::ToLower(*from_a) != platform::ToLower(*from_b)) {
      return false;
    }
  }
  return true;
}

// Whether two texts of two to sixteen characters are the same, as two words tell that may overlap.
KIO_INLINE inline bool AreSameWords(const char* a, const char* b, std::size_t size) {
  const auto have_same_ends = [=](std::size_t word) KIO_INLINE {
    return std::memcmp(a, b, word) == 0 && std::memcmp(a + size - word, b + size - word, word) == 0;
  };
  if (size >= 8) {
    return size <= 16 && have_same_ends(8);
  }
  return size >= 4 ? have_same_ends(4) : size >= 2 && have_same_ends(2);
}

#ifdef KIO_BLOCKS
// The characters of sixteen positions. Operators act on all of them.
using ByteBlock = unsigned char __attribute__((vector_size(16)));
inline constexpr std::ptrdiff_t kBlockSize = sizeof(ByteBlock);

// Most hits are within so many characters: to look at four blocks at once costs more there than it
// saves.
inline constexpr std::ptrdiff_t kNear = 8 * kBlockSize;

inline ByteBlock LoadBlock(const char* position) {
  using Unaligned [[gnu::aligned(1), gnu::may_alias]] = ByteBlock;
  return *reinterpret_cast<const Unaligned*>(position);
}

// Computed as a word: a byte that was put aside in memory is slow to read as part of a word.
inline ByteBlock Repeat(char character) {
  using Words = std::uint32_t __attribute__((vector_size(16)));
  return reinterpret_cast<ByteBlock>(Words{} + static_cast<unsigned char>(character) * 0x01010101U);
}

// The smaller character of each position.
inline ByteBlock Smallest(ByteBlock a, ByteBlock b) { return a < b ? a : b; }

// The positions whose character is 0, a bit for each; that of the first one is the lowest.
#if defined(__SSE2__)
inline constexpr int kBitsOfPosition = 1;
KIO_INLINE inline std::uint64_t MaskOfZeros(ByteBlock block) {
  return static_cast<unsigned>(_mm_movemask_epi8(reinterpret_cast<__m128i>(block == 0)));
}
#else
inline constexpr int kBitsOfPosition = 4;
KIO_INLINE inline std::uint64_t MaskOfZeros(ByteBlock block) {
  const auto zeros = reinterpret_cast<uint16x8_t>(block == 0);
  constexpr std::uint64_t kOneOfFour = 0x1111'1111'1111'1111;
  return vget_lane_u64(vreinterpret_u64_u8(vshrn_n_u16(zeros, 4)), 0) & kOneOfFour;
}
#endif

// As FindPattern, in at least a block.
template <typename Accept>
[[nodiscard]] KIO_INLINE inline const char* FindInBlocks(const char* from, const char* end,
                                                         const Pattern& pattern,
                                                         const Accept& accept) {
  const ByteBlock first = Repeat(pattern.first);
  const ByteBlock last = Repeat(pattern.last);
  const auto compare = [=](const char* position) KIO_INLINE {
    return ((LoadBlock(position + pattern.first_place) ^ first) |
            (LoadBlock(position + pattern.last_place) ^ last)) &
           Repeat(kComparedBits);
  };
  const char* const stop = end - kBlockSize;
  const char* const near_end = from + std::min(kNear, stop - from);
  for (;;) {
    for (std::uint64_t mask = MaskOfZeros(compare(from)); mask != 0; mask &= mask - 1) {
      const char* const hit = from + std::countr_zero(mask) / kBitsOfPosition;
      if (accept(hit)) {
        return hit;
      }
    }
    if (from == stop) {
      return nullptr;
    }
    // The last block may overlap the one before.
    from = std::min(from + kBlockSize, stop);
    // On a long way, four blocks at a time.
    while (from >= near_end && stop - from >= 4 * kBlockSize &&
           MaskOfZeros(Smallest(
               Smallest(compare(from), compare(from + kBlockSize)),
               Smallest(compare(from + 2 * kBlockSize), compare(from + 3 * kBlockSize)))) == 0) {
      from += 4 * kBlockSize;
    }
  }
}
#endif

// The first position of [from, end) where the pattern stands and that `accept` takes, or null. It
// may be asked twice about a position, and about one without the mark. Nothing is read but these
// positions and the pattern's places behind them.
template <typename Accept>
[[nodiscard]] KIO_INLINE inline const char* FindPattern(const char* from, const char* end,
                                                        const Pattern& pattern,
                                                        const Accept& accept) {
#ifdef KIO_BLOCKS
  if (end - from >= kBlockSize) {
    return FindInBlocks(from, end, pattern, accept);
  }
#endif
  for (; from < end; ++from) {
    if (pattern.mark != '\0' && (!pattern.or_slash || *from != '/')) {
      from = static_cast<const char*>(
          std::memchr(from, pattern.mark, static_cast<std::size_t>(end - from)));
      if (from == nullptr) {
        return nullptr;
      }
    }
    if (AreAlike(from[pattern.last_place], pattern.last) &&
        AreAlike(from[pattern.first_place], pattern.first) && accept(from)) {
      return from;
    }
  }
  return nullptr;
}

// The first place of [from, end) where a tag may begin, or null.
KIO_INLINE inline const char* FindTagStart(const char* from, const char* end) {
#ifdef KIO_BLOCKS
  for (; end - from >= kBlockSize; from += kBlockSize) {
    const std::uint64_t mask = MaskOfZeros(LoadBlock(from) ^ Repeat('<'));
    if (mask != 0) {
      return from + std::countr_zero(mask) / kBitsOfPosition;
    }
  }
  while (from < end && *from != '<') {
    ++from;
  }
  return from < end ? from : nullptr;
#else
  return static_cast<const char*>(std::memchr(from, '<', static_cast<std::size_t>(end - from)));
#endif
}

// A text to search whose end may not be known: it ends after `limit` characters or at its
// terminator, whichever comes first. The end is looked for as the search proceeds, so that a hit
// near the start costs no pass over the rest.
class SearchText {
 public:
  static constexpr std::size_t kNoLimit = static_cast<std::size_t>(-1);

  // `first_step` characters are looked at before the search begins: as many as it takes at least.
  KIO_INLINE SearchText(const char* begin, std::size_t limit, std::size_t first_step)
      : known_(begin), left_(limit), step_(first_step) {
    Extend();
  }

  // A text known to reach to `end`.
  KIO_INLINE explicit SearchText(const char* end) : known_(end), is_whole_(true) {}

  // The text is known to reach here.
  [[nodiscard]] const char* known() const { return known_; }

  // The first position at or behind `from` where the pattern stands and that `accept` takes, or
  // null. While the end of the text is not known, `accept` is asked about those alone that have at
  // least `reach` known characters from them on.
  template <typename Accept>
  [[nodiscard]] KIO_INLINE const char* Find(const char* from, const Pattern& pattern,
                                            std::size_t reach, const Accept& accept) {
    for (;;) {
      const auto needed = static_cast<std::ptrdiff_t>(is_whole_ ? pattern.last_place : reach);
      if (known_ - from > needed) {
        const char* const end = known_ - needed;
        const char* const hit = FindPattern(from, end, pattern, accept);
        if (hit != nullptr) {
          return hit;
        }
        from = end;
      }
      if (is_whole_) {
        return nullptr;
      }
      Extend();
    }
  }

 private:
  static constexpr std::size_t kLongestStep = 4096;

  void Extend() {
    const std::size_t found = strnlen(known_, std::min(step_, left_));
    known_ += found;
    left_ -= found;
    is_whole_ = found < step_;
    step_ = std::min(step_ * 2, kLongestStep);
  }

  const char* known_;
  std::size_t left_ = 0;  // behind `known_`
  std::size_t step_ = 0;
  bool is_whole_ = false;
};

}  // namespace kio::settings

#endif
