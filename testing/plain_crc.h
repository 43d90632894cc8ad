// CRC-32, bit by bit, which the library is compared with.
#ifndef KIO_TESTING_PLAIN_CRC_H
#define KIO_TESTING_PLAIN_CRC_H

#include <cstdint>
#include <string_view>

namespace kio::test {

inline std::uint32_t PlainCrc32(std::uint32_t seed, std::string_view bytes) {
  constexpr std::uint32_t kPolynomial = 0xEDB88320;
  std::uint32_t crc = ~seed;
  for (const char byte : bytes) {
    crc ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) {
      crc = (crc & 1) != 0 ? crc >> 1 ^ kPolynomial : crc >> 1;
    }
  }
  return ~crc;
}

}  // namespace kio::test

#endif
