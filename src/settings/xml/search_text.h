// A text to search whose end may not be known.
#ifndef KIO_SETTINGS_XML_SEARCH_TEXT_H
#define KIO_SETTINGS_XML_SEARCH_TEXT_H

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "platform/inline.h"
#include "settings/xml/scan.h"

namespace kio::settings {

// The text ends after `limit` characters or at its terminator, whichever comes first. The end is
// looked for as the search proceeds, so that a hit near the start costs no pass over the rest.
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

  // The first position at or behind `from` where the pattern stands and that `accept` takes, or
  // null. While the end of the text is not known, `accept` is asked about those alone that have at
  // least `reach` known characters from them on.
  template <typename Accept>
  [[nodiscard]] KIO_INLINE const char* Find(const char* from, const Pattern& pattern,
                                            std::size_t reach, const Accept& accept) {
    for (;;) {
      const auto needed = static_cast<std::ptrdiff_t>(is_whole_ ? pattern.last_place : reach);
      if (known_ - from > needed) {
        const char* const end = known_ - needed;
        const char* const hit = FindPattern(from, end, pattern, accept);
        if (hit != nullptr) {
          return hit;
        }
        from = end;
      }
      if (is_whole_) {
        return nullptr;
      }
      Extend();
    }
  }

 private:
  static constexpr std::size_t kLongestStep = 4096;

  void Extend() {
    const std::size_t found = strnlen(known_, std::min(step_, left_));
    known_ += found;
    left_ -= found;
    is_whole_ = found < step_;
    step_ = std::min(step_ * 2, kLongestStep);
  }

  const char* known_;
  std::size_t left_ = 0;  // behind `known_`
  std::size_t step_ = 0;
  bool is_whole_ = false;
};

}  // namespace kio::settings

#endif
