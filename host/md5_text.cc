#include "md5_text.h"

#include <nettle/base16.h>
#include <nettle/md5.h>

#include <array>

namespace kiohost {

std::string Md5Text(std::string_view text) {
  md5_ctx context = {};
  md5_init(&context);
  md5_update(&context, text.size(), reinterpret_cast<const uint8_t*>(text.data()));
  std::array<uint8_t, MD5_DIGEST_SIZE> digest = {};
  md5_digest(&context, digest.size(), digest.data());
  std::string digits(BASE16_ENCODE_LENGTH(MD5_DIGEST_SIZE), '\0');
  base16_encode_update(digits.data(), digest.size(), digest.data());
  return digits;
}

}  // namespace kiohost
