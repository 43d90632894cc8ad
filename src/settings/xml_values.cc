#include "settings/xml_values.h"

#include <algorithm>
#include <cstring>

#include "kioapp/xml.h"
#include "platform/xml_coding.h"

void (*XmlErrMsg_LostKey)(const char* path, const char* key) = nullptr;

namespace kio::settings {

using platform::TextView;

namespace {

// The number of a content of a few digits, as nearly all are. Any other is left to be read as text.
[[gnu::always_inline]] inline bool ReadDigits(const Block& content, int& out) {
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

[[gnu::always_inline]] inline bool ReadIntOf(const Element& element, int& out) {
  return (element.is_complete() && ReadDigits(element.content, out)) || ReadIntOfText(element, out);
}

[[gnu::always_inline]] inline bool ReadTextOf(const Element& element, char* dst, std::size_t size) {
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

}  // namespace

void ReportLostKey(const char* path, TextView key) {
  if (XmlErrMsg_LostKey != nullptr) {
    XmlErrMsg_LostKey(path, key.data());
  }
}

bool ReadText(const Element& element, char* dst, std::size_t size) {
  return ReadTextOf(element, dst, size);
}

bool ReadInt(const Element& element, int& out) { return ReadIntOf(element, out); }

bool ReadText(const Block& block, TextView key, char* dst, std::size_t size) {
  return ReadTextOf(FindElement(block, key), dst, size);
}

bool ReadInt(const Block& block, TextView key, int& out) {
  return ReadIntOf(FindElement(block, key), out);
}

// Quirk "configurable-zero-leaves-out": the section is neither verified nor written.
bool IsLeftAlone(BlockReader& block) {
  int configurable = 1;
  return ReadInt(block.Find("Configurable"), configurable) && configurable == 0;
}

}  // namespace kio::settings

int GetXmlKeyStrValue_(char* block, int len, const char* key, char* dst, int cap) {
  if (block == nullptr || key == nullptr || dst == nullptr || cap < 1) {
    return 0;
  }
  return static_cast<int>(
      kio::settings::ReadText({block, len}, key, dst, static_cast<std::size_t>(cap)));
}

int GetXmlKeyIntValue_(char* block, int len, const char* key, int* out) {
  if (block == nullptr || key == nullptr || out == nullptr) {
    return 0;
  }
  return static_cast<int>(kio::settings::ReadInt({block, len}, key, *out));
}

int GetXmlKeyStrValue(char* block, int len, const char* parentPath, const char* key, char* dst,
                      int cap) {
  const int found = GetXmlKeyStrValue_(block, len, key, dst, cap);
  if (found == 0 && key != nullptr) {
    kio::settings::ReportLostKey(parentPath, key);
  }
  return found;
}

int GetXmlKeyIntValue(char* block, int len, const char* parentPath, const char* key, int* out) {
  const int found = GetXmlKeyIntValue_(block, len, key, out);
  if (found == 0 && key != nullptr) {
    kio::settings::ReportLostKey(parentPath, key);
  }
  return found;
}
