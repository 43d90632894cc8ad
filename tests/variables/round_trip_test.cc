// Every variable has one path, and every path of theirs one name.
#include <gtest/gtest.h>

#include <string>

#include "variables/conversion.h"

namespace kio::test {
namespace {

struct NameAndPath {
  const char* name;
  const char* path;
};

constexpr NameAndPath kPairs[] = {
    {"rss_EasyRoaming", "/Device/EasyRoaming"},
    {"rss_DeviceName", "/Device/DeviceName"},
    {"rss_RouterEnbl", "/Device/RouterEnbl"},
    {"rss_DevicePwd", "/Device/DevicePwd"},
    {"rss_FactoryDefault", "/Device/FactoryDefault"},
    {"rss_DeviceModel", "/Device/DeviceModel"},
    {"rss_DeviceType", "/Device/DeviceType"},
    {"rss_WirelessConcurrent", "/Device/WirelessConcurrent"},
    {"rss_DeviceName_Validate", "/Device/DeviceName_Validate"},
    {"rss_DevicePwd_Validate", "/Device/DevicePwd_Validate"},
    {"rss_Ver_major", "/specVersion/major"},
    {"rss_Ver_minor", "/specVersion/minor"},
    {"rss_Upl_HardwareType", "/Device/UpLinkConnection/HardwareType"},
    {"rss_Upl_ConnType", "/Device/UpLinkConnection/ConnType"},
    {"rss_Upl_LoginUserName", "/Device/UpLinkConnection/LoginUserName"},
    {"rss_Upl_LoginPassword", "/Device/UpLinkConnection/LoginPassword"},
    {"rss_Upl_IP", "/Device/UpLinkConnection/IP"},
    {"rss_Upl_NetMask", "/Device/UpLinkConnection/NetMask"},
    {"rss_Upl_Gateway", "/Device/UpLinkConnection/Gateway"},
    {"rss_Upl_DNS", "/Device/UpLinkConnection/DNS"},
    {"rss_Upl_Configurable", "/Device/UpLinkConnection/Configurable"},
    {"rss_Upl_HardwareSupport", "/Device/UpLinkConnection/HardwareSupport"},
    {"rss_Upl_LoginUserName_Validate", "/Device/UpLinkConnection/LoginUserName_Validate"},
    {"rss_Upl_LoginPassword_Validate", "/Device/UpLinkConnection/LoginPassword_Validate"},
    {"rss_Upl_Ets_Survey", "/Device/UpLinkConnection/ExtenderSite/Survey"},
    {"rss_Upl_Ets_ConnRefSiteBSSID", "/Device/UpLinkConnection/ExtenderSite/ConnRefSiteBSSID"},
    {"rss_Upl_Ets_WirelessType", "/Device/UpLinkConnection/ExtenderSite/WirelessType"},
    {"rss_Upl_Ets_WirelessName", "/Device/UpLinkConnection/ExtenderSite/WirelessName"},
    {"rss_Upl_Ets_EncryptionKey", "/Device/UpLinkConnection/ExtenderSite/EncryptionKey"},
    {"rss_Upl_Ets_ConnStatus", "/Device/UpLinkConnection/ExtenderSite/ConnStatus"},
    {"rss_Upl_Dsl_CountryName", "/Device/UpLinkConnection/DSL/CountryName"},
    {"rss_Upl_Dsl_IspName", "/Device/UpLinkConnection/DSL/IspName"},
    {"rss_Upl_Apn_CountryName", "/Device/UpLinkConnection/APN/CountryName"},
    {"rss_Upl_Apn_IspName", "/Device/UpLinkConnection/APN/IspName"},
    {"rss_Wl2_WlEnbl", "/Device/Wireless2.4/WlEnbl"},
    {"rss_Wl2_WlSchedule", "/Device/Wireless2.4/WlSchedule"},
    {"rss_Wl2_WirelessName", "/Device/Wireless2.4/WirelessName"},
    {"rss_Wl2_EncryptionMode", "/Device/Wireless2.4/EncryptionMode"},
    {"rss_Wl2_EncryptionType", "/Device/Wireless2.4/EncryptionType"},
    {"rss_Wl2_EncryptionKey", "/Device/Wireless2.4/EncryptionKey"},
    {"rss_Wl2_Channel", "/Device/Wireless2.4/Channel"},
    {"rss_Wl2_WirelessBSSID", "/Device/Wireless2.4/WirelessBSSID"},
    {"rss_Wl2_Country", "/Device/Wireless2.4/Country"},
    {"rss_Wl2_ChannelList", "/Device/Wireless2.4/ChannelList"},
    {"rss_Wl2_ChannelUsing", "/Device/Wireless2.4/ChannelUsing"},
    {"rss_Wl2_WirelessName_Validate", "/Device/Wireless2.4/WirelessName_Validate"},
    {"rss_Wl2_EncryptionKey_Validate", "/Device/Wireless2.4/EncryptionKey_Validate"},
    {"rss_Wl2_Acl_WlAcEnbl", "/Device/Wireless2.4/AccessControl/WlAcEnbl"},
    {"rss_Wl2_Acl_WlAcMode", "/Device/Wireless2.4/AccessControl/WlAcMode"},
    {"rss_Wl2_Acl_AcRuleNo", "/Device/Wireless2.4/AccessControl/WlAcLists/AcRule#"},
    {"rss_Wl2_Acl_R00_Active", "/Device/Wireless2.4/AccessControl/WlAcLists/AcRule:00/Active"},
    {"rss_Wl2_Acl_R03_MAC", "/Device/Wireless2.4/AccessControl/WlAcLists/AcRule:03/MAC"},
    {"rss_Wl5_WlEnbl", "/Device/Wireless5/WlEnbl"},
    {"rss_Wl5_WlSchedule", "/Device/Wireless5/WlSchedule"},
    {"rss_Wl5_WirelessName", "/Device/Wireless5/WirelessName"},
    {"rss_Wl5_EncryptionMode", "/Device/Wireless5/EncryptionMode"},
    {"rss_Wl5_EncryptionType", "/Device/Wireless5/EncryptionType"},
    {"rss_Wl5_EncryptionKey", "/Device/Wireless5/EncryptionKey"},
    {"rss_Wl5_Channel", "/Device/Wireless5/Channel"},
    {"rss_Wl5_WirelessBSSID", "/Device/Wireless5/WirelessBSSID"},
    {"rss_Wl5_Country", "/Device/Wireless5/Country"},
    {"rss_Wl5_ChannelList", "/Device/Wireless5/ChannelList"},
    {"rss_Wl5_ChannelUsing", "/Device/Wireless5/ChannelUsing"},
    {"rss_Wl5_WirelessName_Validate", "/Device/Wireless5/WirelessName_Validate"},
    {"rss_Wl5_EncryptionKey_Validate", "/Device/Wireless5/EncryptionKey_Validate"},
    {"rss_Wl5_Acl_WlAcEnbl", "/Device/Wireless5/AccessControl/WlAcEnbl"},
    {"rss_Wl5_Acl_WlAcMode", "/Device/Wireless5/AccessControl/WlAcMode"},
    {"rss_Wl5_Acl_AcRuleNo", "/Device/Wireless5/AccessControl/WlAcLists/AcRule#"},
    {"rss_Wl5_Acl_R39_Active", "/Device/Wireless5/AccessControl/WlAcLists/AcRule:39/Active"},
    {"rss_Wl5_Acl_R17_MAC", "/Device/Wireless5/AccessControl/WlAcLists/AcRule:17/MAC"},
    {"rss_Vyr_SafetyVyrEnbl", "/Device/SafetyVyr/SafetyVyrEnbl"},
    {"rss_Vyr_UrlDetectEnbl", "/Device/SafetyVyr/UrlDetectEnbl"},
    {"rss_Vyr_SafetyNotifyEnbl", "/Device/SafetyVyr/SafetyNotifyEnbl"},
    {"rss_Vyr_ToolRecommendEnbl", "/Device/SafetyVyr/ToolRecommendEnbl"},
    {"rss_Ext_Fwu_Vendor", "/FwUpgradeInfo/Vendor"},
    {"rss_Ext_Fwu_ModelName", "/FwUpgradeInfo/ModelName"},
    {"rss_Ext_Fwu_DeviceMAC", "/FwUpgradeInfo/DeviceMAC"},
    {"rss_Ext_Fwu_HwVersion", "/FwUpgradeInfo/HwVersion"},
    {"rss_Ext_Fwu_RegionCode", "/FwUpgradeInfo/RegionCode"},
    {"rss_Ext_Fwu_CurrFwVersion", "/FwUpgradeInfo/CurrFwVersion"},
    {"rss_Ext_Fwu_CurrFwFileName", "/FwUpgradeInfo/CurrFwFileName"},
    {"rss_Ext_Fwu_AccessKey", "/FwUpgradeInfo/AccessKey"},
    {"rss_Ext_Fwu_FwUpgradeURL", "/FwUpgradeInfo/FwUpgradeURL"},
    {"rss_Ext_Ssv_SiteNo", "/WirelessSiteSurvey/Site#"},
    {"rss_Ext_Ssv_S00_WirelessType", "/WirelessSiteSurvey/Site:00/WirelessType"},
    {"rss_Ext_Ssv_S07_BSSID", "/WirelessSiteSurvey/Site:07/BSSID"},
    {"rss_Ext_Ssv_S12_WirelessName", "/WirelessSiteSurvey/Site:12/WirelessName"},
    {"rss_Ext_Ssv_S50_EncryptionMode", "/WirelessSiteSurvey/Site:50/EncryptionMode"},
    {"rss_Ext_Ssv_S99_WirelessStrength", "/WirelessSiteSurvey/Site:99/WirelessStrength"},
    {"rss_Ext_Apc_WirelessType", "/APCloningInfo/WirelessType"},
    {"rss_Ext_Vyr_Version", "/SafetyVyrInfo/Version"},
    {"rss_Ext_Dsl_IspName", "/DslIspList/IspName"},
    {"rss_Ext_Apn_IspName", "/ApnIspList/IspName"},
    {"rss_Act_SiteSurvey", "/Device/Act_SiteSurvey"},
    {"rss_Act_SetRssVars", "/Device/Act_SetRssVars"},
};

TEST(RoundTripTest, NamesBecomeTheirPaths) {
  for (const NameAndPath& pair : kPairs) {
    EXPECT_EQ(ToPath(pair.name), pair.path);
  }
}

TEST(RoundTripTest, PathsBecomeTheirNames) {
  for (const NameAndPath& pair : kPairs) {
    EXPECT_EQ(ToName(pair.path), pair.name);
  }
}

TEST(RoundTripTest, PathsComeBackFromTheirNames) {
  for (const NameAndPath& pair : kPairs) {
    EXPECT_EQ(ToPath(ToName(pair.path).value_or("")), pair.path);
    EXPECT_EQ(ToName(ToPath(pair.name).value_or("")), pair.name);
  }
}

TEST(RoundTripTest, EveryIndexComesBack) {
  for (int index = 0; index < 100; ++index) {
    const std::string digits = {static_cast<char>('0' + index / 10),
                                static_cast<char>('0' + index % 10)};
    const std::string rule =
        "/Device/Wireless2.4/AccessControl/WlAcLists/AcRule:" + digits + "/MAC";
    EXPECT_EQ(ToName(rule), "rss_Wl2_Acl_R" + digits + "_MAC");
    EXPECT_EQ(ToPath("rss_Wl2_Acl_R" + digits + "_MAC"), rule);
    const std::string site = "/WirelessSiteSurvey/Site:" + digits + "/BSSID";
    EXPECT_EQ(ToName(site), "rss_Ext_Ssv_S" + digits + "_BSSID");
    EXPECT_EQ(ToPath("rss_Ext_Ssv_S" + digits + "_BSSID"), site);
  }
}

}  // namespace
}  // namespace kio::test
