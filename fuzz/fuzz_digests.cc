// MD5, compared with another library's, and CRC-32, of the whole and of two pieces, compared with a
// plain one. The input is what is digested. MD5 takes what stands before a NUL.
#include <nettle/base16.h>
#include <nettle/md5.h>

#include <algorithm>

#include "input.h"
#include "kioapp/kioapp.h"
#include "testing/plain_crc.h"

namespace {

std::string Md5(std::string_view text) {
  md5_ctx context;
  std::uint8_t digest[MD5_DIGEST_SIZE];
  nettle_md5_init(&context);
  nettle_md5_update(&context, text.size(), reinterpret_cast<const std::uint8_t*>(text.data()));
  nettle_md5_digest(&context, sizeof(digest), digest);
  char digits[BASE16_ENCODE_LENGTH(MD5_DIGEST_SIZE)];
  nettle_base16_encode_update(digits, sizeof(digest), digest);
  return {digits, sizeof(digits)};
}

unsigned int Crc(unsigned int seed, const char* bytes, std::size_t size) {
  return crc32(seed, reinterpret_cast<const unsigned char*>(bytes),
               static_cast<unsigned int>(size));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const kio::fuzz::GuardedText text(bytes.substr(0, bytes.find('\0')));
  if (MD5Encryption(text.get()) != Md5(text.get())) {
    kio::fuzz::Report("another MD5 digest");
  }
  const kio::fuzz::GuardedText guarded(bytes);
  const std::uint32_t expected = kio::test::PlainCrc32(0, bytes);
  const std::size_t first = std::min<std::size_t>(size, size == 0 ? 0 : data[0] * size / 255);
  // At other addresses, too, and to the last byte of the memory.
  if (Crc(0, guarded.get(), size) != expected ||
      Crc(Crc(0, guarded.get(), first), guarded.get() + first, size - first) != expected) {
    kio::fuzz::Report("another CRC-32");
  }
  return 0;
}
