#include <algorithm>
#include <cstring>

#include "kioapp/xml.h"
#include "platform/text.h"
#include "settings/xml/equals_fold.h"
#include "settings/xml/search_text.h"

namespace kio::settings {
namespace {

using platform::ToLower;

// A needle by its first character and the last one that is another, if any is: so a run of one
// letter never matches a needle that holds another.
Pattern PatternOf(const char* needle, std::size_t size) {
  std::size_t last = size - 1;
  while (last > 1 && ToLower(needle[last]) == ToLower(needle[0])) {
    --last;
  }
  return {needle[0], 0, needle[last], last, '\0'};
}

}  // namespace
}  // namespace kio::settings

char* strstri(const char* haystack, const char* needle) {
  using kio::settings::SearchText;
  if (haystack == nullptr || needle == nullptr || needle[0] == '\0') {
    return nullptr;
  }
  const std::size_t size = std::strlen(needle);
  if (kio::platform::StartsWithFold(haystack, {needle, size})) {
    return const_cast<char*>(haystack);
  }
  constexpr std::size_t kFirstStep = 192;
  SearchText text(haystack, SearchText::kNoLimit, std::max(kFirstStep, size));
  const kio::settings::Pattern pattern = kio::settings::PatternOf(needle, size);
  const char* const hit = text.Find(haystack, pattern, size, [&](const char* position) KIO_INLINE {
    return static_cast<std::size_t>(text.known() - position) >= size &&
           kio::settings::EqualsFold(position, needle, size);
  });
  return const_cast<char*>(hit);
}
