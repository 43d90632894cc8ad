// The key by which an app logs in.
#ifndef TESTS_E2E_APP_KEY_H
#define TESTS_E2E_APP_KEY_H

#include <openssl/evp.h>

#include <cstdio>
#include <string>

inline std::string Md5Digits(const std::string& text) {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int size = 0;
  EVP_Digest(text.data(), text.size(), digest, &size, EVP_md5(), nullptr);
  std::string digits;
  for (unsigned int i = 0; i < size; ++i) {
    char pair[3];
    std::snprintf(pair, sizeof pair, "%02x", digest[i]);
    digits += pair;
  }
  return digits;
}

// Of a time slot (the uptime / 20) and an address.
inline std::string AppKey(long slot, const std::string& address,
                          const std::string& password = "change-me-soon") {
  return Md5Digits(std::to_string(slot) + address + "admin" + password);
}

#endif  // TESTS_E2E_APP_KEY_H
