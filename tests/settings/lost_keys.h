// The missing elements that the library reports, kept by the tests.
#ifndef KIO_TESTS_SETTINGS_LOST_KEYS_H
#define KIO_TESTS_SETTINGS_LOST_KEYS_H

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kio::test {

// Path, which may be null, and name.
using Report = std::pair<std::optional<std::string>, std::string>;

inline std::vector<Report>& Reports() {
  static std::vector<Report> reports;
  return reports;
}

// For `XmlErrMsg_LostKey`.
inline void Record(const char* path, const char* key) {
  Reports().emplace_back(path == nullptr ? std::nullopt : std::optional<std::string>(path), key);
}

}  // namespace kio::test

#endif
