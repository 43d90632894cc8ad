// Tags are formatted by snprintf and compared at every byte. A terminator is written at the end of
// the block for the time of the search.
#include "testing/plain_toolkit.h"

#include <strings.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kioapp/text.h"

namespace kio::test {
namespace {

constexpr std::size_t kTagSize = 128;

char* PlainStrstri(const char* haystack, const char* needle) {
  const std::size_t size = std::strlen(needle);
  for (const char* position = haystack; size > 0 && *position != '\0'; ++position) {
    if (strncasecmp(position, needle, size) == 0) {
      return const_cast<char*>(position);
    }
  }
  return nullptr;
}

// Ends a block for as long as the object lives.
class BlockEnd {
 public:
  BlockEnd(char* text, int len)
      : end_(len > 0 && std::strlen(text) > static_cast<std::size_t>(len) ? text + len : nullptr),
        saved_(end_ != nullptr ? *end_ : '\0') {
    if (end_ != nullptr) {
      *end_ = '\0';
    }
  }
  ~BlockEnd() {
    if (end_ != nullptr) {
      *end_ = saved_;
    }
  }
  BlockEnd(const BlockEnd&) = delete;
  BlockEnd& operator=(const BlockEnd&) = delete;

 private:
  char* end_;
  char saved_;
};

char* FindEmpty(char* text, const char* key, int* out_len) {
  char tag[kTagSize];
  std::snprintf(tag, sizeof(tag), "<%s/>", key);
  char* hit = PlainStrstri(text, tag);
  if (hit == nullptr) {
    std::snprintf(tag, sizeof(tag), "<%s />", key);
    hit = PlainStrstri(text, tag);
  }
  *out_len = 0;
  return hit;
}

char* PlainFind(char* text, int len, const char* key, int* out_len) {
  const BlockEnd end(text, len);
  char tag[kTagSize];
  std::snprintf(tag, sizeof(tag), "<%s>", key);
  char* const opening = PlainStrstri(text, tag);
  if (opening == nullptr) {
    return FindEmpty(text, key, out_len);
  }
  char* const content = opening + std::strlen(tag);
  std::snprintf(tag, sizeof(tag), "</%s>", key);
  const char* const closing = PlainStrstri(content, tag);
  *out_len = closing == nullptr ? 0 : static_cast<int>(closing - content);
  return closing == nullptr ? nullptr : content;
}

char* PlainFindHeader(char* text, int len, const char* key) {
  const BlockEnd end(text, len);
  char tag[kTagSize];
  std::snprintf(tag, sizeof(tag), "<%s>", key);
  char* const opening = PlainStrstri(text, tag);
  int ignored = 0;
  return opening != nullptr ? opening : FindEmpty(text, key, &ignored);
}

char* PlainFindBlock(const char* parent_path, char* text, int len, const char* key, char* out_path,
                     int* out_len) {
  char* const content = PlainFind(text, len, key, out_len);
  if (content != nullptr) {
    const bool has_parent = parent_path != nullptr && parent_path[0] != '\0';
    std::snprintf(out_path, kTagSize, "%s%s%s", has_parent ? parent_path : "",
                  has_parent ? "/" : "", key);
  }
  return content;
}

int PlainReadText(char* block, int len, const char* /*parent_path*/, const char* key, char* dst,
                  int cap) {
  int length = 0;
  const char* const content = PlainFind(block, len, key, &length);
  dst[0] = '\0';
  if (content == nullptr) {
    return 0;
  }
  length = std::min(length, cap - 1);
  strncpy_XmlDecode(dst, content, length);
  dst[length] = '\0';
  return 1;
}

int PlainReadInt(char* block, int len, const char* parent_path, const char* key, int* out) {
  char text[kTagSize];
  if (PlainReadText(block, len, parent_path, key, text, sizeof(text)) == 0) {
    return 0;
  }
  *out = std::atoi(text);  // NOLINT(cert-err34-c): a text without a number counts as 0
  return 1;
}

}  // namespace

const Toolkit kPlainToolkit = {
    PlainFind, PlainFindHeader, PlainFindBlock, PlainReadText, PlainReadInt, PlainStrstri,
};

}  // namespace kio::test
