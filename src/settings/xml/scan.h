// The inner loop of every search.
#ifndef KIO_SETTINGS_XML_SCAN_H
#define KIO_SETTINGS_XML_SCAN_H

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/inline.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__aarch64__)
#include <arm_neon.h>
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
};

// Clears the bit that tells the cases of a letter apart, and the one that no ASCII has. Characters
// that are then equal are alike; a search compares them for good afterwards.
inline constexpr char kComparedBits = 0x5F;

inline bool AreAlike(char a, char b) { return ((a ^ b) & kComparedBits) == 0; }

// In the inner loop even of a build for size.
[[gnu::always_inline]] inline bool StandsAt(const Pattern& pattern, const char* position) {
  return AreAlike(position[pattern.last_place], pattern.last) &&
         AreAlike(position[pattern.first_place], pattern.first);
}

#if defined(__SSE2__) || defined(__aarch64__)

// The characters of sixteen positions. Operators act on all of them.
using ByteBlock = unsigned char __attribute__((vector_size(16)));
inline constexpr std::ptrdiff_t kBlockSize = sizeof(ByteBlock);

// Most hits are within so many characters: to look at four blocks at once costs more there than it
// saves.
inline constexpr std::ptrdiff_t kNear = 8 * kBlockSize;

inline ByteBlock LoadBlock(const char* position) {
  using Unaligned = unsigned char __attribute__((vector_size(16), aligned(1), may_alias));
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

// The first position of [from, end) where the pattern stands and that `accept` takes, or null. It
// may be asked twice about a position, and about one without the mark. Nothing is read but these
// positions and the pattern's places behind them.
template <typename Accept>
[[nodiscard]] KIO_INLINE inline const char* FindPattern(const char* from, const char* end,
                                                        const Pattern& pattern,
                                                        const Accept& accept) {
  if (end - from < kBlockSize) {
    for (; from < end; ++from) {
      if (StandsAt(pattern, from) && accept(from)) {
        return from;
      }
    }
    return nullptr;
  }
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
    if (near_end - from >= kBlockSize) {
      from += kBlockSize;
      continue;
    }
    if (from == stop) {
      return nullptr;
    }
    // The last block may overlap the one before.
    from = std::min(from + kBlockSize, stop);
    // On a long way, four blocks at a time.
    while (stop - from >= 4 * kBlockSize &&
           MaskOfZeros(Smallest(
               Smallest(compare(from), compare(from + kBlockSize)),
               Smallest(compare(from + 2 * kBlockSize), compare(from + 3 * kBlockSize)))) == 0) {
      from += 4 * kBlockSize;
    }
  }
}

// The first place of [from, end) where a tag may begin, or null.
KIO_INLINE inline const char* FindTagStart(const char* from, const char* end) {
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
}

#else

// As above.
template <typename Accept>
[[nodiscard]] inline const char* FindPattern(const char* from, const char* end,
                                             const Pattern& pattern, const Accept& accept) {
  for (; from < end; ++from) {
    if (pattern.mark != '\0') {
      from = static_cast<const char*>(
          std::memchr(from, pattern.mark, static_cast<std::size_t>(end - from)));
      if (from == nullptr) {
        return nullptr;
      }
    }
    if (StandsAt(pattern, from) && accept(from)) {
      return from;
    }
  }
  return nullptr;
}

inline const char* FindTagStart(const char* from, const char* end) {
  return static_cast<const char*>(std::memchr(from, '<', static_cast<std::size_t>(end - from)));
}

#endif

}  // namespace kio::settings

#endif
