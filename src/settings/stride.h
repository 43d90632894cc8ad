// Comparing many neighbouring positions of a text at once.
#ifndef KIO_SETTINGS_STRIDE_H
#define KIO_SETTINGS_STRIDE_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__) && !defined(KIO_SCALAR_SCAN)
#include <emmintrin.h>
#endif

namespace kio::settings {

// The bit that tells the cases of a letter apart. Setting it in a text folds letters, and some
// other characters with them: a match of folded characters may be none, a miss is one.
inline constexpr char kCaseBit = 0x20;

#if defined(__SSE2__) && !defined(KIO_SCALAR_SCAN)

// Sixteen positions at once, compared with one character.
template <bool kFold>
class Stride {
 public:
  static constexpr std::size_t kWidth = 16;
  using Matches = __m128i;

  [[gnu::always_inline]] explicit Stride(char character)
      : character_(_mm_set1_epi8(kFold ? static_cast<char>(character | kCaseBit) : character)) {}

  [[nodiscard, gnu::always_inline]] Matches Compare(const char* position) const {
    __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(position));
    if constexpr (kFold) {
      text = _mm_or_si128(text, _mm_set1_epi8(kCaseBit));
    }
    return _mm_cmpeq_epi8(text, character_);
  }

 private:
  __m128i character_;
};

[[gnu::always_inline]] inline __m128i Both(__m128i a, __m128i b) { return _mm_and_si128(a, b); }

[[gnu::always_inline]] inline bool IsAnyIn(__m128i a, __m128i b, __m128i c, __m128i d) {
  return _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d))) != 0;
}

// Index of the first match; the width of a stride when there is none.
[[gnu::always_inline]] inline std::size_t FirstOf(__m128i matches) {
  const auto bits = static_cast<std::uint32_t>(_mm_movemask_epi8(matches));
  return static_cast<std::size_t>(std::countr_zero(bits | (1U << 16)));
}

#else

// A word with the same byte everywhere.
constexpr std::size_t Repeat(char byte) {
  return static_cast<std::size_t>(-1) / 0xFF * static_cast<unsigned char>(byte);
}

// As many positions at once as a machine word has bytes, compared with one character. The bytes of
// a match are zero.
template <bool kFold>
class Stride {
 public:
  static constexpr std::size_t kWidth = sizeof(std::size_t);
  using Matches = std::size_t;

  [[gnu::always_inline]] explicit Stride(char character)
      : character_(Repeat(kFold ? static_cast<char>(character | kCaseBit) : character)) {}

  [[nodiscard, gnu::always_inline]] Matches Compare(const char* position) const {
    std::size_t text = 0;
    std::memcpy(&text, position, sizeof(text));
    return (kFold ? text | Repeat(kCaseBit) : text) ^ character_;
  }

 private:
  std::size_t character_;
};

[[gnu::always_inline]] inline std::size_t Both(std::size_t a, std::size_t b) { return a | b; }

// The top bit of some byte is set when a byte of the word is zero, and only then.
[[gnu::always_inline]] inline std::size_t ZeroMarks(std::size_t word) {
  return (word - Repeat(1)) & ~word;
}

[[gnu::always_inline]] inline bool IsAnyIn(std::size_t a, std::size_t b, std::size_t c,
                                           std::size_t d) {
  return ((ZeroMarks(a) | ZeroMarks(b) | ZeroMarks(c) | ZeroMarks(d)) & Repeat('\x80')) != 0;
}

// Index of the first match; the width of a stride when there is none.
[[gnu::always_inline]] inline std::size_t FirstOf(std::size_t matches) {
  if constexpr (std::endian::native == std::endian::little) {
    // Marks behind the first zero byte may be wrong; the first one never is.
    return static_cast<std::size_t>(std::countr_zero(ZeroMarks(matches) & Repeat('\x80'))) / 8;
  } else {
    // The first byte is the highest: no mark may be wrong, so no carry may leave a byte.
    constexpr std::size_t kLowBits = Repeat(0x7F);
    const std::size_t zeros = ~(((matches & kLowBits) + kLowBits) | matches | kLowBits);
    return static_cast<std::size_t>(std::countl_zero(zeros)) / 8;
  }
}

#endif

}  // namespace kio::settings

#endif
