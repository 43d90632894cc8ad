// CRC-32 of long data: all but its end is folded away without a table.
//
// A message is a polynomial with coefficients 0 and 1, whose first bit has the highest power of x.
// Its CRC is the remainder of its division by the polynomial P of CRC-32, so adding a multiple of P
// to the message leaves the CRC as it is. Addition is exclusive or. Let y = x^32, a shift by one
// word. P divides
//
//     y^300 + y^155 + y^117 + y^89 + 1.
//
// A word w that has 300 words behind it is worth w y^300 relative to the last of them. Adding w
// times the sum above takes w out of its place and adds it to the words for y^155, y^117, y^89 and
// 1: those that stand 145, 183, 211 and 300 words behind it. One word after the other is taken out
// in this way until 300 words are left.
//
// No sum of fewer powers, and no other one of five, is divided by P within a reach of 300 words:
// tests/firmware/crc32_fold_test.cc looks at all of them. As the smallest distance is 145, that
// many words can be folded at once before the first of them is needed again.
#ifndef KIO_FIRMWARE_CRC32_FOLD_H
#define KIO_FIRMWARE_CRC32_FOLD_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "firmware/crc32.h"
#include "platform/inline.h"

namespace kio::firmware {

// How many words behind a word stand those that it is added to.
inline constexpr std::size_t kFoldDistances[4] = {145, 183, 211, 300};
inline constexpr std::size_t kFoldReach = kFoldDistances[3];

consteval bool FoldingKeepsTheRemainder() {
  Crc power = 0x80000000;  // y^n, beginning with 1
  Crc sum = 0;
  for (std::size_t n = 0; n <= kFoldReach; ++n) {
    bool is_term = n == kFoldReach;
    for (const std::size_t distance : kFoldDistances) {
      is_term = is_term || n == kFoldReach - distance;
    }
    sum ^= is_term ? power : 0;
    power = ShiftCrc(power, 32);
  }
  return sum == 0;
}
static_assert(FoldingKeepsTheRemainder());

// Folds a message piece by piece. Its words stay as they are in memory: exclusive or knows no order
// of bytes.
class CrcFolder {
 public:
  static constexpr std::size_t kWordSize = sizeof(Crc);
  static constexpr std::size_t kPieceWords = 512;
  static constexpr std::size_t kPieceBytes = kPieceWords * kWordSize;
  static constexpr std::size_t kReachBytes = kFoldReach * kWordSize;

  // Folds kPieceBytes. The first call takes the CRC of what came before, later ones 0.
  void Fold(const unsigned char* data, Crc crc) {
    const unsigned char crc_bytes[sizeof(Pair)] = {
        static_cast<unsigned char>(crc), static_cast<unsigned char>(crc >> 8),
        static_cast<unsigned char>(crc >> 16), static_cast<unsigned char>(crc >> 24)};
    FoldPair(0, Load(data) ^ Load(crc_bytes));
    for (std::size_t i = 2; i < kPieceWords; i += 2) {
      FoldPair(i, Load(data + i * kWordSize));
    }
    std::memcpy(words_, words_ + kPieceWords, kReachBytes);
  }

  // Takes the kReachBytes that follow the pieces and returns as many, whose CRC, begun with 0, is
  // that of the whole.
  const unsigned char* Finish(const unsigned char* data) {
    Crc* const rest = words_ + kFoldReach;
    std::memcpy(rest, data, kReachBytes);
    for (const std::size_t distance : kFoldDistances) {
      for (std::size_t i = 0; i < distance; ++i) {
        rest[i] ^= words_[kFoldReach - distance + i];
      }
    }
    return reinterpret_cast<const unsigned char*>(rest);
  }

 private:
  // Two words at once.
  using Pair = std::uint64_t;

  KIO_INLINE static Pair Load(const void* bytes) {
    Pair pair = 0;
    std::memcpy(&pair, bytes, sizeof(pair));
    return pair;
  }

  KIO_INLINE void FoldPair(std::size_t i, Pair pair) {
    Crc* const word = words_ + kFoldReach + i;
    // Written out: a loop over the distances takes twice the time.
    pair ^= Load(word - kFoldDistances[0]) ^ Load(word - kFoldDistances[1]) ^
            Load(word - kFoldDistances[2]) ^ Load(word - kFoldDistances[3]);
    std::memcpy(word, &pair, sizeof(pair));
  }

  static_assert(kPieceWords >= kFoldReach && kPieceWords % 2 == 0);

  // The last kFoldReach words that were taken out, and room for a piece.
  Crc words_[kFoldReach + kPieceWords] = {};
};

}  // namespace kio::firmware

#endif
