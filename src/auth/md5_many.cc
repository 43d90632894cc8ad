// Digests of several texts at the price of little more than one, where there are vectors.
#include "auth/md5.h"
#include "auth/md5_steps.h"
#include "platform/wipe.h"

namespace kio::auth {

#if defined(__SSE2__) && !defined(KIO_SCALAR_SCAN)

namespace {

using Vector [[gnu::vector_size(16)]] = std::uint32_t;
constexpr std::size_t kLanes = 8;

// One word of each message. In two registers, as a step in one leaves half of the machine idle.
struct Lanes {
  Vector low;
  Vector high;

  Lanes& operator+=(const Lanes& other) {
    low += other.low;
    high += other.high;
    return *this;
  }
};

Lanes operator+(const Lanes& a, const Lanes& b) { return {a.low + b.low, a.high + b.high}; }
Lanes operator+(const Lanes& a, std::uint32_t b) { return {a.low + b, a.high + b}; }
Lanes operator&(const Lanes& a, const Lanes& b) { return {a.low & b.low, a.high & b.high}; }
Lanes operator|(const Lanes& a, const Lanes& b) { return {a.low | b.low, a.high | b.high}; }
Lanes operator^(const Lanes& a, const Lanes& b) { return {a.low ^ b.low, a.high ^ b.high}; }
Lanes operator~(const Lanes& a) { return {~a.low, ~a.high}; }
Lanes operator<<(const Lanes& a, int bits) { return {a.low << bits, a.high << bits}; }
Lanes operator>>(const Lanes& a, int bits) { return {a.low >> bits, a.high >> bits}; }

using LaneWords = std::uint32_t[kLanes];

// What the lanes are made of, and what they leave behind.
struct Work {
  LaneWords words[kMd5BlockSize / sizeof(std::uint32_t)];
  LaneWords state[4];
  std::uint8_t block[kMd5BlockSize];
};

Lanes LoadLanes(const LaneWords& words) {
  Lanes lanes;
  static_assert(sizeof(lanes) == sizeof(words));
  std::memcpy(&lanes, words, sizeof(lanes));
  return lanes;
}

// Register by register: a copy of the whole would pass through the stack.
void StoreLanes(const Lanes& lanes, LaneWords& words) {
  std::memcpy(words, &lanes.low, sizeof(lanes.low));
  std::memcpy(words + kLanes / 2, &lanes.high, sizeof(lanes.high));
}

void FillLane(Work& work, std::size_t lane, platform::TextView text) {
  FillLastBlock(text, work.block);
  WriteMessageSize(text.size(), work.block);
  for (std::size_t i = 0; i < kMd5BlockSize / sizeof(std::uint32_t); ++i) {
    work.words[i][lane] = LoadMd5Word(work.block + i * sizeof(std::uint32_t));
  }
}

void MixLanes(Work& work) {
  Lanes state[4];
  for (int i = 0; i < 4; ++i) {
    state[i] = Lanes{} + kMd5Start[i];
  }
  Md5Rounds(state, [&work](int index) { return LoadLanes(work.words[index]); });
  // No loop: its index would lay the state out on the stack.
  StoreLanes(state[0] + kMd5Start[0], work.state[0]);
  StoreLanes(state[1] + kMd5Start[1], work.state[1]);
  StoreLanes(state[2] + kMd5Start[2], work.state[2]);
  StoreLanes(state[3] + kMd5Start[3], work.state[3]);
}

bool FitIntoLanes(const platform::TextView* texts, std::size_t count) {
  bool fit = count <= kLanes;
  for (std::size_t i = 0; i < count; ++i) {
    fit = fit && texts[i].size() <= kMd5OneBlockText;
  }
  return fit;
}

[[gnu::noinline]] void Md5OfLanes(const platform::TextView* texts, std::size_t count,
                                  Digest* digests) {
  Work work;
  std::memset(work.words, 0, sizeof(work.words));
  for (std::size_t lane = 0; lane < count; ++lane) {
    FillLane(work, lane, texts[lane]);
  }
  MixLanes(work);
  for (std::size_t lane = 0; lane < count; ++lane) {
    for (std::size_t i = 0; i < 4; ++i) {
      StoreMd5Word(digests[lane].bytes + i * sizeof(std::uint32_t), work.state[i][lane]);
    }
  }
  platform::Wipe(work);
}

}  // namespace

#endif

void Md5OfEach(const platform::TextView* texts, std::size_t count, Digest* digests) {
#if defined(__SSE2__) && !defined(KIO_SCALAR_SCAN)
  if (FitIntoLanes(texts, count)) {
    Md5OfLanes(texts, count, digests);
    // The words do not all fit into registers.
    platform::WipeStack<sizeof(Work) + 512>();
    return;
  }
#endif
  for (std::size_t i = 0; i < count; ++i) {
    Md5(texts[i], digests[i]);
  }
  WipeMd5Stack();
}

}  // namespace kio::auth
