// Comparing values with the store and writing what differs.

#include <cstring>

#include "kioapp/text.h"
#include "kioapp/xml.h"
#include "platform/store.h"
#include "platform/text_functions.h"

using kio::platform::ParseInt;
using kio::platform::StoreText;
using kio::platform::TextOf;

int StrCmpWithXStr(const char* value, const char* path, int compareOnly) {
  path = TextOf(path);
  value = TextOf(value);
  if (std::strcmp(StoreText(path).c_str(), value) == 0) {
    return 0;
  }
  if (compareOnly == 0) {
    kio::platform::WriteStoreText(path, value);
  }
  return 1;
}

int IntCmpWithXStr(int value, const char* path, int compareOnly) {
  path = TextOf(path);
  // Quirk "absent-integer-equals-zero": a 0 is not written to an absent node.
  if (ParseInt(StoreText(path).c_str()) == value) {
    return 0;
  }
  if (compareOnly == 0) {
    kio::platform::WriteStoreInt(path, value);
  }
  return 1;
}

int IntMaxCmpWithXStr(int value, const char* path, int compareOnly, int max, int* outTooLarge) {
  path = TextOf(path);
  int is_too_large = 0;
  if (outTooLarge == nullptr) {
    outTooLarge = &is_too_large;
  }
  *outTooLarge = 0;
  if (kio::platform::ReadStoreInt(path) == value) {
    return 0;
  }
  // Quirk "switches-without-lower-bound": a negative value is written.
  if (value > max) {
    *outTooLarge = 1;
    return 0;
  }
  if (compareOnly == 0) {
    kio::platform::WriteStoreInt(path, value);
  }
  return 1;
}

char* getXNode_(char* dst, const char* path, const char* defaultText, int xmlEncode) {
  if (dst == nullptr) {
    return nullptr;
  }
  path = TextOf(path);
  constexpr int kNodeSize = 256;
  char text[kNodeSize];
  kio::platform::ReadStoreText(path, text);
  if (text[0] == '\0' && defaultText != nullptr) {
    kio::platform::CopyText(text, defaultText);
    kio::platform::WriteStoreText(path, defaultText);
  }
  kio::platform::ReplaceRssKeywords(text, sizeof(text));
  if (xmlEncode != 0) {
    strncpy_XmlEncode(dst, text, kNodeSize - 1);
    dst[kNodeSize - 1] = '\0';
  } else {
    kio::platform::CopyText(dst, kNodeSize, text);
  }
  return dst;
}

char* getXNode(char* dst, const char* path, const char* defaultText) {
  return getXNode_(dst, path, defaultText, 0);
}
