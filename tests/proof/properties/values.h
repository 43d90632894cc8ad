// Texts as they are compared.
#ifndef TESTS_PROOF_PROPERTIES_VALUES_H
#define TESTS_PROOF_PROPERTIES_VALUES_H

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string>

namespace kio::properties {

inline std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

inline std::string Trimmed(const std::string& text) {
  const size_t begin = text.find_first_not_of(" \t");
  return begin == std::string::npos ? ""
                                    : text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

// The value of a number as a document has it.
inline int ToInt(const std::string& text) {
  constexpr int kDecimal = 10;
  const long number = std::strtol(text.c_str(), nullptr, kDecimal);
  return static_cast<int>(std::clamp(number, -2147483648L, 2147483647L));
}

}  // namespace kio::properties

#endif  // TESTS_PROOF_PROPERTIES_VALUES_H
