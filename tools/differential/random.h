// Numbers drawn from a seed, the same for both libraries.
#ifndef KIO_DIFFERENTIAL_RANDOM_H
#define KIO_DIFFERENTIAL_RANDOM_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kio::differential {

class Random {
 public:
  // Different seeds, and different streams of one seed, are independent of each other. The factor
  // is another one than the step: else a seed would give the numbers of the one before it but the
  // first.
  Random(std::uint64_t seed, std::uint64_t stream) : state_(seed * 0xD1342543DE82EF95 + stream) {
    Next();
    state_ ^= stream << 32;
  }

  std::uint64_t Next() {
    state_ += 0x9E3779B97F4A7C15;
    std::uint64_t value = state_;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EB;
    return value ^ (value >> 31);
  }

  // 0 to `limit` - 1; 0 for a limit below 1.
  int Below(int limit) {
    return limit < 1 ? 0 : static_cast<int>(Next() % static_cast<unsigned>(limit));
  }
  // `low` to `high`.
  int Between(int low, int high) { return low + Below(high - low + 1); }
  // True in `percent` of a hundred cases.
  bool Chance(int percent) { return Below(100) < percent; }
  // True in one of `count` cases.
  bool OneIn(int count) { return Below(count) == 0; }

  template <class T, std::size_t N>
  const T& Of(const T (&list)[N]) {
    return list[Below(static_cast<int>(N))];
  }
  template <class T>
  const T& Of(const std::vector<T>& list) {
    return list[static_cast<std::size_t>(Below(static_cast<int>(list.size())))];
  }

 private:
  std::uint64_t state_;
};

}  // namespace kio::differential

#endif
