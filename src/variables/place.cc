#include "variables/place.h"

#include "settings/record.h"

namespace kio::variables {
namespace {

using platform::TextBuffer;

struct SectionPath {
  Section section;
  TextView path;
  bool below_radio = false;
  // Number of the store instance that index 0 stands for; -1 where there are none.
  int first_instance = -1;
};

constexpr SectionPath kSectionPaths[] = {
    {Section::kDevice, ""},
    {Section::kVersion, "/specversion"},
    {Section::kUplink, "/uplink"},
    {Section::kDsl, "/uplink/dsl"},
    // Quirk "uplink-asp": the path has this spelling.
    {Section::kApn, "/uplink/asp"},
    {Section::kSite, "/uplink/extendersite"},
    {.section = Section::kRadio, .path = "", .below_radio = true},
    {.section = Section::kAccess, .path = "/accesscontrol", .below_radio = true},
    // Quirk "rule-path-without-a-radio": it begins with the rule.
    {.section = Section::kRule, .path = "/acrule", .first_instance = 1},
    {Section::kService, "/safetyvyr"},
    {Section::kFirmware, "/fwupgradeinfo"},
    {Section::kSurvey, "/wirelesssitesurvey"},
    // Quirk "sites-from-two": site 0 is instance 2 of the store, whereas rule 0 is instance 1.
    {.section = Section::kSurveySite, .path = "/wirelesssitesurvey/site", .first_instance = 2},
};

consteval bool InOrderOfSections() {
  int next = 0;
  for (const SectionPath& path : kSectionPaths) {
    if (static_cast<int>(path.section) != next++) {
      return false;
    }
  }
  return next == static_cast<int>(Section::kSurveySite) + 1;
}
static_assert(InOrderOfSections());

void AppendSection(TextBuffer& path, const Place& place) {
  const SectionPath& section = kSectionPaths[static_cast<int>(place.section)];
  if (section.below_radio) {
    path.Append(settings::RadioPath(place.radio).c_str());
  }
  path.Append(section.path);
  if (section.first_instance >= 0) {
    path.Append(':').AppendNumber(place.index + section.first_instance);
  }
}

TextView LocatedOf(const Variable& variable) {
  if (variable.field == nullptr) {
    return variable.live->located;
  }
  if (!variable.field->located.empty()) {
    return variable.field->located;
  }
  // The nodes of the device's own fields are whole paths.
  return variable.section == Section::kDevice ? variable.field->node : TextView();
}

}  // namespace

void AppendPath(TextBuffer& path, const Variable& variable, const Place& place) {
  AppendSection(path, place);
  const TextView located = LocatedOf(variable);
  if (!located.empty()) {
    path.Append(located);
  } else {
    path.Append('/').Append(variable.name);
  }
}

void* HolderOf(const Variable& variable, const Place& place) {
  switch (variable.holder) {
    case Holder::kRecord:
      return &rssXmlData;
    case Holder::kUplink:
      return &rssXmlData.upLink;
    case Holder::kDsl:
      return &rssXmlData.upLink.dsl;
    case Holder::kApn:
      return &rssXmlData.upLink.apn;
    case Holder::kSite:
      return &rssXmlData.upLink.extenderSite;
    case Holder::kRadio:
      return &rssXmlData.wlan[place.radio];
    case Holder::kRule:
      return &rssXmlData.wlan[place.radio].acRule[place.index];
    case Holder::kService:
      return &rssXmlData.safetyVyr;
  }
  return nullptr;
}

}  // namespace kio::variables
