#include "settings/keywords.h"

#include <cstring>

#include "kioapp/xml.h"
#include "platform/text.h"

namespace kio::settings {
namespace {

// Ends a table. It is an empty text with a '_' behind its terminator, which no word has.
constexpr const char* kTableEnd = "\0_";
// The empty word. It has a second terminator, so that there is a character behind the first one.
constexpr const char* kEmptyWord = "\0";

bool IsTableEnd(const char* word) { return word[0] == '\0' && word[1] == '_'; }

}  // namespace

constinit const char* const kDeviceTypes[] = {"AP",       "Router",  "Extender",
                                              "Repeater", "Hotspot", kTableEnd};
constinit const char* const kEncryptionTypes[] = {"AUTO", "OPEN",     "SHARED", "TKIP",
                                                  "AES",  kEmptyWord, kTableEnd};
constinit const char* const kEncryptionModes[] = {"None",    "WEP",  "WPA",
                                                  "WPAWPA2", "WPA2", kTableEnd};
constinit const char* const kHardwareTypes[] = {"Ethernet", "ADSL", "VDSL",   "WWan802.11",
                                                "WWanAPN",  "DSL",  kTableEnd};
constinit const char* const kRadioTypes[] = {kRadioWords[0], kRadioWords[1], kTableEnd};
constinit const char* const kConnectionTypes[] = {"DHCP", "Static", "PPPoE", "PPPoA", kTableEnd};
constinit const char* const kEncapsulationModes[] = {"LLC", "VcMux", kTableEnd};

// A table holds its words, one for each code, and the end.
static_assert(std::size(kEncryptionTypes) == kTypeNotGiven + 2);
static_assert(std::size(kEncryptionModes) == kModeWpa2 + 2);
static_assert(std::size(kConnectionTypes) == kConnPppoa + 2);
static_assert(std::size(kHardwareTypes) == kHardwareDsl + 2);

}  // namespace kio::settings

extern "C" {
[[gnu::alias("kio_kDeviceTypes")]] extern const char* const
    DeviceTypeArray[std::size(kio::settings::kDeviceTypes)];
[[gnu::alias("kio_kEncryptionTypes")]] extern const char* const
    WlanEncrypTypeArray[std::size(kio::settings::kEncryptionTypes)];
[[gnu::alias("kio_kEncryptionModes")]] extern const char* const
    WlanEncrypModeArray[std::size(kio::settings::kEncryptionModes)];
[[gnu::alias("kio_kHardwareTypes")]] extern const char* const
    HardwareTypeArray[std::size(kio::settings::kHardwareTypes)];
[[gnu::alias("kio_kRadioTypes")]] extern const char* const
    WirelessTypeArray[std::size(kio::settings::kRadioTypes)];
[[gnu::alias("kio_kConnectionTypes")]] extern const char* const
    ConnTypeArray[std::size(kio::settings::kConnectionTypes)];
[[gnu::alias("kio_kEncapsulationModes")]] extern const char* const
    ADslEncapModeArray[std::size(kio::settings::kEncapsulationModes)];
}

int SearchKeyArray(char* word, const char* const table[]) {
  if (word == nullptr || table == nullptr) {
    return -1;
  }
  for (int code = 0; !kio::settings::IsTableEnd(table[code]); ++code) {
    const std::size_t length = std::strlen(table[code]);
    if (kio::platform::StartsWithFold(word, {table[code], length}) && word[length] == '\0') {
      std::memcpy(word, table[code], length);
      return code;
    }
  }
  return -1;
}
