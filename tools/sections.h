// A walk over all tables of the library, and the names that the pages give to what stands in them.
#ifndef TOOLS_SECTIONS_H
#define TOOLS_SECTIONS_H

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "settings/sections.h"
#include "variables/request.h"
#include "variables/table.h"

namespace kio::tools {

using settings::Field;
using settings::SectionId;
using variables::kLiveNodes;
using variables::LiveNode;
using variables::SectionInstance;

// A table and the section that it belongs to.
template <typename Row>
struct Table {
  SectionId section = SectionId::kDevice;
  std::span<const Row> rows = {};

  [[nodiscard]] constexpr auto begin() const { return rows.begin(); }
  [[nodiscard]] constexpr auto end() const { return rows.end(); }
};

// All tables of fields.
class FieldTables {
 public:
  consteval FieldTables() {
    Add(SectionId::kDevice, settings::kFeatureFields);
    for (const settings::Section& section : settings::kSections) {
      Add(section.id, section.fields);
      Add(section.id, section.rules);
    }
  }

  [[nodiscard]] constexpr const Table<Field>* begin() const { return tables_.data(); }
  [[nodiscard]] constexpr const Table<Field>* end() const { return tables_.data() + size_; }

 private:
  constexpr void Add(SectionId section, settings::FieldTable table) {
    if (!table.empty()) {
      tables_[size_++] = {section, table};
    }
  }

  std::array<Table<Field>, 2 * settings::kSections.size() + 1> tables_ = {};
  std::size_t size_ = 0;
};
inline constexpr FieldTables kFieldTables;

inline std::string Text(platform::TextView view) { return {view.data(), view.size()}; }

// The words of a table (kioapp/xml.h).
std::vector<std::string> WordsOf(const char* const* words);

// What stands before the last part of a variable's name: "rss_Wl2_".
std::string NamePrefix(SectionId section, int radio);

// What the snapshot puts before the node of a field: "/lan/wireless2.4:1".
std::string NodePrefix(const SectionInstance& instance);

// The path of a block in a settings document, a slash behind it: "Device/Wireless2.4/".
std::string ElementPrefix(const SectionInstance& instance);

// The same as faulty values are reported: "Device/Uplink/".
std::string FaultPrefix(const SectionInstance& instance);

// The path that a variable is read from or answers with. "(??+N)" stands for the instance of an
// index; N is the instance of index 0.
std::string VariablePath(const variables::Variable& variable, const SectionInstance& instance,
                         bool is_indexed);

// The variable that a row of a section makes; null when it makes none.
const variables::Variable* VariableOf(SectionId section, const Field& field);
const variables::Variable* VariableOf(SectionId section, const LiveNode& live);

}  // namespace kio::tools

#endif  // TOOLS_SECTIONS_H
