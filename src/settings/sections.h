// The sections of the settings, one row each: where a section stands in a document, in the store,
// in the record and among the variables, and which fields it has. All code that walks the settings
// walks these rows.
#ifndef KIO_SETTINGS_SECTIONS_H
#define KIO_SETTINGS_SECTIONS_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "kioapp/record.h"
#include "platform/exported_data.h"
#include "platform/store.h"
#include "platform/text.h"
#include "settings/field.h"
#include "settings/fields_device.h"
#include "settings/fields_uplink.h"
#include "settings/fields_wlan.h"
#include "settings/keywords.h"

namespace kio::settings {

inline constexpr int kRadioCount = 2;
inline constexpr int kRuleCapacity = 40;
static_assert(sizeof(RssXmlData::wlan) == kRadioCount * sizeof(RssWlan) &&
              sizeof(RssWlan::acRule) == kRuleCapacity * sizeof(RssAcRule));

enum class SectionId : std::uint8_t {
  kDevice,
  kVersion,
  kUplink,
  kDsl,
  kApn,
  kSite,
  kRadio,
  kAccess,
  kRule,
  kSafety,
  // These have variables only: no document and no member of the record holds them.
  kFirmware,
  kSurvey,
  kSurveySite,
  kCount,
};

// A section of which there may be several: which radio's it is, and which rule or site.
struct SectionInstance {
  SectionId section = SectionId::kDevice;
  int radio = 0;
  int index = 0;  // from 0
};

// In texts, '*' stands for the radio's word, and '?' for each digit of an index.
struct Section {
  SectionId id = SectionId::kCount;
  SectionId parent = SectionId::kDevice;  // itself where there is none

  // The element, and the step of the paths under which a missing element is reported.
  platform::TextView element = {};
  // The step of the paths under which a faulty value is reported, when it is another.
  platform::TextView reported = {};
  // What the section's parser is called in the log.
  const char* parser = nullptr;

  // The prefix of the names of its variables, behind the prefix of its parent.
  platform::TextView name = {};
  // Where its nodes stand in the store.
  platform::TextView node = {};
  // The path that its variables tell instead; null when it is that one.
  const char* variable_path = nullptr;
  // Number of the store instance that index 0 stands for; 0 where there are no instances.
  int first_instance = 0;
  // What stands before the element in the document paths of its variables.
  platform::TextView list = {};

  bool of_radio = false;
  // Offset of the structure in the record, for the first radio and the first index, and the
  // distance from one index to the next.
  std::uint16_t offset = 0;
  std::uint16_t stride = 0;
  FieldTable fields = {};
  // Fields for the rules of its texts. Their members stand in the record itself.
  FieldTable rules = {};
  // The member that says whether the app may change the section and those below it; none where it
  // always may.
  Member configurable = {};
};

inline constexpr std::array kSections = {
    Section{.id = SectionId::kDevice,
            .element = "Device",
            .parser = "do_RssDevice_Parser",
            .fields = kDeviceFields,
            .rules = kDeviceRules},
    Section{.id = SectionId::kVersion,
            .parent = SectionId::kVersion,
            .element = "specVersion",
            .name = "Ver_",
            .variable_path = "/specversion",
            .fields = kVersionFields},
    // Quirk "uplink-has-two-names": missing elements are reported below "UpLinkConnection"; faulty
    // values below "Uplink".
    Section{.id = SectionId::kUplink,
            .element = "UpLinkConnection",
            .reported = "Uplink",
            .parser = "do_RssUpLink_Parser",
            .name = "Upl_",
            .node = "/uplink",
            .offset = offsetof(RssXmlData, upLink),
            .fields = kUplinkFields,
            .rules = kUplinkRules,
            .configurable = KIO_MEMBER(RssUpLink, configurable)},
    Section{.id = SectionId::kDsl,
            .parent = SectionId::kUplink,
            .element = "DSL",
            .parser = "do_RssISP_Parser",
            .name = "Dsl_",
            .node = "/uplink/dsl",
            .offset = offsetof(RssXmlData, upLink.dsl),
            .fields = kDslFields},
    // Quirk "uplink-asp": the path that variables tell has this spelling.
    Section{.id = SectionId::kApn,
            .parent = SectionId::kUplink,
            .element = "APN",
            .parser = "do_RssISP_Parser",
            .name = "Apn_",
            .node = "/uplink/apn",
            .variable_path = "/uplink/asp",
            .offset = offsetof(RssXmlData, upLink.apn),
            .fields = kApnFields},
    Section{.id = SectionId::kSite,
            .parent = SectionId::kUplink,
            .element = "ExtenderSite",
            .parser = "do_RssExtender_Parser",
            .name = "Ets_",
            .node = "/uplink/extendersite",
            .offset = offsetof(RssXmlData, upLink.extenderSite),
            .fields = kSiteFields},
    Section{.id = SectionId::kRadio,
            .element = "Wireless*",
            .parser = "do_RssWireless_Parser",
            .name = "Wl*_",
            .node = "/lan/wireless*:1",
            .of_radio = true,
            .offset = offsetof(RssXmlData, wlan),
            .fields = kWlanFields,
            .configurable = KIO_MEMBER(RssWlan, configurable)},
    Section{.id = SectionId::kAccess,
            .parent = SectionId::kRadio,
            .element = "AccessControl",
            .parser = "do_RssAccessCtl_Parser",
            .name = "Acl_",
            .node = "/lan/wireless*:1/accesscontrol",
            .of_radio = true,
            .offset = offsetof(RssXmlData, wlan),
            .fields = kAccessFields},
    // Quirk "rule-path-without-a-radio": the path that variables tell begins with the rule.
    Section{.id = SectionId::kRule,
            .parent = SectionId::kAccess,
            .element = "AcRule",
            .parser = "do_RssAcRule_Parser",
            .name = "R??_",
            .node = "/lan/wireless*:1/accesscontrol/acrule:",
            .variable_path = "/acrule:",
            .first_instance = 1,
            .list = "WlAcLists/",
            .of_radio = true,
            .offset = offsetof(RssXmlData, wlan[0].acRule),
            .stride = sizeof(RssAcRule),
            .fields = kRuleFields},
    Section{.id = SectionId::kSafety,
            .element = "SafetyVyr",
            .parser = "do_RssSafetyVyr_Parser",
            .name = "Vyr_",
            .node = "/safetyvyr",
            .offset = offsetof(RssXmlData, safetyVyr),
            .fields = kSafetyFields},
    Section{.id = SectionId::kFirmware,
            .parent = SectionId::kFirmware,
            .element = "FwUpgradeInfo",
            .name = "Ext_Fwu_",
            .node = "/fwupgradeinfo"},
    Section{.id = SectionId::kSurvey,
            .parent = SectionId::kSurvey,
            .element = "WirelessSiteSurvey",
            .name = "Ext_Ssv_",
            .node = "/wirelesssitesurvey"},
    // Quirk "sites-from-two": site 0 is instance 2 of the store, whereas rule 0 is instance 1.
    Section{.id = SectionId::kSurveySite,
            .parent = SectionId::kSurvey,
            .element = "Site",
            .name = "S??_",
            .node = "/wirelesssitesurvey/site:",
            .first_instance = 2},
};

// Whether nothing but the device stands above a section.
constexpr bool IsTopmost(const Section& row) {
  return row.parent == SectionId::kDevice || row.parent == row.id;
}

constexpr const Section& RowOf(SectionId id) { return kSections[static_cast<std::size_t>(id)]; }

// The structure that holds the section's fields.
inline void* StructureOf(const SectionInstance& instance) {
  const Section& row = RowOf(instance.section);
  const std::size_t radio = row.of_radio ? static_cast<std::size_t>(instance.radio) : 0;
  return reinterpret_cast<char*>(&Record()) + row.offset + radio * sizeof(RssWlan) +
         static_cast<std::size_t>(instance.index) * row.stride;
}

// One of a row's texts, with the radio's word for '*'.
struct RowText {
  RowText(platform::TextView text, int radio);

  void AppendTo(platform::TextBuffer& buffer) const {
    buffer.Append(before).Append(word).Append(after);
  }

  platform::TextView before;
  platform::TextView word = {};
  platform::TextView after = {};
};

// The path of a section's store node, with `rest` behind it. It is built in the caller's object.
class SectionPath : public platform::StorePath {
 public:
  explicit SectionPath(SectionId section, int radio = 0, const char* rest = "");

 private:
  SectionPath(const RowText& node, const char* rest)
      : StorePath(node.before, node.word, node.after, rest) {}
};

}  // namespace kio::settings

#endif
