// CRC-32, folded in long strides; byte by byte in a build for small size.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "kioapp/firmware.h"
#include "platform/inline.h"

namespace kio::firmware {
namespace {

using Crc = std::uint32_t;

constexpr Crc kPolynomial = 0xEDB88320;

// Slicing: the effect of a byte that has 0 to 3 bytes behind it. More slices would help short texts
// only; long ones are folded first.
#ifdef __OPTIMIZE_SIZE__
constexpr std::size_t kSlices = 1;
#else
constexpr std::size_t kSlices = 4;
#endif
using Tables = std::array<std::array<Crc, 256>, kSlices>;

consteval Tables MakeTables() {
  Tables tables = {};
  for (Crc byte = 0; byte < 256; ++byte) {
    Crc crc = byte;
    for (int bit = 0; bit < 8; ++bit) {
      crc = (crc >> 1) ^ ((crc & 1) != 0 ? kPolynomial : 0);
    }
    tables[0][byte] = crc;
  }
  for (std::size_t slice = 1; slice < kSlices; ++slice) {
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const Crc crc = tables[slice - 1][byte];
      tables[slice][byte] = (crc >> 8) ^ tables[0][crc & 0xFF];
    }
  }
  return tables;
}

alignas(64) constexpr Tables kTables = MakeTables();
static_assert(sizeof(kTables) == kSlices * 1024);

#ifdef __OPTIMIZE_SIZE__

Crc Compute(Crc crc, const unsigned char* data, std::size_t size) {
  for (; size > 0; --size, ++data) {
    crc = (crc >> 8) ^ kTables[0][(crc ^ *data) & 0xFF];
  }
  return crc;
}

#else

// Byte by byte, so that order and alignment do not matter.
Crc LoadLittleEndian(const unsigned char* bytes) {
  return static_cast<Crc>(bytes[0]) | static_cast<Crc>(bytes[1]) << 8 |
         static_cast<Crc>(bytes[2]) << 16 | static_cast<Crc>(bytes[3]) << 24;
}

Crc Slice(Crc crc, const unsigned char* data, std::size_t size) {
  for (; size >= kSlices; size -= kSlices, data += kSlices) {
    const Crc word = crc ^ LoadLittleEndian(data);
    crc = kTables[3][word & 0xFF] ^ kTables[2][(word >> 8) & 0xFF] ^
          kTables[1][(word >> 16) & 0xFF] ^ kTables[0][word >> 24];
  }
  for (; size > 0; --size, ++data) {
    crc = (crc >> 8) ^ kTables[0][(crc ^ *data) & 0xFF];
  }
  return crc;
}

// Folding: the polynomial divides 1 + y^a + y^b + y^c + y^d, where y stands for a shift by one word
// of four bytes. So the remainder stays the same when a word is taken out of the message and added
// (by exclusive or) to the words a, b, c and d behind it. Words that have been taken out need no
// table; the last d words then hold what is left.
//
// kOffsets are the smallest such numbers. That none is near 0 lets many words be folded at once.
constexpr std::size_t kOffsets[4] = {145, 183, 211, 300};
constexpr std::size_t kReach = 300;
constexpr std::size_t kWordSize = sizeof(Crc);

consteval bool DividesFoldingPolynomial() {
  // y^n modulo the polynomial: the register after n words of zeros behind a single bit.
  Crc power = 0x80000000;
  Crc sum = 0;
  for (std::size_t n = 0; n <= kReach; ++n) {
    // The term of an offset is y^(kReach - offset), that of the word itself y^kReach.
    bool is_term = n == kReach;
    for (const std::size_t offset : kOffsets) {
      is_term = is_term || n == kReach - offset;
    }
    sum ^= is_term ? power : 0;
    for (int bit = 0; bit < 32; ++bit) {
      power = (power >> 1) ^ ((power & 1) != 0 ? kPolynomial : 0);
    }
  }
  return sum == 0;
}
static_assert(DividesFoldingPolynomial());

// Message words as they are in memory: exclusive or knows no byte order.
class Folder {
 public:
  static constexpr std::size_t kStride = 512;  // words
  static constexpr std::size_t kStrideBytes = kStride * kWordSize;
  static constexpr std::size_t kReachBytes = kReach * kWordSize;

  // Takes one stride out of the message; the first one after `crc` has been put into it.
  void Fold(const unsigned char* data, Crc crc) {
    const unsigned char register_bytes[sizeof(Pair)] = {
        static_cast<unsigned char>(crc), static_cast<unsigned char>(crc >> 8),
        static_cast<unsigned char>(crc >> 16), static_cast<unsigned char>(crc >> 24)};
    FoldPair(0, Load(data) ^ Load(register_bytes));
    for (std::size_t i = 2; i < kStride; i += 2) {
      FoldPair(i, Load(data + i * kWordSize));
    }
    std::memcpy(words_, words_ + kStride, kReachBytes);
  }

  // Adds what was taken out to the kReachBytes that follow, and returns their CRC.
  Crc Finish(const unsigned char* data) {
    Crc* const rest = words_ + kReach;
    std::memcpy(rest, data, kReachBytes);
    for (const std::size_t offset : kOffsets) {
      for (std::size_t i = 0; i < offset; ++i) {
        rest[i] ^= words_[kReach - offset + i];
      }
    }
    return Slice(0, reinterpret_cast<const unsigned char*>(rest), kReachBytes);
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
    Crc* const word = words_ + kReach + i;
    // Written out: a loop over the offsets takes twice the time.
    pair ^= Load(word - kOffsets[0]) ^ Load(word - kOffsets[1]) ^ Load(word - kOffsets[2]) ^
            Load(word - kOffsets[3]);
    std::memcpy(word, &pair, sizeof(pair));
  }

  static_assert(kStride >= kReach && kStride % 2 == 0);

  // The last kReach words that were taken out, and room for those to come.
  Crc words_[kReach + kStride] = {};
};

Crc Compute(Crc crc, const unsigned char* data, std::size_t size) {
  if (size >= Folder::kStrideBytes + Folder::kReachBytes) {
    Folder folder;
    while (size >= Folder::kStrideBytes + Folder::kReachBytes) {
      folder.Fold(data, crc);
      crc = 0;
      data += Folder::kStrideBytes;
      size -= Folder::kStrideBytes;
    }
    crc = folder.Finish(data);
    data += Folder::kReachBytes;
    size -= Folder::kReachBytes;
  }
  return Slice(crc, data, size);
}

#endif

}  // namespace
}  // namespace kio::firmware

unsigned int crc32(unsigned int seed, const unsigned char* data, unsigned int length) {
  return ~kio::firmware::Compute(~seed, data, length);
}
