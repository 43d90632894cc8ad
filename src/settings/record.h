// The settings record and what several rooms ask of it.
#ifndef KIO_SETTINGS_RECORD_H
#define KIO_SETTINGS_RECORD_H

#include <algorithm>

#include "kioapp/record.h"
#include "settings/keywords.h"
#include "settings/sections.h"

namespace kio::settings {

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

// Where the settings of a cloned network are kept.
inline constexpr const char* kClonedSiteNode = "/runtime/apcloninginfo/extendersite";

// The uplink's own section that goes with its hardware: a provider or an upstream network. kCount
// for hardware that has none, and for none at all.
SectionId HardwareSection();

// The fields of that section that a document holds; those that are verified and written; those that
// are dumped. A DSL uplink of either kind has a provider, and in format version 1.0 a circuit.
Group HardwareGroupRead();
Group HardwareGroupUsed();
Group HardwareGroupDumped();

// The fields of the uplink that go with its connection type.
Group ConnectionGroup();

// Sets the paths of the uplink's own sections from the uplink's.
void SetUplinkPaths();

}  // namespace kio::settings

#endif
