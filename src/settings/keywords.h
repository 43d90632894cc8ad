// Keyword tables.
#ifndef KIO_SETTINGS_KEYWORDS_H
#define KIO_SETTINGS_KEYWORDS_H

namespace kio::settings {

// Codes: indexes of the words in the tables of xml.h.
enum EncryptionMode : int { kModeNone, kModeWep, kModeWpa, kModeWpaWpa2, kModeWpa2 };
enum EncryptionType : int { kTypeAuto, kTypeOpen, kTypeShared, kTypeTkip, kTypeAes, kTypeNotGiven };
enum ConnectionType : int { kConnDhcp, kConnStatic, kConnPppoe, kConnPppoa };
enum HardwareType : int {
  kHardwareEthernet,
  kHardwareAdsl,
  kHardwareVdsl,
  kHardwareWireless,
  kHardwareApn,
  kHardwareDsl
};

// The word of each radio in the names of elements and nodes.
inline constexpr const char* kRadioWords[] = {"2.4", "5"};

}  // namespace kio::settings

#endif
