// The polynomial of CRC-32.
#ifndef KIO_FIRMWARE_CRC32_H
#define KIO_FIRMWARE_CRC32_H

#include <cstdint>

namespace kio::firmware {

// A remainder of the polynomial's division. Its lowest bit stands for x^31, its highest for 1.
using Crc = std::uint32_t;

// The polynomial without its x^32, in the same order of bits.
inline constexpr Crc kCrcPolynomial = 0xEDB88320;

// The remainder times x^bits.
consteval Crc ShiftCrc(Crc crc, int bits) {
  for (int bit = 0; bit < bits; ++bit) {
    crc = (crc >> 1) ^ ((crc & 1) != 0 ? kCrcPolynomial : 0);
  }
  return crc;
}

}  // namespace kio::firmware

#endif
