// The settings record and what several rooms ask of it.
#ifndef KIO_SETTINGS_RECORD_H
#define KIO_SETTINGS_RECORD_H

#include <algorithm>

#include "kioapp/record.h"
#include "platform/exported_data.h"
#include "settings/keywords.h"
#include "settings/sections.h"

namespace kio::settings {

// 100 x major + minor. The numbers come from documents: what does not fit wraps.
constexpr int CombinedVersion(int major, int minor) {
  return static_cast<int>(static_cast<unsigned>(major) * 100U + static_cast<unsigned>(minor));
}

// Whether the device speaks the older dialect.
inline bool IsVersion10() { return Record().specVer == CombinedVersion(1, 0); }

// Whether a device of version 1.0 extends another network although its uplink is no wireless one.
inline bool IsExtender10() {
  return Record().upLink.hardwareTypeCode == kHardwareEthernet && IsVersion10() &&
         (Record().extenderEnbl == 1 || Record().extenderEnbl == 3);
}

// Whether the uplink is another wireless network.
inline bool HasSiteUplink() {
  return Record().upLink.hardwareTypeCode == kHardwareWireless || IsExtender10();
}

inline RssWlan& RadioOf(int radio) {
  RssWlan* wlan = &Record().wlan[radio];
#ifdef KIO_FOR_SIZE
  // Otherwise the compiler works the address out again for each use.
  __asm__("" : "+r"(wlan));
#endif
  return *wlan;
}

inline bool RadioExists(int radio) {
  return (radio == 0 ? Record().wlan24Feature : Record().wlan5Feature) != 0;
}

// How many rules of a radio the record holds: the variables may set any number.
inline int HeldRules(const RssWlan& wlan) { return std::clamp(wlan.wlAcRuleNo, 0, kRuleCapacity); }

// Below it the settings of a cloned network are kept.
inline constexpr const char* kClonedSiteNode = "/runtime/apcloninginfo/extendersite";

// The section that goes with the uplink's hardware: a provider or an upstream network. kCount for
// hardware that has none, and for unknown hardware.
SectionId HardwareSection();

// The group of its fields that a document holds, the group that is verified and written, and the
// group that is dumped. A DSL uplink of either kind has a provider, and in format version 1.0 a
// circuit.
Group HardwareGroupRead();
Group HardwareGroupUsed();
Group HardwareGroupDumped();

// The group of the uplink's fields that go with its connection type.
Group ConnectionGroup();

// Sets the paths of the sections below the uplink from the uplink's path.
void SetUplinkPaths();

}  // namespace kio::settings

#endif
