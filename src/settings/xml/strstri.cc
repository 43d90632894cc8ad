#include <algorithm>
#include <cstring>

#include "kioapp/xml.h"
#include "platform/text.h"
#include "settings/xml/equals_fold.h"
#include "settings/xml/search_text.h"

namespace kio::settings {
namespace {

using platform::ToLower;

// How common a character is in settings documents: tags and blanks are all over them, and letters
// are in every value.
int Commonness(char character) {
  if (std::strchr(" \n<>/", character) != nullptr) {
    return 2;
  }
  return ToLower(character) >= 'a' && ToLower(character) <= 'z' ? 1 : 0;
}

// A needle by two of its characters. They differ, if any do, so that a run of one letter never
// matches a needle that holds another; and they are of the least common kind.
Pattern PatternOf(const char* needle, std::size_t size) {
  std::size_t rare = size - 1;
  for (std::size_t i = size; i-- > 0;) {
    rare = Commonness(needle[i]) < Commonness(needle[rare]) ? i : rare;
  }
  std::size_t other = rare;
  for (std::size_t i = 0; i < size; ++i) {
    if (ToLower(needle[i]) != ToLower(needle[rare]) &&
        (other == rare || Commonness(needle[i]) < Commonness(needle[other]))) {
      other = i;
    }
  }
  const auto [first, last] = std::minmax(rare, other);
  return {needle[first], first, needle[last], last, '\0'};
}

}  // namespace
}  // namespace kio::settings

char* strstri(const char* haystack, const char* needle) {
  using kio::settings::SearchText;
  if (haystack == nullptr || needle == nullptr || needle[0] == '\0') {
    return nullptr;
  }
  const std::size_t size = std::strlen(needle);
  constexpr std::size_t kFirstStep = 192;
  SearchText text(haystack, SearchText::kNoLimit, std::max(kFirstStep, size));
  const kio::settings::Pattern pattern = kio::settings::PatternOf(needle, size);
  const char* const hit = text.Find(haystack, pattern, size, [&](const char* position) KIO_INLINE {
    return static_cast<std::size_t>(text.known() - position) >= size &&
           kio::settings::EqualsFold(position, needle, size);
  });
  return const_cast<char*>(hit);
}
