#include "settings/scan.h"

#include "kioapp/xml.h"

namespace kio::settings {

bool EqualsFoldInside(const char* a, const char* b, std::size_t size) {
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  for (std::size_t i = 0; i < size;) {
    // The last word may overlap the one before.
    i = std::min(i, size - kWord);
    const EndComparison<std::uint64_t> word(a + i, b + i, kWord);
    if (!word.AreSame() &&
        (word.Differ() || !platform::StartsWithFold(a + i, platform::TextView(b + i, kWord)))) {
      return false;
    }
    i += kWord;
  }
  return true;
}

}  // namespace kio::settings

char* strstri(const char* haystack, const char* needle) {
  using kio::platform::ToLower;
  if (haystack == nullptr || needle == nullptr || needle[0] == '\0') {
    return nullptr;
  }
  const char first = ToLower(needle[0]);
  const std::size_t size = std::strlen(needle);
  const bool begins_alike = ToLower(haystack[0]) == first;
  if (size == 1 && begins_alike) {
    return const_cast<char*>(haystack);
  }
  constexpr std::size_t kFirstStep = 96;
  kio::settings::SearchText text(haystack, kio::settings::SearchText::kNoLimit,
                                 std::max(kFirstStep, size));
  if (static_cast<std::size_t>(text.known() - haystack) < size) {
    return nullptr;
  }
  if (begins_alike && kio::settings::EqualsFold(haystack, needle, size)) {
    return const_cast<char*>(haystack);
  }
  // Looked for by its first character and the last one that differs from it, so that a run of one
  // letter never matches a text that holds another.
  std::size_t distance = size - 1;
  while (distance > 0 && ToLower(needle[distance]) == first) {
    --distance;
  }
  distance = distance > 0 ? distance : size - 1;
  const kio::settings::PairSearch<true, true> pair(needle[0], needle[distance], distance);
  const char* from = haystack;
  do {
    const char* const end = text.HitsEnd(from, size);
    while (const char* const hit = pair.Find(from, end, text.readable())) {
      if (static_cast<std::size_t>(text.known() - hit) >= size &&
          kio::settings::EqualsFold(hit, needle, size)) {
        return const_cast<char*>(hit);
      }
      from = hit + 1;
    }
    from = std::max(from, end);
  } while (text.Extend());
  return nullptr;
}
