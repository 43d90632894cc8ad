#include "variables/place.h"

#include "settings/record.h"

namespace kio::variables {
namespace {

using platform::TextBuffer;

void AppendRadio(TextBuffer& path, int radio) { path.Append(settings::RadioPath(radio).c_str()); }

void AppendSection(TextBuffer& path, const Place& place) {
  switch (place.section) {
    case Section::kDevice:
      break;
    case Section::kVersion:
      path.Append("/specversion");
      break;
    case Section::kUplink:
      path.Append("/uplink");
      break;
    case Section::kDsl:
      path.Append("/uplink/dsl");
      break;
    case Section::kApn:
      // Quirk "uplink-asp": the path has this spelling.
      path.Append("/uplink/asp");
      break;
    case Section::kSite:
      path.Append("/uplink/extendersite");
      break;
    case Section::kRadio:
      AppendRadio(path, place.radio);
      break;
    case Section::kAccess:
      AppendRadio(path, place.radio);
      path.Append("/accesscontrol");
      break;
    case Section::kRule:
      // Quirk "rule-path-without-a-radio": it begins with the rule.
      path.Append("/acrule:").AppendNumber(place.index + 1);
      break;
    case Section::kService:
      path.Append("/safetyvyr");
      break;
    case Section::kFirmware:
      path.Append("/fwupgradeinfo");
      break;
    case Section::kSurvey:
      path.Append("/wirelesssitesurvey");
      break;
    case Section::kSurveySite:
      // Quirk "sites-from-two": site 0 is instance 2 of the store, whereas rule 0 is instance 1.
      path.Append("/wirelesssitesurvey/site:").AppendNumber(place.index + 2);
      break;
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
