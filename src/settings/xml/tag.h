// The tags of a key, matched at their '<'.
#ifndef KIO_SETTINGS_XML_TAG_H
#define KIO_SETTINGS_XML_TAG_H

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "platform/inline.h"
#include "platform/text.h"
#include "settings/xml/scan.h"

namespace kio::settings {

// No tag text is longer: what stands before the key, the key and what stands behind it are cut to
// it.
// Quirk "tags-of-127": keys that differ behind the cut are one.
inline constexpr std::size_t kTagLimit = 127;

// Behind the rest of a tag that stands at `name`, the key and a '>', or null. The text ends at
// `end`, the tag's own text at `cut`.
// Quirk "plain-tags-only": attributes or blanks in a tag make it another one.
KIO_INLINE KIO_ONE_BODY inline const char* BehindRest(const char* name, const char* end,
                                                      platform::TextView key, const char* cut) {
  const std::size_t size = std::min(key.size(), static_cast<std::size_t>(cut - name));
  if (static_cast<std::size_t>(end - name) < size) {
    return nullptr;
  }
  const char* behind = name + size;
  if (behind != cut) {
    if (behind == end || *behind != '>') {
      return nullptr;
    }
    ++behind;
  }
#ifndef KIO_FOR_SIZE
  if (AreSameWords(name, key.data(), size)) {
    return behind;
  }
#endif
  return EqualsFold(name, key.data(), size) ? behind : nullptr;
}

// Behind the opening tag of `key` at `tag`, or null.
KIO_INLINE inline const char* BehindOpeningTag(const char* tag, const char* end,
                                               platform::TextView key) {
  return BehindRest(tag + 1, end, key, tag + kTagLimit);
}

// Behind the closing tag of `key` at `tag`, or null.
KIO_INLINE inline const char* BehindClosingTag(const char* tag, const char* end,
                                               platform::TextView key) {
  return end - tag >= 2 && tag[1] == '/' ? BehindRest(tag + 2, end, key, tag + kTagLimit) : nullptr;
}

enum class EmptyTag { kNone, kPlain, kBlank };

// The form in which the tag of an empty element `key` stands at `tag`: "<key/>" or "<key />".
inline EmptyTag EmptyTagAt(const char* tag, const char* end, platform::TextView key) {
  const std::size_t size = std::min(key.size(), kTagLimit - 1);
  const auto left = static_cast<std::size_t>(end - tag - 1);
  if (left < size || !EqualsFold(tag + 1, key.data(), size)) {
    return EmptyTag::kNone;
  }
  const auto goes_on = [=](platform::TextView rest) {
    const std::size_t count = std::min(rest.size(), kTagLimit - 1 - size);
    return left - size >= count && std::memcmp(tag + 1 + size, rest.data(), count) == 0;
  };
  return goes_on("/>") ? EmptyTag::kPlain : goes_on(" />") ? EmptyTag::kBlank : EmptyTag::kNone;
}

}  // namespace kio::settings

#endif
