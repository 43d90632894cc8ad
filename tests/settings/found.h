// What a search of the XML toolkit finds.
#ifndef KIO_TESTS_SETTINGS_FOUND_H
#define KIO_TESTS_SETTINGS_FOUND_H

#include <ostream>

namespace kio::test {

// The length before a search sets it.
inline constexpr int kUntouched = -77;

// What a search found: the offset in the text (-1 for null) and the length that it set.
struct Found {
  long offset;
  int length;

  bool operator==(const Found&) const = default;
};

inline void PrintTo(const Found& found, std::ostream* out) {
  *out << "offset " << found.offset << ", length " << found.length;
}

}  // namespace kio::test

#endif
