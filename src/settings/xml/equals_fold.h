// Comparing texts whatever the case of their letters.
#ifndef KIO_SETTINGS_XML_EQUALS_FOLD_H
#define KIO_SETTINGS_XML_EQUALS_FOLD_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/inline.h"

namespace kio::settings {

// What two texts of the same size differ in, as their first and last words tell. That is nearly
// always enough.
class Difference {
 public:
  KIO_INLINE Difference(const char* a, const char* b, std::size_t size)
      : bits_(size >= 8   ? InEnds<std::uint64_t>(a, b, size)
              : size >= 4 ? InEnds<std::uint32_t>(a, b, size)
              : size >= 2 ? InEnds<std::uint16_t>(a, b, size)
              : size == 1 ? InEnds<std::uint8_t>(a, b, size)
                          : 0),
        covers_all_(size <= 2 * sizeof(bits_)) {}

  // Whether the texts are equal in every character.
  [[nodiscard]] KIO_INLINE bool IsNone() const { return bits_ == 0 && covers_all_; }
  // Whether they differ in more than the cases of letters.
  [[nodiscard]] KIO_INLINE bool IsMoreThanCase() const {
    constexpr std::uint64_t kCaseBits = 0x2020'2020'2020'2020;
    return (bits_ & ~kCaseBits) != 0;
  }

 private:
  template <typename Word>
  KIO_INLINE static Word InEnds(const char* a, const char* b, std::size_t size) {
    const std::size_t last = size - sizeof(Word);
    return static_cast<Word>((Load<Word>(a) ^ Load<Word>(b)) |
                             (Load<Word>(a + last) ^ Load<Word>(b + last)));
  }
  template <typename Word>
  KIO_INLINE static Word Load(const char* text) {
    Word word = 0;
    std::memcpy(&word, text, sizeof(word));
    return word;
  }

  std::uint64_t bits_;
  bool covers_all_;
};

// The comparison of texts whose difference does not tell.
bool EqualsFoldInside(const char* a, const char* b, std::size_t size);

KIO_INLINE inline bool EqualsFold(const Difference& difference, const char* a, const char* b,
                                  std::size_t size) {
  return difference.IsNone() || (!difference.IsMoreThanCase() && EqualsFoldInside(a, b, size));
}

// Whether the `size` characters at `a` and `b` are equal, ignoring ASCII case. All of them are
// there.
KIO_INLINE inline bool EqualsFold(const char* a, const char* b, std::size_t size) {
  return EqualsFold(Difference(a, b, size), a, b, size);
}

}  // namespace kio::settings

#endif
