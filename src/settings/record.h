// The settings record and what several rooms ask of it.
#ifndef KIO_SETTINGS_RECORD_H
#define KIO_SETTINGS_RECORD_H

#include <algorithm>

#include "kioapp/record.h"
#include "platform/store.h"
#include "settings/keywords.h"

namespace kio::settings {

inline constexpr int kRadioCount = 2;
inline constexpr int kRuleCapacity = 40;
static_assert(sizeof(RssWlan::acRule) == kRuleCapacity * sizeof(RssAcRule));

// 100 x major + minor. The numbers come from documents: what does not fit wraps.
constexpr int CombinedVersion(int major, int minor) {
  return static_cast<int>(static_cast<unsigned>(major) * 100U + static_cast<unsigned>(minor));
}

// Whether the device speaks the older dialect.
inline bool IsVersion10() { return rssXmlData.specVer == CombinedVersion(1, 0); }

// Whether a version 1.0 device without a wireless uplink extends another network all the same.
inline bool IsExtender10() {
  return rssXmlData.upLink.hardwareTypeCode == kHardwareEthernet && IsVersion10() &&
         (rssXmlData.extenderEnbl == 1 || rssXmlData.extenderEnbl == 3);
}

// Whether the uplink is another wireless network.
inline bool HasSiteUplink() {
  return rssXmlData.upLink.hardwareTypeCode == kHardwareWireless || IsExtender10();
}

inline bool RadioExists(int radio) {
  return (radio == 0 ? rssXmlData.wlan24Feature : rssXmlData.wlan5Feature) != 0;
}

// Rules of a radio that the record really holds: the variables may set any number.
inline int HeldRules(const RssWlan& wlan) { return std::clamp(wlan.wlAcRuleNo, 0, kRuleCapacity); }

// Store nodes.
inline constexpr const char* kSurveyNode = "/uplink/extendersite/survey";
inline constexpr const char* kClonedSiteNode = "/runtime/apcloninginfo/extendersite";

// The store node of a radio, with `rest` behind it. The path is built in the caller's object.
class RadioPath : public platform::StorePath {
 public:
  explicit RadioPath(int radio, const char* rest = "");
};

// The word of WirelessTypeArray for a radio.
const char* RadioWord(int radio);

// Sets the paths of the uplink's own sections from the uplink's.
void SetUplinkPaths();

}  // namespace kio::settings

#endif
