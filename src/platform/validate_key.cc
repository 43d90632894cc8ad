// Keys of wireless networks.
#include <cstring>

#include "kioapp/validate.h"
#include "platform/text.h"

namespace kio::platform {
namespace {

// Quirk "upper-case-keys": digits of lower case are refused.
bool IsUpperHex(const char* text) {
  for (; *text != '\0'; ++text) {
    if ((*text < '0' || *text > '9') && (*text < 'A' || *text > 'F')) {
      return false;
    }
  }
  return true;
}

}  // namespace
}  // namespace kio::platform

using kio::platform::IsUpperHex;

int is_Valid_WpaPskKey(const char* key) {
  key = kio::platform::TextOf(key);
  constexpr std::size_t kShortestPhrase = 8;
  constexpr std::size_t kHexDigits = 64;
  const std::size_t length = std::strlen(key);
  if (length < kShortestPhrase || length > kHexDigits) {
    return 0;
  }
  return length < kHexDigits || IsUpperHex(key) ? 1 : 0;
}

int is_Valid_WepKey(const char* key, int n) {
  if (n < 0) {
    return 0;
  }
  key = kio::platform::TextOf(key);
  const std::size_t length = std::strlen(key);
  const auto expected = static_cast<std::size_t>(n);
  return length == expected || (length == 2 * expected && IsUpperHex(key)) ? 1 : 0;
}
