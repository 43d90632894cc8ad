#include "settings_table.h"

#include <map>

namespace kio::properties {
namespace {

constexpr Setting kSettings[] = {
    {"/sys/friendlyname", "rss_DeviceName", "Device", "DeviceName", 127, Form::kText},
    {"/sys/user:1/password", "rss_DevicePwd", "Device", "DevicePwd", 127, Form::kText},
    {"/sys/routerenbl", "rss_RouterEnbl", "Device", "RouterEnbl", 0, Form::kNumber},
    {"/zentrolinks/easyroaminginfo", "rss_EasyRoaming", "Device", "EasyRoaming", 127, Form::kText},
    {"/uplink/hardwaretype", "rss_Upl_HardwareType", "Device/UpLinkConnection", "HardwareType", 31,
     Form::kWord},
    {"/uplink/conntype", "rss_Upl_ConnType", "Device/UpLinkConnection", "ConnType", 31,
     Form::kWord},
    {"/uplink/loginusername", "rss_Upl_LoginUserName", "Device/UpLinkConnection", "LoginUserName",
     127, Form::kText},
    {"/uplink/loginpassword", "rss_Upl_LoginPassword", "Device/UpLinkConnection", "LoginPassword",
     127, Form::kText},
    {"/uplink/ip", "rss_Upl_IP", "Device/UpLinkConnection", "IP", 15, Form::kText},
    {"/uplink/netmask", "rss_Upl_NetMask", "Device/UpLinkConnection", "NetMask", 15, Form::kText},
    {"/uplink/gateway", "rss_Upl_Gateway", "Device/UpLinkConnection", "Gateway", 15, Form::kText},
    {"/uplink/dns", "rss_Upl_DNS", "Device/UpLinkConnection", "DNS", 15, Form::kText},
    {"/uplink/dsl/countryname", "rss_Upl_Dsl_CountryName", "Device/UpLinkConnection/DSL",
     "CountryName", 127, Form::kText},
    {"/uplink/dsl/ispname", "rss_Upl_Dsl_IspName", "Device/UpLinkConnection/DSL", "IspName", 127,
     Form::kText},
    {"/uplink/apn/countryname", "rss_Upl_Apn_CountryName", "Device/UpLinkConnection/APN",
     "CountryName", 127, Form::kText},
    {"/uplink/apn/ispname", "rss_Upl_Apn_IspName", "Device/UpLinkConnection/APN", "IspName", 127,
     Form::kText},
    {"/uplink/dsl/vpi", "", "Device/UpLinkConnection/DSL", "VPI", 0, Form::kNumber},
    {"/uplink/dsl/vci", "", "Device/UpLinkConnection/DSL", "VCI", 0, Form::kNumber},
    {"/uplink/dsl/encapsulationmode", "", "Device/UpLinkConnection/DSL", "EncapsulationMode", 127,
     Form::kWord},
    {"/uplink/extendersite/survey", "rss_Upl_Ets_Survey", "Device/UpLinkConnection/ExtenderSite",
     "Survey", 0, Form::kNumber},
    {"/uplink/extendersite/connrefsitebssid", "rss_Upl_Ets_ConnRefSiteBSSID",
     "Device/UpLinkConnection/ExtenderSite", "ConnRefSiteBSSID", 17, Form::kText},
    {"/uplink/extendersite/wirelesstype", "rss_Upl_Ets_WirelessType",
     "Device/UpLinkConnection/ExtenderSite", "WirelessType", 31, Form::kWord},
    {"/uplink/extendersite/wirelessname", "rss_Upl_Ets_WirelessName",
     "Device/UpLinkConnection/ExtenderSite", "WirelessName", 17, Form::kText},
    {"/uplink/extendersite/encryptionkey", "rss_Upl_Ets_EncryptionKey",
     "Device/UpLinkConnection/ExtenderSite", "EncryptionKey", 17, Form::kText},
    {"/lan/wireless2.4:1/wlenbl", "rss_Wl2_WlEnbl", "Device/Wireless2.4", "WlEnbl", 0,
     Form::kNumber},
    {"/lan/wireless2.4:1/wlschedule", "rss_Wl2_WlSchedule", "Device/Wireless2.4", "WlSchedule", 0,
     Form::kNumber},
    {"/lan/wireless2.4:1/wirelessname", "rss_Wl2_WirelessName", "Device/Wireless2.4",
     "WirelessName", 127, Form::kText},
    {"/lan/wireless2.4:1/encryptionmode", "rss_Wl2_EncryptionMode", "Device/Wireless2.4",
     "EncryptionMode", 31, Form::kWord},
    {"/lan/wireless2.4:1/encryptiontype", "rss_Wl2_EncryptionType", "Device/Wireless2.4",
     "EncryptionType", 31, Form::kWord},
    {"/lan/wireless2.4:1/encryptionkey", "rss_Wl2_EncryptionKey", "Device/Wireless2.4",
     "EncryptionKey", 31, Form::kText},
    {"/lan/wireless2.4:1/channel", "rss_Wl2_Channel", "Device/Wireless2.4", "Channel", 31,
     Form::kText},
    {"/lan/wireless2.4:1/accesscontrol/wlacenbl", "rss_Wl2_Acl_WlAcEnbl",
     "Device/Wireless2.4/AccessControl", "WlAcEnbl", 0, Form::kNumber},
    {"/lan/wireless2.4:1/accesscontrol/wlacmode", "rss_Wl2_Acl_WlAcMode",
     "Device/Wireless2.4/AccessControl", "WlAcMode", 0, Form::kNumber},
    {"/lan/wireless5:1/wlenbl", "rss_Wl5_WlEnbl", "Device/Wireless5", "WlEnbl", 0, Form::kNumber},
    {"/lan/wireless5:1/wlschedule", "rss_Wl5_WlSchedule", "Device/Wireless5", "WlSchedule", 0,
     Form::kNumber},
    {"/lan/wireless5:1/wirelessname", "rss_Wl5_WirelessName", "Device/Wireless5", "WirelessName",
     127, Form::kText},
    {"/lan/wireless5:1/encryptionmode", "rss_Wl5_EncryptionMode", "Device/Wireless5",
     "EncryptionMode", 31, Form::kWord},
    {"/lan/wireless5:1/encryptiontype", "rss_Wl5_EncryptionType", "Device/Wireless5",
     "EncryptionType", 31, Form::kWord},
    {"/lan/wireless5:1/encryptionkey", "rss_Wl5_EncryptionKey", "Device/Wireless5", "EncryptionKey",
     31, Form::kText},
    {"/lan/wireless5:1/channel", "rss_Wl5_Channel", "Device/Wireless5", "Channel", 31, Form::kText},
    {"/lan/wireless5:1/accesscontrol/wlacenbl", "rss_Wl5_Acl_WlAcEnbl",
     "Device/Wireless5/AccessControl", "WlAcEnbl", 0, Form::kNumber},
    {"/lan/wireless5:1/accesscontrol/wlacmode", "rss_Wl5_Acl_WlAcMode",
     "Device/Wireless5/AccessControl", "WlAcMode", 0, Form::kNumber},
    {"/safetyvyr/safetyvyrenbl", "rss_Vyr_SafetyVyrEnbl", "Device/SafetyVyr", "SafetyVyrEnbl", 0,
     Form::kNumber},
    {"/safetyvyr/urldetectenbl", "rss_Vyr_UrlDetectEnbl", "Device/SafetyVyr", "UrlDetectEnbl", 0,
     Form::kNumber},
    {"/safetyvyr/safetynotifyenbl", "rss_Vyr_SafetyNotifyEnbl", "Device/SafetyVyr",
     "SafetyNotifyEnbl", 0, Form::kNumber},
    {"/safetyvyr/toolrecommendenbl", "rss_Vyr_ToolRecommendEnbl", "Device/SafetyVyr",
     "ToolRecommendEnbl", 0, Form::kNumber},
};

}  // namespace

std::span<const Setting> Settings() { return kSettings; }

const Setting* SettingOf(const std::string& node) {
  static const std::map<std::string, const Setting*> by_node = [] {
    std::map<std::string, const Setting*> map;
    for (const Setting& setting : kSettings) {
      map[setting.node] = &setting;
    }
    return map;
  }();
  const auto found = by_node.find(node);
  return found == by_node.end() ? nullptr : found->second;
}

}  // namespace kio::properties
