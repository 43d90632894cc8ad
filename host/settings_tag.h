// The names by which clients tell the states of the settings apart.
#ifndef HOST_SETTINGS_TAG_H
#define HOST_SETTINGS_TAG_H

#include <optional>
#include <string>
#include <string_view>

#include "apply_log.h"

namespace kiohost {

// The name of the settings as they are, after this last apply: its id, until it is taken back.
std::string SettingsTag(const std::optional<Apply>& last);

// Whether the value of an If-Match header names a tag. Tags may stand in quotes.
bool MatchesTag(std::string_view header, std::string_view tag);

// The same of an If-None-Match header, where a tag may be marked as a weak one ("W/").
bool MatchesWeakly(std::string_view header, std::string_view tag);

}  // namespace kiohost

#endif  // HOST_SETTINGS_TAG_H
