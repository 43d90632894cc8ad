#include "settings_tag.h"

#include <algorithm>

#include "text.h"

namespace kiohost {
namespace {

std::string_view WithoutQuotes(std::string_view text) {
  return text.size() >= 2 && text.front() == '"' && text.back() == '"'
             ? text.substr(1, text.size() - 2)
             : text;
}

bool Matches(std::string_view header, std::string_view tag, std::string_view mark) {
  while (!header.empty()) {
    const std::string_view item = header.substr(0, header.find(','));
    header.remove_prefix(std::min(item.size() + 1, header.size()));
    std::string_view named = Trim(item);
    if (!mark.empty() && named.starts_with(mark)) {
      named.remove_prefix(mark.size());
    }
    if (named == "*" || WithoutQuotes(named) == tag) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::string SettingsTag(const std::optional<Apply>& last) {
  if (!last) {
    return "none";
  }
  const bool back =
      last->outcome == ApplyOutcome::kGoingBack || last->outcome == ApplyOutcome::kRolledBack;
  return last->id + (back ? "-rolled-back" : "");
}

bool MatchesTag(std::string_view header, std::string_view tag) { return Matches(header, tag, {}); }

bool MatchesWeakly(std::string_view header, std::string_view tag) {
  return Matches(header, tag, "W/");
}

}  // namespace kiohost
