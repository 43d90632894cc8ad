#include "auth/md5.h"

#include "kioapp/auth.h"
#include "platform/inline.h"
#include "platform/wipe.h"

namespace kio::auth {
namespace {

using State = std::uint32_t[4];

constexpr std::uint32_t kMd5Start[4] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};

// The constant that each step adds.
constexpr std::uint32_t kMd5Sines[64] = {
    0xD76AA478, 0xE8C7B756, 0x242070DB, 0xC1BDCEEE, 0xF57C0FAF, 0x4787C62A, 0xA8304613, 0xFD469501,
    0x698098D8, 0x8B44F7AF, 0xFFFF5BB1, 0x895CD7BE, 0x6B901122, 0xFD987193, 0xA679438E, 0x49B40821,
    0xF61E2562, 0xC040B340, 0x265E5A51, 0xE9B6C7AA, 0xD62F105D, 0x02441453, 0xD8A1E681, 0xE7D3FBC8,
    0x21E1CDE6, 0xC33707D6, 0xF4D50D87, 0x455A14ED, 0xA9E3E905, 0xFCEFA3F8, 0x676F02D9, 0x8D2A4C8A,
    0xFFFA3942, 0x8771F681, 0x6D9D6122, 0xFDE5380C, 0xA4BEEA44, 0x4BDECFA9, 0xF6BB4B60, 0xBEBFBC70,
    0x289B7EC6, 0xEAA127FA, 0xD4EF3085, 0x04881D05, 0xD9D4D039, 0xE6DB99E5, 0x1FA27CF8, 0xC4AC5665,
    0xF4292244, 0x432AFF97, 0xAB9423A7, 0xFC93A039, 0x655B59C3, 0x8F0CCC92, 0xFFEFF47D, 0x85845DD1,
    0x6FA87E4F, 0xFE2CE6E0, 0xA3014314, 0x4E0811A1, 0xF7537E82, 0xBD3AF235, 0x2AD7D2BB, 0xEB86D391};

constexpr int kMd5Shifts[4][4] = {
    {7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

// Which of the sixteen words of a block a step (0 to 63) in round `kRound` takes.
template <int kRound>
constexpr int Md5WordIndex(int step) {
  constexpr int kFactors[4] = {1, 5, 3, 7};
  constexpr int kOffsets[4] = {0, 1, 5, 0};
  return (kFactors[kRound] * step + kOffsets[kRound]) % 16;
}

// Makes the compiler compute `word` here. Each step needs the result of the step before. What does
// not depend on that result is added up first, and the compiler may not reorder the sum.
KIO_INLINE inline void WorkOut(std::uint32_t& word) { __asm__("" : "+r"(word)); }

// One step in round `kRound` (0 to 3). Steps come in groups of four, and `kPlace` (0 to 3) is the
// step's number in its group: it tells which word of the state plays which part. `added` is the sum
// of the step's message word and its constant.
template <int kRound, int kPlace>
KIO_INLINE inline void Md5Step(State& state, std::uint32_t added) {
  std::uint32_t& a = state[(4 - kPlace) % 4];
  const std::uint32_t b = state[(5 - kPlace) % 4];  // the result of the step before
  const std::uint32_t c = state[(6 - kPlace) % 4];
  const std::uint32_t d = state[(7 - kPlace) % 4];
  std::uint32_t sum = a + added;
  if constexpr (kRound == 0) {
    WorkOut(sum);
    sum += d ^ (b & (c ^ d));
  } else if constexpr (kRound == 1) {
    // The two halves of this mix have no bit in common, so they can be added separately.
    sum += c & ~d;
    WorkOut(sum);
    sum += b & d;
  } else if constexpr (kRound == 2) {
    WorkOut(sum);
    std::uint32_t mixed = c ^ d;
    WorkOut(mixed);
    sum += b ^ mixed;
  } else {
    WorkOut(sum);
    sum += c ^ (b | ~d);
  }
  constexpr int kShift = kMd5Shifts[kRound][kPlace];
  a = b + ((sum << kShift) | (sum >> (32 - kShift)));
}

template <int kRound>
KIO_INLINE inline void Md5Round(State& state, const std::uint8_t* block) {
  for (int step = 16 * kRound; step < 16 * (kRound + 1); step += 4) {
    const auto added = [&](int next) {
      const auto place = static_cast<std::size_t>(Md5WordIndex<kRound>(next));
      return LoadMd5Word(block + place * sizeof(std::uint32_t)) + kMd5Sines[next];
    };
    Md5Step<kRound, 0>(state, added(step));
    Md5Step<kRound, 1>(state, added(step + 1));
    Md5Step<kRound, 2>(state, added(step + 2));
    Md5Step<kRound, 3>(state, added(step + 3));
  }
}

// Adds a block of the message to the state.
void AddBlock(State& state, const std::uint8_t* block) {
  State mixed = {state[0], state[1], state[2], state[3]};
  Md5Round<0>(mixed, block);
  Md5Round<1>(mixed, block);
  Md5Round<2>(mixed, block);
  Md5Round<3>(mixed, block);
  for (int i = 0; i < 4; ++i) {
    state[i] += mixed[i];
  }
}

}  // namespace

void Md5(platform::TextView text, Digest& digest) {
  State state = {kMd5Start[0], kMd5Start[1], kMd5Start[2], kMd5Start[3]};
  std::uint8_t block[kMd5BlockSize];
  platform::TextView rest = text;
  for (; rest.size() >= kMd5BlockSize; rest.remove_prefix(kMd5BlockSize)) {
    AddBlock(state, reinterpret_cast<const std::uint8_t*>(rest.data()));
  }
  FillLastBlock(rest, block);
  if (rest.size() > kMd5OneBlockText) {
    // The size does not fit behind the text: it gets a block of its own.
    AddBlock(state, block);
    std::memset(block, 0, sizeof(block));
  }
  WriteMessageSize(text.size(), block);
  AddBlock(state, block);
  for (std::size_t i = 0; i < 4; ++i) {
    StoreMd5Word(digest.bytes + i * sizeof(std::uint32_t), state[i]);
  }
  platform::Wipe(block);
  platform::Wipe(state);
}

}  // namespace kio::auth
