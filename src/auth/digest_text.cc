// Digests as text.
#include <cstring>

#include "auth/exported_data.h"
#include "auth/md5.h"
#include "kioapp/auth.h"
#include "platform/wipe.h"

void MD5Digest(const char* text, unsigned int /*length*/, unsigned char* digest) {
  // Quirk "digest-length-unused": the text ends at its terminator.
  kio::auth::Digest result;
  kio::auth::Md5(kio::platform::ViewOf(text), result);
  if (digest != nullptr) {
    std::memcpy(digest, result.bytes, sizeof(result.bytes));
  }
  kio::platform::Wipe(result);
}

void Hex2String(const unsigned char* bytes, char* output, int count) {
  static constexpr char kDigits[] = "0123456789abcdef";
  // Quirk "hex-of-sixteen-bytes": what follows them is not read.
  constexpr int kMostBytes = 16;
  if (output == nullptr) {
    return;
  }
  for (int i = 0; bytes != nullptr && i < count && i < kMostBytes; ++i) {
    *output++ = kDigits[bytes[i] >> 4];
    *output++ = kDigits[bytes[i] & 0xF];
  }
  *output = '\0';
}

char* MD5Encryption(const char* text) {
  kio::auth::Digest digest;
  kio::auth::Md5(kio::platform::ViewOf(text), digest);
  Hex2String(digest.bytes, kio::DigestText(), sizeof(digest.bytes));
  kio::platform::Wipe(digest);
  return kio::DigestText();
}
