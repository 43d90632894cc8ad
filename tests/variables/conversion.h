// Converting variable names and document paths in the tests.
#ifndef KIO_TESTS_VARIABLES_CONVERSION_H
#define KIO_TESTS_VARIABLES_CONVERSION_H

#include <optional>
#include <string>

#include "kioapp/variables.h"
#include "support/guarded_text.h"

namespace kio::test {

// Null where the conversion gives null. The text lies at the very end of readable memory.
inline std::optional<std::string> Convert(const std::string& text, int to_path) {
  const GuardedText guarded(text);
  const char* const result = cvtRss_XmlPathVsVarName(guarded.get(), to_path);
  return result == nullptr ? std::nullopt : std::optional<std::string>(result);
}

inline std::optional<std::string> ToPath(const std::string& name) { return Convert(name, 1); }
inline std::optional<std::string> ToName(const std::string& path) { return Convert(path, 0); }

}  // namespace kio::test

#endif
