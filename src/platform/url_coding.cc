// URL form: "%41" for any byte, "+" for a space.
#include "kioapp/text.h"
#include "platform/text.h"

namespace kio::platform {
namespace {

// The value of a hexadecimal digit.
// Quirk "url-digits-unchecked": any other character counts by its distance from 'a', which is 10.
constexpr int DigitValue(char digit) {
  return digit >= '0' && digit <= '9' ? digit - '0' : ToLower(digit) - ('a' - 10);
}

constexpr bool IsPlain(char character) {
  return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') ||
         (character >= '0' && character <= '9') || character == '-' || character == '.' ||
         character == '_';
}

// Decodes at most `limit` characters.
// Quirk "limit-leaves-no-terminator": it is written only when it is reached within them.
void DecodeUrl(char* dst, const char* src, int limit) {
  for (; limit > 0; --limit) {
    const char character = *src;
    if (character == '%' && src[1] != '\0' && src[2] != '\0') {
      // Quirk "url-escaped-terminator": a NUL written here does not end the copy.
      *dst++ = static_cast<char>(DigitValue(src[1]) * 16 | DigitValue(src[2]));
      src += 3;
      continue;
    }
    *dst++ = character == '+' ? ' ' : character;
    if (character == '\0') {
      return;
    }
    ++src;
  }
}

void EncodeUrl(char* dst, const char* src, int budget) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  while (budget > 0) {
    const char character = *src++;
    --budget;
    if (character == '\0' || IsPlain(character)) {
      *dst++ = character;
    } else if (character == ' ') {
      *dst++ = '+';
    } else {
      const auto byte = static_cast<unsigned char>(character);
      *dst++ = '%';
      *dst++ = kDigits[byte >> 4];
      // Quirk "url-escape-beyond-the-budget": an escape takes two characters even where the budget
      // had one left.
      if (budget <= 1) {
        return;
      }
      budget -= 2;
      *dst++ = kDigits[byte & 0xF];
    }
    if (character == '\0') {
      return;
    }
  }
}

}  // namespace
}  // namespace kio::platform

char* strncpy_HtmlDecode(char* dst, const char* src, int n) {
  if (dst == nullptr) {
    return nullptr;
  }
  if (src == nullptr || n < 1) {
    *dst = '\0';
  } else {
    kio::platform::DecodeUrl(dst, src, n);
  }
  return dst;
}

char* strncpy_HtmlEncode(char* dst, const char* src, int n) {
  if (dst == nullptr) {
    return nullptr;
  }
  if (src == nullptr || n < 1) {
    *dst = '\0';
  } else {
    kio::platform::EncodeUrl(dst, src, n);
  }
  return dst;
}
