#include <algorithm>
#include <cstring>

#include "kioapp/xml.h"
#include "platform/text.h"
#include "settings/xml/scan.h"

namespace kio::settings {
namespace {

using platform::ToLower;

// Whether few characters of a settings document are like it.
bool IsRare(char character) {
  const char lower = ToLower(character);
  return (lower < 'a' || lower > 'z') && character != ' ' && character != '\n' &&
         character != '<' && character != '>' && character != '/';
}

// A needle by its first character and a later one, the last rare one if there is any. They differ,
// if any do: so a run of one letter never matches a needle that holds another.
Pattern PatternOf(const char* needle, std::size_t size) {
  std::size_t last = 0;
  for (std::size_t i = size; i-- > 1;) {
    if (ToLower(needle[i]) != ToLower(needle[0])) {
      last = last == 0 ? i : last;
      if (IsRare(needle[i])) {
        last = i;
        break;
      }
    }
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
