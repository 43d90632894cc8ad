// Keyword replacement, wildcards and blanks.
#include "platform/text_functions.h"

#include <cstdint>

#include "kioapp/text.h"
#include "platform/store.h"
#include "platform/text.h"

namespace kio::platform {
namespace {

// Appends `src` with each occurrence of `key`, searched from left to right, replaced.
void AppendReplaced(TextBuffer& dst, const char* src, const char* key, TextView replacement) {
  const std::size_t key_size = std::strlen(key);
  if (key_size > 0) {
    for (const char* match = std::strstr(src, key); match != nullptr;
         match = std::strstr(src, key)) {
      dst.Append(TextView(src, static_cast<std::size_t>(match - src))).Append(replacement);
      src = match + key_size;
    }
  }
  dst.Append(src);
}

constexpr bool IsBlank(char character) { return character == ' ' || character == '\t'; }

}  // namespace

void ReplaceRssKeywords(char* text, std::size_t size) {
  if (text == nullptr || text[0] == '\0') {
    return;
  }
  char value[64];
  char work[256];
  ReadStoreText("/runtime/zentrolinks/lanip", value);
  TextBuffer with_address(work);
  AppendReplaced(with_address, text, "$lanip", value);
  // Quirk "port-keyword-in-the-address": the address is searched for it too.
  ReadStoreText("/zentrolinks/rsshttpport", value);
  TextBuffer with_port(text, size);
  AppendReplaced(with_port, work, "$rssport", value);
}

}  // namespace kio::platform

char* strChgKeyword(char* dst, const char* src, const char* key, const char* replacement) {
  using kio::platform::TextOf;
  if (dst != nullptr) {
    kio::platform::TextBuffer unbounded(dst, SIZE_MAX);
    kio::platform::AppendReplaced(unbounded, TextOf(src), TextOf(key), TextOf(replacement));
  }
  return dst;
}

char* strChgRssKeywords(char* text) {
  constexpr std::size_t kTextSize = 256;
  kio::platform::ReplaceRssKeywords(text, kTextSize);
  return text;
}

int strnWildcardCmp(const char* subject, const char* pattern, int n) {
  subject = kio::platform::TextOf(subject);
  pattern = kio::platform::TextOf(pattern);
  for (int i = 0; i < n && (*subject != '\0' || *pattern != '\0'); ++i, ++pattern) {
    // Quirk "star-matches-all": whatever follows it in the pattern.
    if (*pattern == '*') {
      return 0;
    }
    if (*pattern != '?' && *subject != *pattern) {
      // Quirk "wildcard-characters-are-signed": whatever char is.
      return static_cast<signed char>(*subject) - static_cast<signed char>(*pattern);
    }
    // Quirk "question-mark-matches-the-end": a pattern of '?' may go on beyond the end of the
    // subject.
    if (*subject != '\0') {
      ++subject;
    }
  }
  return 0;
}

int strWildcardCmp(const char* subject, const char* pattern) {
  constexpr int kLimit = 32767;
  return strnWildcardCmp(subject, pattern, kLimit);
}

char* strip_chars(char* text, const char* set) {
  if (text == nullptr || set == nullptr) {
    return text;
  }
  char* const first = text + std::strspn(text, set);
  for (std::size_t size = std::strlen(first);
       size > 1 && std::strchr(set, first[size - 1]) != nullptr; --size) {
    first[size - 1] = '\0';
  }
  return first;
}

char* trim(char* text) {
  using kio::platform::IsBlank;
  if (text == nullptr) {
    return nullptr;
  }
  const std::size_t size = std::strlen(text);
  if (size == 0 || (!IsBlank(text[0]) && !IsBlank(text[size - 1]))) {
    return text;
  }
  const char* const first = text + std::strspn(text, " \t");
  const char* end = text + size;
  while (end > first && IsBlank(end[-1])) {
    --end;
  }
  const auto kept = static_cast<std::size_t>(end - first);
  std::memmove(text, first, kept);
  text[kept] = '\0';
  return text;
}

char* trimTo(char* dst, const char* src) {
  src = kio::platform::TextOf(src);
  if (dst != nullptr) {
    std::memmove(dst, src, std::strlen(src) + 1);
  }
  return trim(dst);
}
