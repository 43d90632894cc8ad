// Looking at many neighbouring positions of a text at once.
#ifndef KIO_SETTINGS_XML_STRIDE_H
#define KIO_SETTINGS_XML_STRIDE_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__) && !defined(KIO_SCALAR_SCAN)
#include <emmintrin.h>
#endif

#include "platform/inline.h"

namespace kio::settings {

#if defined(__SSE2__) && !defined(KIO_SCALAR_SCAN)

// The characters of sixteen positions. The operators ^, | and & act on all of them.
using Stride = __m128i;

// A bit for each position, that of the first one lowest.
using Marks = std::uint32_t;

KIO_INLINE inline Stride Repeat(char character) { return _mm_set1_epi8(character); }

// `position` and what follows it may lie at any address.
KIO_INLINE inline Stride LoadStride(const char* position) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(position));
}

// The positions whose character is `character`.
KIO_INLINE inline Marks MarkEqual(Stride stride, char character) {
  return static_cast<Marks>(_mm_movemask_epi8(_mm_cmpeq_epi8(stride, Repeat(character))));
}

// The positions whose character is 0, all of them being ASCII.
KIO_INLINE inline Marks MarkZeros(Stride stride) {
  return static_cast<Marks>(_mm_movemask_epi8(_mm_cmpeq_epi8(stride, _mm_setzero_si128())));
}

// The smaller character of each position.
KIO_INLINE inline Stride Smaller(Stride a, Stride b) {
  using Characters = unsigned char __attribute__((vector_size(sizeof(Stride))));
  const auto x = reinterpret_cast<Characters>(a);
  const auto y = reinterpret_cast<Characters>(b);
  return reinterpret_cast<Stride>(x < y ? x : y);
}

// Whether any of the characters is 0, all of them being ASCII.
KIO_INLINE inline bool HasZero(Stride a, Stride b, Stride c, Stride d) {
  return MarkZeros(Smaller(Smaller(a, b), Smaller(c, d))) != 0;
}

KIO_INLINE inline bool HasMark(Marks marks) { return marks != 0; }

// Index of the first marked position; there is one.
KIO_INLINE inline std::size_t FirstOf(Marks marks) {
  return static_cast<std::size_t>(std::countr_zero(marks));
}

// Without the first marked position; there is one.
KIO_INLINE inline Marks WithoutFirst(Marks marks) { return marks & (marks - 1); }

#else

using Word = std::size_t;

// The characters of as many positions as two machine words have bytes.
struct Stride {
  Word low;
  Word high;
};
KIO_INLINE constexpr Stride operator^(Stride a, Stride b) {
  return {a.low ^ b.low, a.high ^ b.high};
}
KIO_INLINE constexpr Stride operator|(Stride a, Stride b) {
  return {a.low | b.low, a.high | b.high};
}
KIO_INLINE constexpr Stride operator&(Stride a, Stride b) {
  return {a.low & b.low, a.high & b.high};
}

// The lowest bit of every byte, and all but the highest ones.
inline constexpr Word kLowestBits = static_cast<Word>(-1) / 0xFF;
inline constexpr Word kLowBits = kLowestBits * 0x7F;

KIO_INLINE constexpr Stride Repeat(char character) {
  const Word word = kLowestBits * static_cast<unsigned char>(character);
  return {word, word};
}

KIO_INLINE inline Word LoadWord(const char* position) {
  Word word = 0;
  std::memcpy(&word, position, sizeof(word));
  return word;
}

// `position` and what follows it may lie at any address.
KIO_INLINE inline Stride LoadStride(const char* position) {
  return {LoadWord(position), LoadWord(position + sizeof(Word))};
}

// The top bit of each position's byte.
using Marks = Stride;

// The positions whose character is `character`.
KIO_INLINE constexpr Marks MarkEqual(Stride stride, char character) {
  const auto mark = [](Word differences) {
    return ~(((differences & kLowBits) + kLowBits) | differences) & ~kLowBits;
  };
  const Stride differences = stride ^ Repeat(character);
  return {mark(differences.low), mark(differences.high)};
}

// The positions whose character is 0, all of them being ASCII.
KIO_INLINE constexpr Marks MarkZeros(Stride stride) {
  return {~(stride.low + kLowBits) & ~kLowBits, ~(stride.high + kLowBits) & ~kLowBits};
}

// Whether any of the characters is 0, all of them being ASCII.
KIO_INLINE constexpr bool HasZero(Stride a, Stride b, Stride c, Stride d) {
  const Word tops = (a.low + kLowBits) & (a.high + kLowBits) & (b.low + kLowBits) &
                    (b.high + kLowBits) & (c.low + kLowBits) & (c.high + kLowBits) &
                    (d.low + kLowBits) & (d.high + kLowBits);
  return (~tops & ~kLowBits) != 0;
}

KIO_INLINE constexpr bool HasMark(Marks marks) { return (marks.low | marks.high) != 0; }

inline constexpr bool kIsLowestFirst = std::endian::native == std::endian::little;

// Index of the first marked position; there is one.
KIO_INLINE constexpr std::size_t FirstOf(Marks marks) {
  const Word word = marks.low != 0 ? marks.low : marks.high;
  const int bits = kIsLowestFirst ? std::countr_zero(word) : std::countl_zero(word);
  return static_cast<std::size_t>(bits) / 8 + (marks.low != 0 ? 0 : sizeof(Word));
}

KIO_INLINE constexpr Word WithoutFirst(Word word) {
  constexpr Word kTop = ~(static_cast<Word>(-1) >> 1);
  return word & (kIsLowestFirst ? word - 1 : ~(kTop >> std::countl_zero(word)));
}

// Without the first marked position; there is one.
KIO_INLINE constexpr Marks WithoutFirst(Marks marks) {
  return marks.low != 0 ? Marks{WithoutFirst(marks.low), marks.high}
                        : Marks{0, WithoutFirst(marks.high)};
}

#endif

inline constexpr std::size_t kStride = sizeof(Stride);
inline constexpr auto kStrideLength = static_cast<std::ptrdiff_t>(kStride);

}  // namespace kio::settings

#endif
