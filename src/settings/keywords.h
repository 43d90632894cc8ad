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

// The tables of xml.h, by names of the library's own: the exported ones may be bound to something
// else in the host that is called so.
#pragma GCC visibility push(hidden)
extern const char* const kDeviceTypes[] __asm__("kio_kDeviceTypes");
extern const char* const kEncryptionTypes[] __asm__("kio_kEncryptionTypes");
extern const char* const kEncryptionModes[] __asm__("kio_kEncryptionModes");
extern const char* const kHardwareTypes[] __asm__("kio_kHardwareTypes");
extern const char* const kRadioTypes[] __asm__("kio_kRadioTypes");
extern const char* const kConnectionTypes[] __asm__("kio_kConnectionTypes");
extern const char* const kEncapsulationModes[] __asm__("kio_kEncapsulationModes");
#pragma GCC visibility pop

}  // namespace kio::settings

#endif
