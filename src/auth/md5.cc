#include "auth/md5.h"

#include "auth/md5_steps.h"
#include "kioapp/auth.h"
#include "platform/wipe.h"

namespace kio::auth {

const std::uint32_t kMd5Sines[64] = {
    0xD76AA478, 0xE8C7B756, 0x242070DB, 0xC1BDCEEE, 0xF57C0FAF, 0x4787C62A, 0xA8304613, 0xFD469501,
    0x698098D8, 0x8B44F7AF, 0xFFFF5BB1, 0x895CD7BE, 0x6B901122, 0xFD987193, 0xA679438E, 0x49B40821,
    0xF61E2562, 0xC040B340, 0x265E5A51, 0xE9B6C7AA, 0xD62F105D, 0x02441453, 0xD8A1E681, 0xE7D3FBC8,
    0x21E1CDE6, 0xC33707D6, 0xF4D50D87, 0x455A14ED, 0xA9E3E905, 0xFCEFA3F8, 0x676F02D9, 0x8D2A4C8A,
    0xFFFA3942, 0x8771F681, 0x6D9D6122, 0xFDE5380C, 0xA4BEEA44, 0x4BDECFA9, 0xF6BB4B60, 0xBEBFBC70,
    0x289B7EC6, 0xEAA127FA, 0xD4EF3085, 0x04881D05, 0xD9D4D039, 0xE6DB99E5, 0x1FA27CF8, 0xC4AC5665,
    0xF4292244, 0x432AFF97, 0xAB9423A7, 0xFC93A039, 0x655B59C3, 0x8F0CCC92, 0xFFEFF47D, 0x85845DD1,
    0x6FA87E4F, 0xFE2CE6E0, 0xA3014314, 0x4E0811A1, 0xF7537E82, 0xBD3AF235, 0x2AD7D2BB, 0xEB86D391};

namespace {

using State = std::uint32_t[4];

// Takes a block of the message into the state.
void AddBlock(State& state, const std::uint8_t* block) {
  State mixed = {state[0], state[1], state[2], state[3]};
  Md5Rounds(mixed, [block](int index) {
    return LoadMd5Word(block + static_cast<std::size_t>(index) * sizeof(std::uint32_t));
  });
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
