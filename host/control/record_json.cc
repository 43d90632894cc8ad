#include "control/record_json.h"

#include <cstring>
#include <iterator>
#include <string>
#include <utility>

namespace kiohost {
namespace {

// A text that may fill its member.
template <size_t kSize>
std::string Text(const char (&text)[kSize]) {
  return {text, strnlen(text, kSize)};
}

Json AsJson(const RssAcRule& rule) {
  return {{"active", rule.active}, {"mac", Text(rule.mac)}, {"path", Text(rule.path)}};
}

Json AsJson(const RssIsp& isp) {
  return {{"countryName", Text(isp.countryName)},
          {"ispName", Text(isp.ispName)},
          {"vpi", isp.vpi},
          {"vci", isp.vci},
          {"encapsulationMode", Text(isp.encapsulationMode)},
          {"path", Text(isp.path)},
          {"encapModeCode", isp.encapModeCode}};
}

Json AsJson(const RssExtenderSite& site) {
  return {{"survey", site.survey},
          {"connRefSiteBssid", Text(site.connRefSiteBssid)},
          {"wirelessType", Text(site.wirelessType)},
          {"wirelessName", Text(site.wirelessName)},
          {"encryptionKey", Text(site.encryptionKey)},
          {"path", Text(site.path)},
          {"wirelessTypeCode", site.wirelessTypeCode}};
}

Json AsJson(const RssUpLink& uplink) {
  return {{"configurable", uplink.configurable},
          {"hardwareSupport", Text(uplink.hardwareSupport)},
          {"hardwareType", Text(uplink.hardwareType)},
          {"connType", Text(uplink.connType)},
          {"mtu", uplink.mtu},
          {"loginUserName", Text(uplink.loginUserName)},
          {"loginPassword", Text(uplink.loginPassword)},
          {"ip", Text(uplink.ip)},
          {"netMask", Text(uplink.netMask)},
          {"gateway", Text(uplink.gateway)},
          {"dns", Text(uplink.dns)},
          {"dsl", AsJson(uplink.dsl)},
          {"apn", AsJson(uplink.apn)},
          {"extenderSite", AsJson(uplink.extenderSite)},
          {"path", Text(uplink.path)},
          {"restart", uplink.restart},
          {"connTypeCode", uplink.connTypeCode},
          {"hardwareTypeCode", uplink.hardwareTypeCode}};
}

Json AsJson(const RssWlan& wlan) {
  Json rules = Json::array();
  for (int i = 0; i < wlan.wlAcRuleNo && i < static_cast<int>(std::size(wlan.acRule)); ++i) {
    rules.push_back(AsJson(wlan.acRule[i]));
  }
  return {{"configurable", wlan.configurable},
          {"wlEnbl", wlan.wlEnbl},
          {"wlSchedule", wlan.wlSchedule},
          {"wirelessBssid", Text(wlan.wirelessBssid)},
          {"wirelessName", Text(wlan.wirelessName)},
          {"encryptionMode", Text(wlan.encryptionMode)},
          {"encryptionType", Text(wlan.encryptionType)},
          {"encryptionKey", Text(wlan.encryptionKey)},
          {"country", Text(wlan.country)},
          {"channelList", Text(wlan.channelList)},
          {"channel", Text(wlan.channel)},
          {"wlAcEnbl", wlan.wlAcEnbl},
          {"wlAcMode", wlan.wlAcMode},
          {"acRule", std::move(rules)},
          {"accessControlPath", Text(wlan.accessControlPath)},
          {"wlAcRuleNo", wlan.wlAcRuleNo},
          {"path", Text(wlan.path)},
          {"restart", wlan.restart},
          {"encryptionModeCode", wlan.encryptionModeCode},
          {"encryptionTypeCode", wlan.encryptionTypeCode},
          {"wirelessNameValidate", Text(wlan.wirelessNameValidate)},
          {"encryptionKeyValidate", Text(wlan.encryptionKeyValidate)}};
}

Json AsJson(const RssSafetyVyr& vyr) {
  return {{"safetyVyrEnbl", vyr.safetyVyrEnbl},
          {"urlDetectEnbl", vyr.urlDetectEnbl},
          {"safetyNotifyEnbl", vyr.safetyNotifyEnbl},
          {"toolRecommendEnbl", vyr.toolRecommendEnbl},
          {"path", Text(vyr.path)},
          {"restart", vyr.restart}};
}

}  // namespace

Json RecordAsJson(const RssXmlData& record) {
  return {{"version",
           {{"specMajor", record.specMajor},
            {"specMinor", record.specMinor},
            {"specName", Text(record.specName)},
            {"specVer", record.specVer}}},
          {"device",
           {{"configurable", record.configurable},
            {"deviceName", Text(record.deviceName)},
            {"devicePwd", Text(record.devicePwd)},
            {"deviceType", Text(record.deviceType)},
            {"routerEnbl", record.routerEnbl},
            {"extenderEnbl", record.extenderEnbl},
            {"easyRoaming", Text(record.easyRoaming)},
            {"devicePath", Text(record.devicePath)},
            {"deviceRestart", record.deviceRestart},
            {"roamingRestart", record.roamingRestart},
            {"friendlyNameValidate", Text(record.friendlyNameValidate)},
            {"passwordValidate", Text(record.passwordValidate)}}},
          {"upLink", AsJson(record.upLink)},
          {"uplinkRules",
           {{"loginUserNameValidate", Text(record.loginUserNameValidate)},
            {"loginPasswordValidate", Text(record.loginPasswordValidate)}}},
          {"wlan", {{"2.4", AsJson(record.wlan[0])}, {"5", AsJson(record.wlan[1])}}},
          {"safetyVyr", AsJson(record.safetyVyr)},
          {"features",
           {{"apCloningFeature", record.apCloningFeature},
            {"fwUpgradeFeature", record.fwUpgradeFeature},
            {"easyRoamingFeature", record.easyRoamingFeature},
            {"safetyVyrFeature", record.safetyVyrFeature},
            {"wlan24Feature", record.wlan24Feature},
            {"wlan5Feature", record.wlan5Feature}}},
          {"exchange",
           {{"wlanSurveyRestart", record.wlanSurveyRestart},
            {"saveflag", record.saveflag},
            {"exeflag", record.exeflag},
            {"pre_exeflag", record.pre_exeflag},
            {"exeWaitSec", record.exeWaitSec},
            {"setResult", record.setResult},
            {"setMsg", Text(record.setMsg)},
            {"apCloningOnly", record.apCloningOnly}}},
          {"directories",
           {{"tmpPath", Text(record.tmpPath)}, {"scriptPath", Text(record.scriptPath)}}}};
}

}  // namespace kiohost
