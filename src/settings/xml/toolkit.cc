// The exported toolkit: searches and values over texts of the caller's.

#include "kioapp/xml.h"
#include "platform/text.h"
#include "settings/xml/find_element.h"
#include "settings/xml/required.h"
#include "settings/xml/values.h"

using kio::settings::Block;
using kio::settings::Element;

char* FindXmlKeyContain_(char* text, int len, const char* key, int* outLen, int headerOnly) {
  if (text == nullptr || key == nullptr) {
    return nullptr;
  }
  const Block block{text, len, nullptr};
  const Element element = headerOnly != 0 ? Element{kio::settings::FindTag(block, key), {}}
                                          : kio::settings::FindElement(block, key);
  if (headerOnly != 0 && element.has_tag()) {
    return element.tag;
  }
  if (outLen != nullptr) {
    *outLen = element.is_complete() ? element.content.length : 0;
  }
  return element.content.text;
}

char* FindXmlKeyContain(char* text, int len, const char* key, int* outLen) {
  return FindXmlKeyContain_(text, len, key, outLen, 0);
}

char* SearchXmlKeyHeader(char* text, int len, const char* key) {
  return FindXmlKeyContain_(text, len, key, nullptr, 1);
}

char* prepareXmlBlockData(const char* parentPath, char* text, int len, const char* key,
                          char* outPath, int* outLen) {
  if (key == nullptr) {
    return nullptr;
  }
  char path[128];
  const Block found = kio::settings::FindRequiredBlock(parentPath, {text, len, nullptr}, key, path);
  if (found.text != nullptr && outPath != nullptr) {
    kio::platform::CopyText(outPath, sizeof(path), path);
  }
  if (outLen != nullptr) {
    *outLen = found.length;
  }
  return found.text;
}

int GetXmlKeyStrValue_(char* block, int len, const char* key, char* dst, int cap) {
  if (block == nullptr || key == nullptr || dst == nullptr || cap < 1) {
    return 0;
  }
  return static_cast<int>(kio::settings::ReadText(kio::settings::FindElement({block, len}, key),
                                                  dst, static_cast<std::size_t>(cap)));
}

int GetXmlKeyIntValue_(char* block, int len, const char* key, int* out) {
  if (block == nullptr || key == nullptr || out == nullptr) {
    return 0;
  }
  return static_cast<int>(
      kio::settings::ReadInt(kio::settings::FindElement({block, len}, key), *out));
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
