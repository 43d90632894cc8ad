// MD5 (RFC 1321).
#ifndef KIO_AUTH_MD5_H
#define KIO_AUTH_MD5_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/text.h"
#include "platform/wipe.h"

namespace kio::auth {

struct Digest {
  alignas(std::uint32_t) std::uint8_t bytes[16];
};

void Md5(platform::TextView text, Digest& digest);

// Clears the part of the stack in which `Md5` may have kept words of its message. For callers whose
// message is secret.
inline void WipeMd5Stack() { platform::WipeStack<512>(); }

inline constexpr std::size_t kMd5BlockSize = 64;
// The longest text that fits one block together with the end mark and the size of a message.
inline constexpr std::size_t kMd5OneBlockText = kMd5BlockSize - 9;

// The bytes of a word stand in little-endian order, on every machine and at any address.
constexpr std::uint32_t ToMd5Order(std::uint32_t word) {
  if constexpr (std::endian::native == std::endian::big) {
    word = __builtin_bswap32(word);
  }
  return word;
}

inline std::uint32_t LoadMd5Word(const std::uint8_t* bytes) {
  std::uint32_t word = 0;
  std::memcpy(&word, bytes, sizeof(word));
  return ToMd5Order(word);
}

inline void StoreMd5Word(std::uint8_t* bytes, std::uint32_t word) {
  word = ToMd5Order(word);
  std::memcpy(bytes, &word, sizeof(word));
}

// Fills a block with the end of a message, at most 63 bytes, the end mark and zeros.
inline void FillLastBlock(platform::TextView rest, std::uint8_t (&block)[kMd5BlockSize]) {
  constexpr std::uint8_t kFirstBit = 0x80;
  std::memset(block, 0, sizeof(block));
  if (!rest.empty()) {  // an empty view may point nowhere
    std::memcpy(block, rest.data(), rest.size());
  }
  block[rest.size()] = kFirstBit;
}

// Writes the size of the whole message, in bits, into the last bytes of the block.
inline void WriteMessageSize(std::size_t size, std::uint8_t (&block)[kMd5BlockSize]) {
  const std::uint64_t bits = std::uint64_t{size} * 8;
  StoreMd5Word(&block[kMd5BlockSize - 8], static_cast<std::uint32_t>(bits));
  StoreMd5Word(&block[kMd5BlockSize - 4], static_cast<std::uint32_t>(bits >> 32));
}

}  // namespace kio::auth

#endif
