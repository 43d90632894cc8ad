#include "settings/xml_values.h"

#include <algorithm>
#include <cstring>

#include "kioapp/xml.h"
#include "platform/xml_coding.h"

void (*XmlErrMsg_LostKey)(const char* path, const char* key) = nullptr;

namespace kio::settings {

using platform::TextView;

void ReportLostKey(const char* path, TextView key) {
  if (XmlErrMsg_LostKey != nullptr) {
    XmlErrMsg_LostKey(path, key.data());
  }
}

bool ReadText(const Element& element, char* dst, std::size_t size) {
  if (!element.is_complete()) {
    dst[0] = '\0';
    return false;
  }
  // The cut counts characters as they stand in the document: an entity that it splits stays as
  // text.
  // Quirk "entity-cut-stays-raw": an entity that the cut splits is not decoded.
  const std::size_t count = std::min(static_cast<std::size_t>(element.content.length), size - 1);
  const std::size_t written = platform::DecodeXml(dst, TextView(element.content.text, count));
  dst[written] = '\0';
  return true;
}

bool ReadInt(const Element& element, int& out) {
  constexpr int kLongestNumber = 127;
  const Block& content = element.content;
  if (element.is_complete() && content.length <= kLongestNumber &&
      std::memchr(content.text, '&', static_cast<std::size_t>(content.length)) == nullptr) {
    // Nothing to decode or to cut: the number ends at the closing tag, which is no digit.
    out = content.length > 0 ? platform::ParseInt(content.text) : 0;
    return true;
  }
  char text[kLongestNumber + 1];
  if (!ReadText(element, text, sizeof(text))) {
    return false;
  }
  out = platform::ParseInt(text);
  return true;
}

bool ReadText(const Block& block, TextView key, char* dst, std::size_t size) {
  return ReadText(FindElement(block, key), dst, size);
}

bool ReadInt(const Block& block, TextView key, int& out) {
  return ReadInt(FindElement(block, key), out);
}

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
