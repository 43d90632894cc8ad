#include "secrets.h"

#include <strings.h>

#include <algorithm>
#include <iterator>
#include <string>

namespace kiohost {
namespace {

// By the last name of the path. The rules of the secrets (password_validate) are none.
constexpr const char* kSecretNames[] = {"password", "loginpassword", "encryptionkey"};

}  // namespace

bool IsSecret(std::string_view path) {
  const std::string name(path.substr(path.rfind('/') + 1));
  return std::any_of(std::begin(kSecretNames), std::end(kSecretNames),
                     [&name](const char* secret) { return strcasecmp(name.c_str(), secret) == 0; });
}

}  // namespace kiohost
