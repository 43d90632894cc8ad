#include "variable_names.h"

#include <cstdio>

namespace kio::differential {
namespace {

struct Variable {
  const char* name;
  Maker make;
};

std::string Anything(Random& random) { return Odd(random); }

constexpr Variable kDevice[] = {
    {"DeviceName", Name},         {"DevicePwd", Password},        {"RouterEnbl", WideSwitch},
    {"EasyRoaming", Roaming},     {"DeviceType", DeviceType},     {"DeviceName_Validate", Rule},
    {"DevicePwd_Validate", Rule}, {"FactoryDefault", Switch},     {"DeviceModel", Name},
    {"Validate", Anything},       {"WirelessConcurrent", Switch}, {"ExtenderEnbl", Switch},
};
constexpr Variable kVersion[] = {{"major", Switch}, {"minor", Switch}, {"other", Anything}};
constexpr Variable kUplink[] = {
    {"Configurable", Switch},
    {"HardwareType", Hardware},
    {"HardwareSupport", HardwareList},
    {"ConnType", Connection},
    {"LoginUserName", Name},
    {"LoginUserName_Validate", Rule},
    {"LoginPassword", Password},
    {"IP", Address},
    {"LoginPassword_Validate", Rule},
    {"NetMask", Netmask},
    {"Gateway", Address},
    {"DNS", Address},
    {"MTU", Number},
    {"Validate", Anything},
    {"Dsl_CountryName", Country},
    {"Dsl_IspName", Name},
    {"Dsl_VPI", Vpi},
    {"Apn_CountryName", Country},
    {"Apn_IspName", Name},
    {"Ets_Survey", Switch},
    {"Ets_ConnRefSiteBSSID", Mac},
    {"Ets_WirelessName", Name},
    {"Ets_WirelessType", RadioWord},
    {"Ets_EncryptionKey", WirelessKey},
    {"Ets_ConnStatus", SmallNumber},
};
constexpr Variable kRadio[] = {
    {"WlEnbl", WideSwitch},
    {"WlSchedule", WideSwitch},
    {"WirelessBSSID", Mac},
    {"WirelessName", Name},
    {"WirelessName_Validate", Rule},
    {"EncryptionMode", EncryptionMode},
    {"EncryptionType", EncryptionType},
    {"EncryptionKey", WirelessKey},
    {"EncryptionKey_Validate", Rule},
    {"Country", Country},
    {"Channel", Channel},
    {"Channel", Channel},
    {"ChannelList", ChannelList},
    {"ChannelUsing", Channel},
    {"Configurable", Switch},
    {"Validate", Anything},
    {"Acl_WlAcEnbl", WideSwitch},
    {"Acl_WlAcMode", Switch},
    {"Acl_AcRuleNo", Number},
    {"Acl_Other", Anything},
};
constexpr Variable kService[] = {{"SafetyVyrEnbl", Switch},
                                 {"UrlDetectEnbl", Switch},
                                 {"SafetyNotifyEnbl", Number},
                                 {"ToolRecommendEnbl", Switch}};
constexpr Variable kExtra[] = {
    {"Fwu_Vendor", Name},
    {"Fwu_DeviceMAC", Mac},
    {"Fwu_HwVersion", Name},
    {"Fwu_RegionCode", Name},
    {"Fwu_CurrFwVersion", Name},
    {"Fwu_CurrFwFileName", Name},
    {"Fwu_AccessKey", Name},
    {"Fwu_ModelName", Name},
    {"Fwu_FwUpgradeURL", AnyAddress},
    {"Ssv_SiteNo", Number},
    {"Ssv_S00_BSSID", Mac},
    {"Ssv_S01_WirelessName", Name},
    {"Ssv_S02_WirelessType", Name},
    {"Ssv_S03_EncryptionMode", Name},
    {"Ssv_S00_WirelessStrength", Name},
    {"Ssv_Sxx_BSSID", Mac},
    {"Apc_x", Name},
    {"Vyr_x", Name},
    {"Dsl_x", Name},
    {"Apn_x", Name},
};
constexpr Variable kActions[] = {{"SiteSurvey", Anything},      {"VerifyAllRssVars", Anything},
                                 {"ApplyAllRssVars", Anything}, {"CommitRssVars", Anything},
                                 {"SetRssVars", nullptr},       {"Nothing", Anything}};

template <std::size_t N>
NamedMaker Pick(Random& random, const char* group, const Variable (&list)[N]) {
  const Variable& variable = random.Of(list);
  return {std::string("rss_") + group + variable.name, variable.make};
}

NamedMaker PickRule(Random& random) {
  char name[48];
  std::snprintf(name, sizeof(name), "rss_Wl%d_Acl_R%02d_%s", random.OneIn(2) ? 2 : 5,
                random.OneIn(3) ? random.Below(50) : random.Below(4),
                random.OneIn(2) ? "MAC" : "Active");
  return {name, std::string_view(name).ends_with("MAC") ? Mac : Switch};
}

}  // namespace

NamedMaker PickVariable(Random& random) {
  switch (random.Below(12)) {
    case 0:
    case 1:
      return Pick(random, "", kDevice);
    case 2:
      return Pick(random, "Ver_", kVersion);
    case 3:
    case 4:
      return Pick(random, "Upl_", kUplink);
    case 5:
    case 6:
      return Pick(random, "Wl2_", kRadio);
    case 7:
      return Pick(random, "Wl5_", kRadio);
    case 8:
      return PickRule(random);
    case 9:
      return Pick(random, "Vyr_", kService);
    case 10:
      return Pick(random, "Ext_", kExtra);
    default:
      return Pick(random, "Act_", kActions);
  }
}

NamedMaker PickSettable(Random& random) {
  static constexpr Variable kSettable[] = {
      {"DeviceName", Name},
      {"DevicePwd", Password},
      {"RouterEnbl", Switch},
      {"EasyRoaming", Roaming},
      {"Upl_HardwareType", Hardware},
      {"Upl_ConnType", Connection},
      {"Upl_LoginUserName", Name},
      {"Upl_IP", Address},
      {"Upl_NetMask", Netmask},
      {"Upl_DNS", Address},
      {"Upl_Dsl_IspName", Name},
      {"Upl_Apn_CountryName", Country},
      {"Upl_Ets_WirelessName", Name},
      {"Upl_Ets_Survey", Switch},
      {"Wl2_WlEnbl", Switch},
      {"Wl2_WirelessName", Name},
      {"Wl2_Channel", Channel},
      {"Wl2_Acl_WlAcEnbl", Switch},
      {"Wl2_Acl_WlAcMode", Switch},
      {"Wl5_WlSchedule", Switch},
      {"Wl5_EncryptionType", EncryptionType},
      {"Wl5_EncryptionMode", EncryptionMode},
      {"Wl5_EncryptionKey", WirelessKey},
      {"Wl5_Channel", Channel},
      {"Vyr_SafetyVyrEnbl", Switch},
      {"Vyr_ToolRecommendEnbl", Switch},
  };
  return Pick(random, "", kSettable);
}

std::string OddName(Random& random, const std::string& name) {
  switch (random.Below(8)) {
    case 0:
      return MixedCase(random, name);
    case 1:
      return Mutated(random, name, random.Between(1, 2));
    case 2:
      return "abc_" + name.substr(4);
    case 3:
      return Odd(random, 200);
    case 4:
      return name + Letters(random, random.Between(1, 120));
    case 5:
      return name.substr(0, static_cast<std::size_t>(random.Below(9)));
    case 6: {
      std::string text = name;
      return text.insert(text.size() > 7 ? 7 : text.size(), Letters(random, 3));
    }
    default:
      return name + " ";
  }
}

}  // namespace kio::differential
