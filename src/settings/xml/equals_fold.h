// Comparing texts whatever the case of their letters.
#ifndef KIO_SETTINGS_XML_EQUALS_FOLD_H
#define KIO_SETTINGS_XML_EQUALS_FOLD_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/inline.h"
#include "platform/text.h"

namespace kio::settings {

// Whether the `size` characters at `a` and `b` are equal, ignoring ASCII case. All of them are
// there. They are compared from their ends: what is looked for differs there from what it is like.
inline bool EqualsFold(const char* a, const char* b, std::size_t size) {
  const char* from_a = a + size;
  const char* from_b = b + size;
  while (from_a != a) {
    --from_a;
    --from_b;
    if (*from_a != *from_b && platform::ToLower(*from_a) != platform::ToLower(*from_b)) {
      return false;
    }
  }
  return true;
}

// Whether two texts of two to sixteen characters are the same, as two words tell that may overlap.
// False for others, and where the compiler is to save space.
KIO_INLINE inline bool AreSameWords(const char* a, const char* b, std::size_t size) {
#ifndef KIO_FOR_SIZE
  const auto have_same_ends = [=]<typename Word>(Word word_a) {
    Word word_b = 0;
    const auto load_both = [&](std::size_t at) {
      std::memcpy(&word_a, a + at, sizeof(Word));
      std::memcpy(&word_b, b + at, sizeof(Word));
      return word_a == word_b;
    };
    return load_both(0) && load_both(size - sizeof(Word));
  };
  if (size >= sizeof(std::uint64_t)) {
    return size <= 2 * sizeof(std::uint64_t) && have_same_ends(std::uint64_t{});
  }
  if (size >= sizeof(std::uint32_t)) {
    return have_same_ends(std::uint32_t{});
  }
  return size >= sizeof(std::uint16_t) && have_same_ends(std::uint16_t{});
#else
  static_cast<void>(a), static_cast<void>(b), static_cast<void>(size);
  return false;
#endif
}

}  // namespace kio::settings

#endif
