// The library's tables one after the other, and how the pages name what stands in them.
#ifndef TOOLS_SECTIONS_H
#define TOOLS_SECTIONS_H

#include <cstddef>
#include <string>
#include <vector>

#include "settings/field_tables.h"
#include "variables/place.h"
#include "variables/table.h"

namespace kio::tools {

using settings::Field;
using variables::LiveNode;
using variables::Place;
using variables::Section;

// One of the library's tables.
template <typename Row>
struct Table {
  Section section;
  const Row* rows;
  std::size_t size;

  [[nodiscard]] constexpr const Row* begin() const { return rows; }
  [[nodiscard]] constexpr const Row* end() const { return rows + size; }
};

template <typename Row, std::size_t N>
constexpr Table<Row> TableOf(Section section, const Row (&rows)[N]) {
  return {section, rows, N};
}

// All tables of fields. The two providers share one.
inline constexpr Table<Field> kFieldTables[] = {
    TableOf(Section::kVersion, settings::kVersionFields),
    TableOf(Section::kDevice, settings::kFeatureFields),
    TableOf(Section::kDevice, settings::kDeviceFields),
    TableOf(Section::kDevice, settings::kDeviceRules),
    TableOf(Section::kUplink, settings::kUplinkFields),
    TableOf(Section::kUplink, settings::kUplinkRules),
    TableOf(Section::kDsl, settings::kIspFields),
    TableOf(Section::kDsl, settings::kCircuitFields),
    TableOf(Section::kApn, settings::kIspFields),
    TableOf(Section::kSite, settings::kSiteFields),
    TableOf(Section::kRadio, settings::kWlanFields),
    TableOf(Section::kAccess, settings::kAccessFields),
    TableOf(Section::kRule, settings::kRuleFields),
    TableOf(Section::kService, settings::kSafetyFields),
};

// All tables of variables that are read live.
inline constexpr Table<LiveNode> kLiveTables[] = {
    TableOf(Section::kDevice, variables::kLiveDevice),
    TableOf(Section::kSite, variables::kLiveSite),
    TableOf(Section::kRadio, variables::kLiveRadio),
    TableOf(Section::kFirmware, variables::kLiveFirmware),
    TableOf(Section::kSurvey, variables::kLiveSurvey),
    TableOf(Section::kSurveySite, variables::kLiveSurveySite),
};

inline std::string Text(platform::TextView view) { return {view.data(), view.size()}; }

// The words of a table (kioapp/xml.h).
std::vector<std::string> WordsOf(const char* const* words);

// What stands before the last part of a variable's name: "rss_Wl2_".
std::string NamePrefix(Section section, int radio);

// What the snapshot puts before the node of a field: "/lan/wireless2.4:1".
std::string NodePrefix(const Place& place);

// The path of a block in a settings document, a slash behind it: "Device/Wireless2.4/".
std::string ElementPrefix(const Place& place);

// The path that a variable is read from or answers with. Of an index, "(??+N)" stands for the
// instance, N being that of index 0.
std::string VariablePath(const variables::Variable& variable, const Place& place, bool is_indexed);

// The variable that is made of a row of a section; null when there is none.
const variables::Variable* VariableOf(Section section, const Field& field);
const variables::Variable* VariableOf(Section section, const LiveNode& live);

}  // namespace kio::tools

#endif  // TOOLS_SECTIONS_H
