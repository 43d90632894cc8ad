#include "sample_device.h"

#include <utility>

#include "memory_store.h"

namespace kio::bench {
namespace {

constexpr std::pair<const char*, const char*> kNodes[] = {
    {"/zentrolinks/specversion/major", "1"},
    {"/zentrolinks/specversion/minor", "1"},
    {"/zentrolinks/configurable", "1"},
    {"/zentrolinks/apcloning", "1"},
    {"/zentrolinks/easyroaming", "1"},
    {"/zentrolinks/easyroaminginfo", "off"},
    {"/zentrolinks/fwupgrade", "1"},
    {"/zentrolinks/safetyvyr", "1"},
    {"/zentrolinks/rsshttpport", "8080"},
    {"/zentrolinks/tempdirecory", "/tmp"},
    {"/zentrolinks/scriptdirecory", "/usr/libexec/router"},
    {"/sys/devicetype", "Router"},
    {"/sys/factorydefault", "1"},
    {"/sys/friendlyname", "Home router"},
    {"/sys/friendlyname_validate", "0,32,1"},
    {"/sys/routerenbl", "1"},
    {"/sys/user:1/password", "change-me-soon"},
    {"/sys/user:1/password_validate", "0,32,5,0,0, "},
    {"/uplink/configurable", "1"},
    {"/uplink/hardwaresupport", "Ethernet,VDSL,WWanAPN,WWan802.11"},
    {"/uplink/hardwaretype", "Ethernet"},
    {"/uplink/conntype", "DHCP"},
    {"/uplink/loginusername", ""},
    {"/uplink/loginusername_validate", "0,64,1"},
    {"/uplink/loginpassword", ""},
    {"/uplink/loginpassword_validate", "0,64,1"},
    {"/uplink/ip", "192.0.2.10"},
    {"/uplink/netmask", "255.255.255.0"},
    {"/uplink/gateway", "192.0.2.1"},
    {"/uplink/dns", "192.0.2.1"},
    {"/uplink/dsl/countryname", ""},
    {"/uplink/dsl/ispname", ""},
    {"/uplink/apn/countryname", ""},
    {"/uplink/apn/ispname", ""},
    {"/uplink/extendersite/survey", "0"},
    {"/uplink/extendersite/wirelesstype", "2.4"},
    {"/lan/wireless2.4:1/configurable", "1"},
    {"/lan/wireless2.4:1/wlenbl", "1"},
    {"/lan/wireless2.4:1/wlschedule", "0"},
    {"/lan/wireless2.4:1/wirelessbssid", "02:00:5E:10:24:01"},
    {"/lan/wireless2.4:1/wirelessname", "HomeNet"},
    {"/lan/wireless2.4:1/wirelessname_validate", "0,32,1"},
    {"/lan/wireless2.4:1/encryptionmode", "WPA2"},
    {"/lan/wireless2.4:1/encryptiontype", "AES"},
    {"/lan/wireless2.4:1/encryptionkey", "correct-horse-24"},
    {"/lan/wireless2.4:1/encryptionkey_validate", "0,64,0"},
    {"/lan/wireless2.4:1/country", "NO"},
    {"/lan/wireless2.4:1/channellist", "0,1,2,3,4,5,6,7,8,9,10,11,12,13"},
    {"/lan/wireless2.4:1/channel", "0"},
    {"/lan/wireless2.4:1/accesscontrol/wlacenbl", "0"},
    {"/lan/wireless2.4:1/accesscontrol/wlacmode", "0"},
    {"/lan/wireless5:1/configurable", "1"},
    {"/lan/wireless5:1/wlenbl", "1"},
    {"/lan/wireless5:1/wlschedule", "0"},
    {"/lan/wireless5:1/wirelessbssid", "02:00:5E:10:50:01"},
    {"/lan/wireless5:1/wirelessname", "HomeNet 5G"},
    {"/lan/wireless5:1/wirelessname_validate", "0,32,1"},
    {"/lan/wireless5:1/encryptionmode", "WPA2"},
    {"/lan/wireless5:1/encryptiontype", "AES"},
    {"/lan/wireless5:1/encryptionkey", "correct-horse-50"},
    {"/lan/wireless5:1/encryptionkey_validate", "0,64,0"},
    {"/lan/wireless5:1/country", "NO"},
    {"/lan/wireless5:1/channellist", "0,36,40,44,48,52,56,60,64,100,104,108,112"},
    {"/lan/wireless5:1/channel", "36"},
    {"/lan/wireless5:1/accesscontrol/wlacenbl", "0"},
    {"/lan/wireless5:1/accesscontrol/wlacmode", "0"},
    {"/safetyvyr/safetyvyrenbl", "1"},
    {"/safetyvyr/urldetectenbl", "0"},
    {"/safetyvyr/safetynotifyenbl", "0"},
    {"/safetyvyr/toolrecommendenbl", "0"},
};

}  // namespace

void StoreFactoryDevice() {
  MemoryStore& store = MemoryStore::Get();
  store.nodes.clear();
  for (const auto& [path, value] : kNodes) {
    store.nodes[path] = value;
  }
}

}  // namespace kio::bench
