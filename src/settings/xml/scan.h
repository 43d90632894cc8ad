// Searching text: the inner loops of every search.
#ifndef KIO_SETTINGS_XML_SCAN_H
#define KIO_SETTINGS_XML_SCAN_H

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "platform/inline.h"
#include "settings/xml/stride.h"

namespace kio::settings {

// Looks for positions where two characters stand a distance apart, in whatever case. Such a
// position is worth a full comparison, which it also needs: characters are taken for others that
// differ in the bit that tells the cases of a letter apart, or in the one that no ASCII has.
class Pair {
 public:
  KIO_INLINE Pair(char first, char second, std::size_t distance)
      : first_(Repeat(first)),
        second_(Repeat(second)),
        first_character_(first),
        second_character_(second),
        distance_(distance) {}

  [[nodiscard]] std::size_t distance() const { return distance_; }

  // The first position of [from, end) that `accept` takes, or null. It may be asked twice about a
  // position. Nothing is read but these positions and the ones at the distance from them.
  template <typename Accept>
  [[nodiscard]] KIO_INLINE const char* FindNear(const char* from, const char* end,
                                                const Accept& accept) const {
    if (end - from < kStrideLength) {
      return FindInFew(from, end, accept);
    }
    const char* const last = end - kStride;
    for (;;) {
      for (Marks marks = MarkZeros(Compare(from)); HasMark(marks); marks = WithoutFirst(marks)) {
        const char* const hit = from + FirstOf(marks);
        if (accept(hit)) {
          return hit;
        }
      }
      if (from == last) {
        return nullptr;
      }
      // The last stride may overlap the one before.
      from = std::min(from + kStride, last);
    }
  }

  // The same for long ways: looks at four strides at a time.
  template <typename Accept>
  [[nodiscard]] KIO_INLINE const char* FindFar(const char* from, const char* end,
                                               const Accept& accept) const {
    for (;;) {
      while (end - from >= 4 * kStrideLength &&
             !HasZero(Compare(from), Compare(from + kStride), Compare(from + 2 * kStride),
                      Compare(from + 3 * kStride))) {
        from += 4 * kStride;
      }
      const char* const stop = end - from >= 4 * kStrideLength ? from + 4 * kStride : end;
      const char* const hit = FindNear(from, stop, accept);
      if (hit != nullptr || stop == end) {
        return hit;
      }
      from = stop;
    }
  }

 private:
  static constexpr char kCompared = 0x5F;

  [[nodiscard]] KIO_INLINE Stride Compare(const char* position) const {
    return ((LoadStride(position) ^ first_) | (LoadStride(position + distance_) ^ second_)) &
           Repeat(kCompared);
  }

  template <typename Accept>
  [[nodiscard]] KIO_INLINE const char* FindInFew(const char* from, const char* end,
                                                 const Accept& accept) const {
    for (; from < end; ++from) {
      if (((from[0] ^ first_character_) & kCompared) == 0 &&
          ((from[distance_] ^ second_character_) & kCompared) == 0 && accept(from)) {
        return from;
      }
    }
    return nullptr;
  }

  Stride first_;
  Stride second_;
  char first_character_;
  char second_character_;
  std::size_t distance_;
};

// First position of [from, end) where a tag may begin, or null. Nothing at or behind `readable` is
// read.
KIO_INLINE inline const char* FindTagStart(const char* from, const char* end,
                                           const char* readable) {
  for (; from < end && readable - from >= kStrideLength; from += kStride) {
    const Marks marks = MarkEqual(LoadStride(from), '<');
    if (HasMark(marks)) {
      const char* const hit = from + FirstOf(marks);
      return hit < end ? hit : nullptr;
    }
  }
  while (from < end && *from != '<') {
    ++from;
  }
  return from < end ? from : nullptr;
}

// A text to search whose end may not be known: it ends after `limit` characters or at its
// terminator, whichever comes first. The end is looked for as the search proceeds, so that a hit
// near the start costs no pass over the rest.
class SearchText {
 public:
  static constexpr std::size_t kNoLimit = static_cast<std::size_t>(-1);

  // `first_step` characters are looked at before the search begins: as many as it takes at least.
  KIO_INLINE SearchText(const char* begin, std::size_t limit, std::size_t first_step)
      : known_(begin), left_(limit), step_(first_step) {
    Extend();
  }

  // A text known to reach to `end`.
  KIO_INLINE explicit SearchText(const char* end) : known_(end), is_whole_(true) {}

  // The text is known to reach here.
  [[nodiscard]] const char* known() const { return known_; }
  // Whether it is known to end there.
  [[nodiscard]] bool is_whole() const { return is_whole_; }

  // Where to look, from `from` on, for what takes `size` characters: while the end is not known,
  // not so far that it would reach beyond what is known.
  [[nodiscard]] KIO_INLINE const char* HitsEnd(const char* from, std::size_t size) const {
    if (is_whole_) {
      return known_;
    }
    return static_cast<std::size_t>(known_ - from) > size ? known_ - size : from;
  }

  // The end of the positions of [from, end) that have `reach` known characters behind them.
  [[nodiscard]] KIO_INLINE const char* EndWithin(const char* from, const char* end,
                                                 std::size_t reach) const {
    return static_cast<std::size_t>(known_ - from) > reach ? std::min(end, known_ - reach) : from;
  }

  // Learns of more text. Returns false when there is none.
  bool Extend() {
    if (is_whole_) {
      return false;
    }
    const std::size_t found = strnlen(known_, std::min(step_, left_));
    known_ += found;
    left_ -= found;
    is_whole_ = found < step_;
    step_ = std::min(step_ * 2, kLongestStep);
    return true;
  }

 private:
  static constexpr std::size_t kLongestStep = 4096;

  const char* known_;
  std::size_t left_ = 0;  // behind `known_`
  std::size_t step_ = 0;
  bool is_whole_ = false;
};

}  // namespace kio::settings

#endif
