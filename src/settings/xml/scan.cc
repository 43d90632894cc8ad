#include "settings/xml/scan.h"

#include "kioapp/xml.h"
#include "platform/text.h"
#include "settings/xml/equals_fold.h"

namespace kio::settings {
namespace {

using platform::ToLower;

// How much of a document a character is like: tags, and the blanks between them, are all over it,
// and values differ most in what is no letter.
int Commonness(char character) {
  switch (character) {
    case ' ':
    case '\n':
    case '<':
    case '>':
    case '/':
      return 2;
    default:
      return ToLower(character) >= 'a' && ToLower(character) <= 'z' ? 1 : 0;
  }
}

// Two places in a needle, the first one not behind the second.
struct Anchors {
  std::size_t first;
  std::size_t second;
};

// The places to look for a needle by. They differ in their characters, if any do, so that a run of
// one letter never matches a needle that holds another; and they are of the least common kind.
Anchors AnchorsOf(const char* needle, std::size_t size) {
  // It takes a long needle to be worth a long choice.
  constexpr std::size_t kLong = 16;
  const int enough = size > kLong ? 0 : 1;
  constexpr int kWorst = 3;
  std::size_t second = 0;
  int least = kWorst;
  for (std::size_t i = size; i-- > 0 && least > enough;) {
    if (Commonness(needle[i]) < least) {
      least = Commonness(needle[i]);
      second = i;
    }
  }
  std::size_t first = 0;
  least = kWorst;
  for (std::size_t i = 0; i < size && least > enough; ++i) {
    if (ToLower(needle[i]) != ToLower(needle[second]) && Commonness(needle[i]) < least) {
      least = Commonness(needle[i]);
      first = i;
    }
  }
  return {std::min(first, second), std::max(first, second)};
}

// The first match of a needle from `from` on.
[[gnu::noinline]] const char* FindFarText(SearchText& text, const char* from, const char* needle,
                                          std::size_t size) {
  const Anchors anchors = AnchorsOf(needle, size);
  const std::size_t first = anchors.first;
  const Pair pair(needle[first], needle[anchors.second], anchors.second - first);
  do {
    const char* const end = text.EndWithin(from, text.known(), size - 1);
    const char* const hit =
        pair.FindFar(from + first, end + first, [=](const char* position) KIO_INLINE {
          return EqualsFold(position - first, needle, size);
        });
    if (hit != nullptr) {
      return hit - first;
    }
    from = end;
  } while (text.Extend());
  return nullptr;
}

}  // namespace
}  // namespace kio::settings

char* strstri(const char* haystack, const char* needle) {
  using kio::platform::ToLower;
  using kio::settings::Difference;
  if (haystack == nullptr || needle == nullptr || needle[0] == '\0') {
    return nullptr;
  }
  bool begins_alike = ToLower(haystack[0]) == ToLower(needle[0]);
  if (begins_alike) {
    if (needle[1] == '\0') {
      return const_cast<char*>(haystack);
    }
    begins_alike = ToLower(haystack[1]) == ToLower(needle[1]);
  }
  constexpr std::size_t kNear = 192;
  const std::size_t size = std::strlen(needle);
  const std::size_t step = std::max(kNear, size);
  const std::size_t known = strnlen(haystack, step);
  if (known < size) {
    return nullptr;
  }
  if (begins_alike && kio::settings::EqualsFold(haystack, needle, size)) {
    return const_cast<char*>(haystack);
  }
  // Looked for by its first character and the last one that differs from it.
  std::size_t distance = size - 1;
  while (distance > 1 && ToLower(needle[distance]) == ToLower(needle[0])) {
    --distance;
  }
  const char* const end = haystack + (known - size + 1);
  const char* hit = kio::settings::Pair(needle[0], needle[distance], distance)
                        .FindNear(haystack, end, [=](const char* position) KIO_INLINE {
                          return !Difference(position, needle, size).IsMoreThanCase();
                        });
  if (hit != nullptr && kio::settings::EqualsFoldInside(hit, needle, size)) {
    return const_cast<char*>(hit);
  }
  if (hit == nullptr && known < step) {
    return nullptr;
  }
  kio::settings::SearchText text(haystack + known, kio::settings::SearchText::kNoLimit, 2 * step);
  return const_cast<char*>(
      kio::settings::FindFarText(text, hit != nullptr ? hit : end, needle, size));
}
