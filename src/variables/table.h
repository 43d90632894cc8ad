// All variables: the rows of the settings record that are variables, and what is read live from the
// store. Sorted by section and name.
#ifndef KIO_VARIABLES_TABLE_H
#define KIO_VARIABLES_TABLE_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/text.h"
#include "settings/sections.h"

namespace kio::variables {

using platform::TextView;
using settings::Field;
using settings::FieldTable;
using settings::SectionId;
using settings::VariableKind;

// A variable that is read from the store each time and never written.
struct LiveNode {
  enum class Kind : std::uint8_t {
    kText,
    kNumber,
    kNumberOrOne,  // a negative number reads as 1
    kAddress,      // with the keywords of the router's own address replaced
  };

  TextView name;
  Kind kind = Kind::kText;
  // The path that it tells, below the section's; empty for a slash and the name.
  TextView variable_path = {};
  // The whole path of the node that is read, when it is another; terminated.
  TextView node = {};
};

// A variable is a field of the record or a live node.
class Variable {
 public:
  constexpr Variable() = default;
  // `in_record`: whether the member stands in the record itself, as some rules do, and not in the
  // section's structure.
  constexpr Variable(SectionId section, bool in_record, const Field& field)
      : section_(section), in_record_(in_record), row_{.field = &field} {}
  constexpr Variable(SectionId section, const LiveNode& live)
      : section_(section), is_live_(true), row_{.live = &live} {}

  [[nodiscard]] constexpr SectionId section() const { return section_; }
  [[nodiscard]] constexpr bool in_record() const { return in_record_; }
  // Null for a live node.
  [[nodiscard]] constexpr const Field* field() const { return is_live_ ? nullptr : row_.field; }
  // Null for a field of the record.
  [[nodiscard]] constexpr const LiveNode* live() const { return is_live_ ? row_.live : nullptr; }
  // Terminated.
  [[nodiscard]] constexpr TextView name() const {
    return is_live_ ? row_.live->name : row_.field->element;
  }

 private:
  union Row {
    const Field* field;
    const LiveNode* live;
  };

  SectionId section_ = SectionId::kDevice;
  bool in_record_ = false;
  bool is_live_ = false;
  Row row_ = {.field = nullptr};
};

inline constexpr TextView kModelNode = "/sys/modelnumber";
inline constexpr TextView kSiteCountNode = "/wirelesssitesurvey/site#";

// The part of a node's path below the path of a section.
consteval TextView Below(SectionId section, TextView node) {
  node.remove_prefix(settings::RowOf(section).node.size());
  return node;
}

inline constexpr LiveNode kLiveDevice[] = {
    {.name = "FactoryDefault",
     .kind = LiveNode::Kind::kNumberOrOne,
     .variable_path = "/sys/FactoryDefault"},
    {.name = "DeviceModel", .variable_path = kModelNode},
    {.name = "DeviceType", .variable_path = "/sys/DeviceType"},
    {.name = "WirelessConcurrent", .variable_path = "/lan/WirelessConcurrent"},
};

inline constexpr LiveNode kLiveSite[] = {
    // Quirk "sxtendersite": only the node that is read is spelled so; the path that is told is not.
    {.name = "ConnStatus", .node = "/uplink/sxtendersite/connstatus"},
};

inline constexpr LiveNode kLiveRadio[] = {{.name = "ChannelUsing"}};

inline constexpr LiveNode kLiveFirmware[] = {
    {.name = "Vendor"},
    {.name = "DeviceMAC"},
    {.name = "HwVersion"},
    {.name = "RegionCode"},
    {.name = "CurrFwVersion"},
    {.name = "CurrFwFileName"},
    {.name = "AccessKey"},
    // Quirk "model-name-lives-elsewhere": its path names a node of the firmware.
    {.name = "ModelName", .node = kModelNode},
    {.name = "FwUpgradeURL", .kind = LiveNode::Kind::kAddress},
};

inline constexpr LiveNode kLiveSurvey[] = {
    {.name = "SiteNo",
     .kind = LiveNode::Kind::kNumber,
     .variable_path = Below(SectionId::kSurvey, kSiteCountNode)},
};

inline constexpr LiveNode kLiveSurveySite[] = {
    {.name = "WirelessType"},     {.name = "BSSID"},
    {.name = "WirelessName"},     {.name = "EncryptionMode"},
    {.name = "WirelessStrength"},
};

struct LiveTable {
  SectionId section;
  std::span<const LiveNode> nodes;

  [[nodiscard]] constexpr auto begin() const { return nodes.begin(); }
  [[nodiscard]] constexpr auto end() const { return nodes.end(); }
};

inline constexpr LiveTable kLiveTables[] = {
    {SectionId::kDevice, kLiveDevice}, {SectionId::kSite, kLiveSite},
    {SectionId::kRadio, kLiveRadio},   {SectionId::kFirmware, kLiveFirmware},
    {SectionId::kSurvey, kLiveSurvey}, {SectionId::kSurveySite, kLiveSurveySite},
};

class VariableList {
 public:
  constexpr VariableList& Add(SectionId section, bool in_record, FieldTable table) {
    for (const Field& field : table) {
      if (field.variable_kind != VariableKind::kNone) {
        rows_[size_++] = Variable(section, in_record, field);
      }
    }
    return *this;
  }
  constexpr VariableList& Add(const LiveTable& table) {
    for (const LiveNode& live : table) {
      rows_[size_++] = Variable(table.section, live);
    }
    return *this;
  }

  [[nodiscard]] constexpr std::size_t size() const { return size_; }

  template <std::size_t Size>
  [[nodiscard]] constexpr std::array<Variable, Size> Sorted() const {
    std::array<Variable, Size> sorted;
    std::copy_n(rows_.begin(), Size, sorted.begin());
    std::sort(sorted.begin(), sorted.end(), [](const Variable& a, const Variable& b) {
      return a.section() != b.section() ? a.section() < b.section() : a.name() < b.name();
    });
    return sorted;
  }

 private:
  std::array<Variable, 128> rows_;
  std::size_t size_ = 0;
};

consteval VariableList CollectVariables() {
  VariableList list;
  for (const settings::Section& row : settings::kSections) {
    list.Add(row.id, false, row.fields).Add(row.id, true, row.rules);
  }
  for (const LiveTable& table : kLiveTables) {
    list.Add(table);
  }
  return list;
}

inline constexpr std::array kVariables = CollectVariables().Sorted<CollectVariables().size()>();

// Where the variables of each section begin, and where the last ones end.
inline constexpr auto kFirstVariables = [] {
  std::array<std::uint8_t, static_cast<std::size_t>(SectionId::kCount) + 1> first = {};
  for (std::size_t section = 0; section < first.size(); ++section) {
    first[section] = static_cast<std::uint8_t>(
        std::count_if(kVariables.begin(), kVariables.end(), [=](const Variable& variable) {
          return static_cast<std::size_t>(variable.section()) < section;
        }));
  }
  return first;
}();

constexpr const Variable* FindVariable(SectionId section, TextView name) {
  const auto index = static_cast<std::size_t>(section);
  for (std::size_t i = kFirstVariables[index]; i < kFirstVariables[index + 1]; ++i) {
    const TextView found = kVariables[i].name();
    if (found.size() == name.size() &&
        TextView::traits_type::compare(found.data(), name.data(), name.size()) == 0) {
      return &kVariables[i];
    }
  }
  return nullptr;
}

// Proof that no name stands twice in its section and that each one is found.
consteval bool AllAreFound() {
  for (const Variable& variable : kVariables) {
    if (FindVariable(variable.section(), variable.name()) != &variable) {
      return false;
    }
  }
  return true;
}
static_assert(AllAreFound());

}  // namespace kio::variables

#endif
