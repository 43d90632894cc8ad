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

  SectionId section = SectionId::kCount;
  Kind kind = Kind::kText;
  TextView name;
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
  explicit constexpr Variable(const LiveNode& live)
      : section_(live.section), is_live_(true), row_{.live = &live} {}

  [[nodiscard]] constexpr SectionId section() const { return section_; }
  [[nodiscard]] constexpr bool in_record() const { return in_record_; }
  // Whether there is such a variable.
  [[nodiscard]] constexpr bool exists() const { return is_live_ || row_.field != nullptr; }
  [[nodiscard]] constexpr bool is_live() const { return is_live_; }
  // Of a variable that is a field of the record.
  [[nodiscard]] constexpr const Field& field() const { return *row_.field; }
  // Of a live node.
  [[nodiscard]] constexpr const LiveNode& live() const { return *row_.live; }
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

// In the order of their sections.
inline constexpr LiveNode kLiveNodes[] = {
    {.section = SectionId::kDevice,
     .kind = LiveNode::Kind::kNumberOrOne,
     .name = "FactoryDefault",
     .variable_path = "/sys/FactoryDefault"},
    {.section = SectionId::kDevice, .name = "DeviceModel", .variable_path = kModelNode},
    {.section = SectionId::kDevice, .name = "DeviceType", .variable_path = "/sys/DeviceType"},
    {.section = SectionId::kDevice,
     .name = "WirelessConcurrent",
     .variable_path = "/lan/WirelessConcurrent"},

    // Quirk "sxtendersite": only the node that is read is spelled so; the path that is told is not.
    {.section = SectionId::kSite, .name = "ConnStatus", .node = "/uplink/sxtendersite/connstatus"},

    {.section = SectionId::kRadio, .name = "ChannelUsing"},

    {.section = SectionId::kFirmware, .name = "Vendor"},
    {.section = SectionId::kFirmware, .name = "DeviceMAC"},
    {.section = SectionId::kFirmware, .name = "HwVersion"},
    {.section = SectionId::kFirmware, .name = "RegionCode"},
    {.section = SectionId::kFirmware, .name = "CurrFwVersion"},
    {.section = SectionId::kFirmware, .name = "CurrFwFileName"},
    {.section = SectionId::kFirmware, .name = "AccessKey"},
    // Quirk "model-name-lives-elsewhere": its path names a node of the firmware.
    {.section = SectionId::kFirmware, .name = "ModelName", .node = kModelNode},
    {.section = SectionId::kFirmware, .kind = LiveNode::Kind::kAddress, .name = "FwUpgradeURL"},

    {.section = SectionId::kSurvey,
     .kind = LiveNode::Kind::kNumber,
     .name = "SiteNo",
     .variable_path = Below(SectionId::kSurvey, kSiteCountNode)},

    {.section = SectionId::kSurveySite, .name = "WirelessType"},
    {.section = SectionId::kSurveySite, .name = "BSSID"},
    {.section = SectionId::kSurveySite, .name = "WirelessName"},
    {.section = SectionId::kSurveySite, .name = "EncryptionMode"},
    {.section = SectionId::kSurveySite, .name = "WirelessStrength"},
};

class VariableList {
 public:
  consteval VariableList& Add(SectionId section, bool in_record, FieldTable table) {
    for (const Field& field : table) {
      if (field.variable_kind != VariableKind::kNone) {
        rows_[size_++] = Variable(section, in_record, field);
      }
    }
    return *this;
  }
  consteval VariableList& Add(std::span<const LiveNode> nodes) {
    for (const LiveNode& live : nodes) {
      rows_[size_++] = Variable(live);
    }
    return *this;
  }

  [[nodiscard]] consteval std::size_t size() const { return size_; }

  template <std::size_t Size>
  [[nodiscard]] consteval std::array<Variable, Size> Sorted() const {
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
  list.Add(kLiveNodes);
  return list;
}

// All of them, for what is proved below and for the pages that are made of them. The library looks
// into the rows themselves.
inline constexpr std::array kVariables = CollectVariables().Sorted<CollectVariables().size()>();

constexpr bool IsNamed(TextView row, TextView name) {
  return row.size() == name.size() &&
         TextView::traits_type::compare(row.data(), name.data(), name.size()) == 0;
}

// The row of a variable; null when the table has none of that name.
constexpr const Field* FindField(FieldTable table, TextView name) {
  for (const Field& field : table) {
    if (field.variable_kind != VariableKind::kNone && IsNamed(field.element, name)) {
      return &field;
    }
  }
  return nullptr;
}

// One that does not exist when the section has no variable of that name.
constexpr Variable FindVariable(SectionId section, TextView name) {
  const settings::Section& row = settings::RowOf(section);
  if (const Field* const field = FindField(row.fields, name)) {
    return {section, false, *field};
  }
  if (const Field* const field = FindField(row.rules, name)) {
    return {section, true, *field};
  }
  for (const LiveNode& live : kLiveNodes) {
    if (live.section == section && IsNamed(live.name, name)) {
      return Variable(live);
    }
  }
  return {};
}

// Proof that no name stands twice in its section and that each one is found.
consteval bool AllAreFound() {
  for (const Variable& variable : kVariables) {
    const Variable found = FindVariable(variable.section(), variable.name());
    if (!found.exists() || found.is_live() != variable.is_live() ||
        found.in_record() != variable.in_record()) {
      return false;
    }
    if (found.is_live() ? &found.live() != &variable.live() : &found.field() != &variable.field()) {
      return false;
    }
  }
  return true;
}
#ifndef __SANITIZE_ADDRESS__  // in its builds no address is compared with null at compile time
static_assert(AllAreFound());
#endif

}  // namespace kio::variables

#endif
