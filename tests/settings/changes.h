// What exchanges over the sample device change in its store.
#ifndef KIO_TESTS_SETTINGS_CHANGES_H
#define KIO_TESTS_SETTINGS_CHANGES_H

#include <string>
#include <vector>

namespace kio::test {

using Texts = std::vector<std::string>;

inline constexpr const char* kMode24 = "/lan/wireless2.4:1/accesscontrol/wlacmode=1";
inline constexpr const char* kMode5 = "/lan/wireless5:1/accesscontrol/wlacmode=0";
inline constexpr const char* kNotFactory = "/sys/factorydefault=0";
// What is written even when nothing differs.
inline const Texts kAlways = {kMode24, kMode5};

inline Texts Join(const std::vector<Texts>& parts) {
  Texts all;
  for (const Texts& part : parts) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace kio::test

#endif
