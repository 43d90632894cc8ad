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
}  // namespace kio::settings

using kio::settings::kEmptyWord;
using kio::settings::kTableEnd;

const char* const DeviceTypeArray[] = {"AP",       "Router",  "Extender",
                                       "Repeater", "Hotspot", kTableEnd};
const char* const WlanEncrypTypeArray[] = {"AUTO", "OPEN",     "SHARED", "TKIP",
                                           "AES",  kEmptyWord, kTableEnd};
const char* const WlanEncrypModeArray[] = {"None", "WEP", "WPA", "WPAWPA2", "WPA2", kTableEnd};
const char* const HardwareTypeArray[] = {"Ethernet", "ADSL", "VDSL",   "WWan802.11",
                                         "WWanAPN",  "DSL",  kTableEnd};
const char* const WirelessTypeArray[] = {kio::settings::kRadioWords[0],
                                         kio::settings::kRadioWords[1], kTableEnd};
const char* const ConnTypeArray[] = {"DHCP", "Static", "PPPoE", "PPPoA", kTableEnd};
const char* const ADslEncapModeArray[] = {"LLC", "VcMux", kTableEnd};

namespace kio::settings {

// A table holds its words, one for each code, and the end.
static_assert(std::size(WlanEncrypTypeArray) == kTypeNotGiven + 2);
static_assert(std::size(WlanEncrypModeArray) == kModeWpa2 + 2);
static_assert(std::size(ConnTypeArray) == kConnPppoa + 2);
static_assert(std::size(HardwareTypeArray) == kHardwareDsl + 2);

}  // namespace kio::settings

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
