#include "settings/xml/tag.h"

#include <algorithm>

#include "settings/xml/equals_fold.h"

namespace kio::settings {
namespace {

using platform::TextView;

// Behind `piece`, when it stands at `position` of a text that ends at `end`; else null. What of it
// lies behind `cut` does not count.
inline const char* Behind(const char* position, const char* end, TextView piece, const char* cut) {
  const std::size_t size = std::min(piece.size(), static_cast<std::size_t>(cut - position));
  return static_cast<std::size_t>(end - position) >= size &&
                 EqualsFold(position, piece.data(), size)
             ? position + size
             : nullptr;
}

}  // namespace

EmptyTag EmptyTagAt(const char* tag, const char* end, TextView key) {
  const char* const cut = tag + kTagLimit;
  const char* const name_end = Behind(tag + 1, end, key, cut);
  if (name_end == nullptr) {
    return EmptyTag::kNone;
  }
  if (Behind(name_end, end, "/>", cut) != nullptr) {
    return EmptyTag::kPlain;
  }
  return Behind(name_end, end, " />", cut) != nullptr ? EmptyTag::kBlank : EmptyTag::kNone;
}

}  // namespace kio::settings
