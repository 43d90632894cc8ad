// All variables: the rows of the settings record that are offered as such, and what is read live
// from the store. Sorted, so that a name is found in a few comparisons.
#ifndef KIO_VARIABLES_TABLE_H
#define KIO_VARIABLES_TABLE_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/text.h"
#include "settings/field.h"
#include "settings/field_tables.h"

namespace kio::variables {

using platform::TextView;
using settings::Field;
using settings::Offer;

// Sections, as the parts of a name before its last select them.
enum class Section : std::uint8_t {
  kDevice,      // rss_
  kVersion,     // rss_Ver_
  kUplink,      // rss_Upl_
  kDsl,         // rss_Upl_Dsl_
  kApn,         // rss_Upl_Apn_
  kSite,        // rss_Upl_Ets_
  kRadio,       // rss_Wl2_, rss_Wl5_
  kAccess,      // rss_Wl2_Acl_
  kRule,        // rss_Wl2_Acl_R<dd>_
  kService,     // rss_Vyr_
  kFirmware,    // rss_Ext_Fwu_
  kSurvey,      // rss_Ext_Ssv_
  kSurveySite,  // rss_Ext_Ssv_S<dd>_
};

// The structures that hold fields.
enum class Holder : std::uint8_t { kRecord, kUplink, kDsl, kApn, kSite, kRadio, kRule, kService };

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
  // The path below the section's; empty for a slash and the name.
  TextView located = {};
  // The whole path of the node that is read, when it is another; terminated.
  TextView node = {};
};

// In both kinds the name's text is terminated.
struct Variable {
  Section section = Section::kDevice;
  Holder holder = Holder::kRecord;
  TextView name;
  const Field* field = nullptr;    // one of the record's,
  const LiveNode* live = nullptr;  // or else live
};

inline constexpr LiveNode kLiveDevice[] = {
    {.name = "FactoryDefault",
     .kind = LiveNode::Kind::kNumberOrOne,
     .located = "/sys/FactoryDefault"},
    {.name = "DeviceModel", .located = "/sys/modelnumber"},
    {.name = "DeviceType", .located = "/sys/DeviceType"},
    {.name = "WirelessConcurrent", .located = "/lan/WirelessConcurrent"},
};

inline constexpr LiveNode kLiveSite[] = {
    // Quirk "sxtendersite": the node that is read has this spelling, the path given has not.
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
    {.name = "ModelName", .node = "/sys/modelnumber"},
    {.name = "FwUpgradeURL", .kind = LiveNode::Kind::kAddress},
};

inline constexpr LiveNode kLiveSurvey[] = {
    {.name = "SiteNo", .kind = LiveNode::Kind::kNumber, .located = "/site#"},
};

inline constexpr LiveNode kLiveSurveySite[] = {
    {.name = "WirelessType"},     {.name = "BSSID"},
    {.name = "WirelessName"},     {.name = "EncryptionMode"},
    {.name = "WirelessStrength"},
};

constexpr bool Precedes(const Variable& a, const Variable& b) {
  return a.section != b.section ? a.section < b.section : a.name < b.name;
}

class VariableList {
 public:
  template <std::size_t N>
  constexpr VariableList& Add(Section section, Holder holder, const Field (&table)[N]) {
    for (const Field& field : table) {
      if (field.offer != Offer::kNone) {
        rows_[size_++] = {section, holder, field.element, &field, nullptr};
      }
    }
    return *this;
  }
  template <std::size_t N>
  constexpr VariableList& Add(Section section, const LiveNode (&table)[N]) {
    for (const LiveNode& live : table) {
      rows_[size_++] = {section, Holder::kRecord, live.name, nullptr, &live};
    }
    return *this;
  }

  [[nodiscard]] constexpr std::size_t size() const { return size_; }

  template <std::size_t Size>
  [[nodiscard]] constexpr std::array<Variable, Size> Sorted() const {
    std::array<Variable, Size> sorted;
    std::copy_n(rows_.begin(), Size, sorted.begin());
    std::sort(sorted.begin(), sorted.end(), Precedes);
    return sorted;
  }

 private:
  std::array<Variable, 128> rows_;
  std::size_t size_ = 0;
};

consteval VariableList CollectVariables() {
  return VariableList()
      .Add(Section::kDevice, Holder::kRecord, settings::kDeviceFields)
      .Add(Section::kDevice, Holder::kRecord, settings::kDeviceRules)
      .Add(Section::kDevice, kLiveDevice)
      .Add(Section::kVersion, Holder::kRecord, settings::kVersionFields)
      .Add(Section::kUplink, Holder::kUplink, settings::kUplinkFields)
      .Add(Section::kUplink, Holder::kRecord, settings::kUplinkRules)
      .Add(Section::kDsl, Holder::kDsl, settings::kIspFields)
      .Add(Section::kApn, Holder::kApn, settings::kIspFields)
      .Add(Section::kSite, Holder::kSite, settings::kSiteFields)
      .Add(Section::kSite, kLiveSite)
      .Add(Section::kRadio, Holder::kRadio, settings::kWlanFields)
      .Add(Section::kRadio, kLiveRadio)
      .Add(Section::kAccess, Holder::kRadio, settings::kAccessFields)
      .Add(Section::kRule, Holder::kRule, settings::kRuleFields)
      .Add(Section::kService, Holder::kService, settings::kSafetyFields)
      .Add(Section::kFirmware, kLiveFirmware)
      .Add(Section::kSurvey, kLiveSurvey)
      .Add(Section::kSurveySite, kLiveSurveySite);
}

inline constexpr std::array kVariables = CollectVariables().Sorted<CollectVariables().size()>();

constexpr const Variable* FindVariable(Section section, TextView name) {
  const Variable wanted{.section = section, .name = name};
  const auto* const found =
      std::lower_bound(kVariables.begin(), kVariables.end(), wanted, Precedes);
  return found != kVariables.end() && found->section == section && found->name == name ? found
                                                                                       : nullptr;
}

// Proof that no name stands twice in its section and that each one is found.
consteval bool AllAreFound() {
  for (const Variable& variable : kVariables) {
    if (FindVariable(variable.section, variable.name) != &variable) {
      return false;
    }
  }
  return true;
}
static_assert(AllAreFound());

}  // namespace kio::variables

#endif
