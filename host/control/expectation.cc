#include "control/expectation.h"

#include <fnmatch.h>

#include <algorithm>
#include <string>

namespace kiohost {
namespace {

bool IsAsExpected(const Json& expected, const Json& found) {
  return expected.is_string() && found.is_string()
             ? fnmatch(expected.get<std::string>().c_str(), found.get<std::string>().c_str(), 0) ==
                   0
             : expected == found;
}

bool FitsEntry(const Json& expected, const Json& entry) {
  for (const auto& [name, value] : expected.items()) {
    if (!entry.contains(name) || !IsAsExpected(value, entry[name])) {
      return false;
    }
  }
  return true;
}

bool NamesUndone(const Json& expected) {
  return std::any_of(expected.begin(), expected.end(),
                     [](const Json& one) { return one.contains("undone"); });
}

}  // namespace

Json Compare(const std::vector<Json>& entries, const Json& kinds, const Json& expected) {
  const bool takes_undone = NamesUndone(expected);
  size_t place = 0;
  for (const Json& entry : entries) {
    const bool counts = std::find(kinds.begin(), kinds.end(), entry["kind"]) != kinds.end() &&
                        (takes_undone || !entry.contains("undone"));
    if (!counts) {
      continue;
    }
    const Json wanted = place < expected.size() ? expected[place] : Json();
    if (wanted.is_null() || !FitsEntry(wanted, entry)) {
      return {{"ok", false}, {"at", place}, {"expected", wanted}, {"found", entry}};
    }
    ++place;
  }
  if (place < expected.size()) {
    return {{"ok", false}, {"at", place}, {"expected", expected[place]}, {"found", nullptr}};
  }
  return {{"ok", true}};
}

}  // namespace kiohost
