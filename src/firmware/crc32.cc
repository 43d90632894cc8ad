// CRC-32 by tables, with long data folded first; byte by byte in a build for small size.
#include "firmware/crc32.h"

#include <array>
#include <cstddef>

#include "firmware/crc32_fold.h"
#include "kioapp/firmware.h"

namespace kio::firmware {
namespace {

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
    tables[0][byte] = ShiftCrc(byte, 8);
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

Crc Compute(Crc crc, const unsigned char* data, std::size_t size) {
  constexpr std::size_t kShortest = CrcFolder::kPieceBytes + CrcFolder::kReachBytes;
  if (size >= kShortest) {
    CrcFolder folder;
    while (size >= kShortest) {
      folder.Fold(data, crc);
      crc = 0;
      data += CrcFolder::kPieceBytes;
      size -= CrcFolder::kPieceBytes;
    }
    crc = Slice(0, folder.Finish(data), CrcFolder::kReachBytes);
    data += CrcFolder::kReachBytes;
    size -= CrcFolder::kReachBytes;
  }
  return Slice(crc, data, size);
}

#endif

}  // namespace
}  // namespace kio::firmware

unsigned int crc32(unsigned int seed, const unsigned char* data, unsigned int length) {
  if (data == nullptr) {
    return seed;
  }
  return ~kio::firmware::Compute(~seed, data, length);
}
