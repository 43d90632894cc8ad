#include "settings/xml/values.h"

#include <algorithm>
#include <cstring>

#include "platform/inline.h"
#include "platform/xml_coding.h"

namespace kio::settings {

using platform::TextView;

namespace {

// The number of a content of a few digits, as nearly all are. Any other is left to be read as text.
KIO_INLINE inline bool ReadDigits(const Block& content, int& out) {
  constexpr int kMostDigits = 9;  // of any number that an int holds
  if (content.length < 1 || content.length > kMostDigits) {
    return false;
  }
  unsigned number = 0;
  for (int i = 0; i < content.length; ++i) {
    const unsigned digit = static_cast<unsigned char>(content.text[i]) - unsigned{'0'};
    if (digit > 9) {
      return false;
    }
    number = number * 10 + digit;
  }
  out = static_cast<int>(number);
  return true;
}

[[gnu::noinline]] bool ReadIntOfText(const Element& element, int& out) {
  constexpr int kLongestNumber = 127;
  char text[kLongestNumber + 1];
  if (!ReadText(element, text, sizeof(text))) {
    return false;
  }
  out = platform::ParseInt(text);
  return true;
}

}  // namespace

bool ReadText(const Element& element, char* dst, std::size_t size) {
  if (!element.is_complete()) {
    dst[0] = '\0';
    return false;
  }
  // The cut counts characters as they stand in the document: an entity that it splits stays as
  // text.
  // Quirk "entity-cut-stays-raw": an entity that the cut splits is not decoded.
  const char* const text = element.content.text;
  std::size_t count = std::min(static_cast<std::size_t>(element.content.length), size - 1);
  if (std::memchr(text, '&', count) == nullptr) {
    std::memmove(dst, text, count);
  } else {
    count = platform::DecodeXml(dst, TextView(text, count));
  }
  dst[count] = '\0';
  return true;
}

bool ReadInt(const Element& element, int& out) {
  if (element.is_complete() && ReadDigits(element.content, out)) {
    return true;
  }
  return ReadIntOfText(element, out);
}

}  // namespace kio::settings
