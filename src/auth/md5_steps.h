// The 64 steps of MD5 (RFC 1321), over words of any width: one message or several side by side.
#ifndef KIO_AUTH_MD5_STEPS_H
#define KIO_AUTH_MD5_STEPS_H

#include <cstdint>

namespace kio::auth {

inline constexpr std::uint32_t kMd5Start[4] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};

// What each step adds.
extern const std::uint32_t kMd5Sines[64];

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

template <int kRound, typename Word, typename Words>
[[gnu::always_inline]] inline void Md5Round(Word (&state)[4], const Words& words) {
  for (int step = 16 * kRound; step < 16 * (kRound + 1); step += 4) {
    const auto added = [&](int next) {
      return words(Md5WordIndex<kRound>(next)) + kMd5Sines[next];
    };
    Md5Step<kRound, 0>(state, added(step));
    Md5Step<kRound, 1>(state, added(step + 1));
    Md5Step<kRound, 2>(state, added(step + 2));
    Md5Step<kRound, 3>(state, added(step + 3));
  }
}

// All steps over a block, whose words `words(index)` gives.
template <typename Word, typename Words>
[[gnu::always_inline]] inline void Md5Rounds(Word (&state)[4], const Words& words) {
  Md5Round<0>(state, words);
  Md5Round<1>(state, words);
  Md5Round<2>(state, words);
  Md5Round<3>(state, words);
}

}  // namespace kio::auth

#endif
