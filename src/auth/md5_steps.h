// The 64 steps of MD5 (RFC 1321), over words of any width: one message or several side by side.
#ifndef KIO_AUTH_MD5_STEPS_H
#define KIO_AUTH_MD5_STEPS_H

#include <cstdint>

namespace kio::auth {

inline constexpr std::uint32_t kMd5Start[4] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};

inline constexpr std::uint32_t kMd5Sines[64] = {
    0xD76AA478, 0xE8C7B756, 0x242070DB, 0xC1BDCEEE, 0xF57C0FAF, 0x4787C62A, 0xA8304613, 0xFD469501,
    0x698098D8, 0x8B44F7AF, 0xFFFF5BB1, 0x895CD7BE, 0x6B901122, 0xFD987193, 0xA679438E, 0x49B40821,
    0xF61E2562, 0xC040B340, 0x265E5A51, 0xE9B6C7AA, 0xD62F105D, 0x02441453, 0xD8A1E681, 0xE7D3FBC8,
    0x21E1CDE6, 0xC33707D6, 0xF4D50D87, 0x455A14ED, 0xA9E3E905, 0xFCEFA3F8, 0x676F02D9, 0x8D2A4C8A,
    0xFFFA3942, 0x8771F681, 0x6D9D6122, 0xFDE5380C, 0xA4BEEA44, 0x4BDECFA9, 0xF6BB4B60, 0xBEBFBC70,
    0x289B7EC6, 0xEAA127FA, 0xD4EF3085, 0x04881D05, 0xD9D4D039, 0xE6DB99E5, 0x1FA27CF8, 0xC4AC5665,
    0xF4292244, 0x432AFF97, 0xAB9423A7, 0xFC93A039, 0x655B59C3, 0x8F0CCC92, 0xFFEFF47D, 0x85845DD1,
    0x6FA87E4F, 0xFE2CE6E0, 0xA3014314, 0x4E0811A1, 0xF7537E82, 0xBD3AF235, 0x2AD7D2BB, 0xEB86D391};

inline constexpr int kMd5Shifts[4][4] = {
    {7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

// Which of the sixteen words of a block a step (0 to 63) in round `kRound` takes.
template <int kRound>
constexpr int Md5WordIndex(int step) {
  constexpr int kFactors[4] = {1, 5, 3, 7};
  constexpr int kOffsets[4] = {0, 1, 5, 0};
  return (kFactors[kRound] * step + kOffsets[kRound]) % 16;
}

// Makes the compiler work out `word` here. Each step waits for the one before: what does not depend
// on that one is added up first, and the compiler may not put the sum into another order.
template <typename Word>
[[gnu::always_inline]] inline void WorkOut([[maybe_unused]] Word& word) {
  if constexpr (sizeof(Word) == sizeof(std::uint32_t)) {
    __asm__("" : "+r"(word));
  }
}

// One step in round `kRound` (0 to 3), the `kPlace`-th of four (0 to 3): the four words change
// their parts with the place. `added` is the sum of the step's message word and its sine.
template <int kRound, int kPlace, typename Word>
[[gnu::always_inline]] inline void Md5Step(Word (&state)[4], const Word& added) {
  Word& a = state[(4 - kPlace) % 4];
  const Word& b = state[(5 - kPlace) % 4];  // from the step before
  const Word& c = state[(6 - kPlace) % 4];
  const Word& d = state[(7 - kPlace) % 4];
  Word sum = a + added;
  if constexpr (kRound == 0) {
    WorkOut(sum);
    sum += d ^ (b & (c ^ d));
  } else if constexpr (kRound == 1) {
    // The two halves have no bit in common, so they may be added one by one.
    sum += c & ~d;
    WorkOut(sum);
    sum += b & d;
  } else if constexpr (kRound == 2) {
    WorkOut(sum);
    Word mixed = c ^ d;
    WorkOut(mixed);
    sum += b ^ mixed;
  } else {
    WorkOut(sum);
    sum += c ^ (b | ~d);
  }
  constexpr int kShift = kMd5Shifts[kRound][kPlace];
  a = b + ((sum << kShift) | (sum >> (32 - kShift)));
}

}  // namespace kio::auth

#endif
