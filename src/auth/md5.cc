#include "auth/md5.h"

#include <utility>

#include "auth/md5_steps.h"
#include "kioapp/auth.h"
#include "platform/wipe.h"

namespace kio::auth {
namespace {

using State = std::uint32_t[4];

template <int kStep>
[[gnu::always_inline]] inline void Step(State& state, const std::uint8_t* block) {
  constexpr int kRound = kStep / 16;
  constexpr std::size_t kOffset = Md5WordIndex<kRound>(kStep) * sizeof(std::uint32_t);
  Md5Step<kRound, kStep % 4>(state, LoadMd5Word(block + kOffset) + kMd5Sines[kStep]);
}

template <int kRound, int... kSteps>
[[gnu::always_inline]] inline void Round(State& state, const std::uint8_t* block,
                                         std::integer_sequence<int, kSteps...> /*steps*/) {
  // Each round loads the words anew: the compiler does not know that they are the same. It would
  // keep them on the stack in places of its own, and leave the message there.
  __asm__ volatile("" : "+r"(block));
  (Step<16 * kRound + kSteps>(state, block), ...);
}

// Takes a block of the message into the state.
void AddBlock(State& state, const std::uint8_t* block) {
  constexpr std::make_integer_sequence<int, 16> kSteps;
  State mixed = {state[0], state[1], state[2], state[3]};
  Round<0>(mixed, block, kSteps);
  Round<1>(mixed, block, kSteps);
  Round<2>(mixed, block, kSteps);
  Round<3>(mixed, block, kSteps);
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
    // No room for the size: it stands in a block of its own.
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
