#include "support/sample_device.h"

#include <cstring>
#include <utility>

#include "support/fake_host.h"

namespace kio::test {
namespace {

constexpr const char* kChannels24 = "0,1,2,3,4,5,6,7,8,9,10,11,12,13";
constexpr const char* kChannels5 = "0,36,40,44,48,100";
constexpr const char* kHardware = "Ethernet,ADSL,VDSL,WWan802.11,WWanAPN,DSL";

constexpr std::pair<const char*, const char*> kNodes[] = {
    {"/zentrolinks/specversion/major", "1"},
    {"/zentrolinks/specversion/minor", "1"},
    {"/zentrolinks/configurable", "1"},
    {"/zentrolinks/apcloning", "1"},
    {"/zentrolinks/easyroaming", "1"},
    {"/zentrolinks/fwupgrade", "1"},
    {"/zentrolinks/safetyvyr", "1"},
    {"/zentrolinks/easyroaminginfo", "roam-1"},
    {"/zentrolinks/tempdirecory", "/var/tmp"},
    {"/zentrolinks/scriptdirecory", "/etc/scripts"},
    {"/sys/devicetype", "Router"},
    {"/sys/factorydefault", "1"},
    {"/sys/friendlyname", "Kitchen"},
    {"/sys/friendlyname_validate", "0,32,1"},
    {"/sys/routerenbl", "1"},
    {"/sys/user:1/password", "secret12"},
    {"/sys/user:1/password_validate", "0,32,4"},
    {"/uplink/configurable", "1"},
    {"/uplink/hardwaresupport", kHardware},
    {"/uplink/hardwaretype", "Ethernet"},
    {"/uplink/conntype", "DHCP"},
    {"/uplink/loginusername", "line-user"},
    {"/uplink/loginusername_validate", "0,64,1"},
    {"/uplink/loginpassword", "line-pass"},
    {"/uplink/loginpassword_validate", "0,64,1"},
    {"/uplink/ip", "10.0.0.2"},
    {"/uplink/netmask", "255.255.255.0"},
    {"/uplink/gateway", "10.0.0.1"},
    {"/uplink/dns", "10.0.0.3"},
    {"/uplink/dsl/countryname", "Norway"},
    {"/uplink/dsl/ispname", "Fjord DSL"},
    {"/uplink/dsl/vpi", "8"},
    {"/uplink/dsl/vci", "35"},
    {"/uplink/dsl/encapsulationmode", "LLC"},
    {"/uplink/apn/countryname", "Sweden"},
    {"/uplink/apn/ispname", "Berg Mobile"},
    {"/uplink/extendersite/survey", "0"},
    {"/uplink/extendersite/connrefsitebssid", "02:00:00:00:99:01"},
    {"/uplink/extendersite/wirelesstype", "2.4"},
    {"/uplink/extendersite/wirelessname", "Upstream"},
    {"/uplink/extendersite/encryptionkey", "upstream-key"},
    {"/safetyvyr/safetyvyrenbl", "1"},
    {"/safetyvyr/urldetectenbl", "0"},
    {"/safetyvyr/safetynotifyenbl", "1"},
    {"/safetyvyr/toolrecommendenbl", "0"},
    {"/lan/wireless2.4:1/configurable", "1"},
    {"/lan/wireless2.4:1/wlenbl", "1"},
    {"/lan/wireless2.4:1/wlschedule", "0"},
    {"/lan/wireless2.4:1/wirelessbssid", "02:00:00:00:24:01"},
    {"/lan/wireless2.4:1/wirelessname", "Home"},
    {"/lan/wireless2.4:1/wirelessname_validate", "0,32,1"},
    {"/lan/wireless2.4:1/encryptionmode", "WPA2"},
    {"/lan/wireless2.4:1/encryptiontype", "AES"},
    {"/lan/wireless2.4:1/encryptionkey", "home-key-24"},
    {"/lan/wireless2.4:1/encryptionkey_validate", "0,64,0"},
    {"/lan/wireless2.4:1/country", "NO"},
    {"/lan/wireless2.4:1/channellist", kChannels24},
    {"/lan/wireless2.4:1/channel", "6"},
    {"/lan/wireless2.4:1/accesscontrol/wlacenbl", "1"},
    {"/lan/wireless2.4:1/accesscontrol/wlacmode", "1"},
    {"/lan/wireless2.4:1/accesscontrol/acrule:1/active", "1"},
    {"/lan/wireless2.4:1/accesscontrol/acrule:1/mac", "02:00:00:00:00:01"},
    {"/lan/wireless2.4:1/accesscontrol/acrule:2/active", "0"},
    {"/lan/wireless2.4:1/accesscontrol/acrule:2/mac", "02:00:00:00:00:02"},
    {"/lan/wireless5:1/configurable", "1"},
    {"/lan/wireless5:1/wlenbl", "1"},
    {"/lan/wireless5:1/wlschedule", "1"},
    {"/lan/wireless5:1/wirelessbssid", "02:00:00:00:50:01"},
    {"/lan/wireless5:1/wirelessname", "Home-5"},
    {"/lan/wireless5:1/wirelessname_validate", "0,31,1"},
    {"/lan/wireless5:1/encryptionmode", "WPAWPA2"},
    {"/lan/wireless5:1/encryptiontype", "AUTO"},
    {"/lan/wireless5:1/encryptionkey", "home-key-50"},
    {"/lan/wireless5:1/encryptionkey_validate", "0,63,0"},
    {"/lan/wireless5:1/country", "SE"},
    {"/lan/wireless5:1/channellist", kChannels5},
    {"/lan/wireless5:1/channel", "36"},
    {"/lan/wireless5:1/accesscontrol/wlacenbl", "1"},
    {"/lan/wireless5:1/accesscontrol/wlacmode", "0"},
    {"/lan/wireless5:1/accesscontrol/acrule:1/active", "1"},
    {"/lan/wireless5:1/accesscontrol/acrule:1/mac", "02:00:00:00:00:05"},
};

void FillRule(RssWlan& band, int index, int active, const std::string& mac) {
  band.acRule[index].active = active;
  Put(band.acRule[index].mac, mac);
  Put(band.acRule[index].path, std::string(band.accessControlPath) + "/AcRule");
}

void FillCommon(RssWlan& band, const std::string& suffix) {
  band.configurable = 1;
  band.wlEnbl = 1;
  Put(band.path, "Device/Wireless" + suffix);
  Put(band.accessControlPath, "Device/Wireless" + suffix + "/AccessControl");
  band.wlAcEnbl = 1;
}

void FillBand24(RssWlan& band) {
  FillCommon(band, "2.4");
  band.wlSchedule = 0;
  Put(band.wirelessBssid, "02:00:00:00:24:01");
  Put(band.wirelessName, "Home");
  Put(band.wirelessNameValidate, "0,32,1");
  Put(band.encryptionMode, "WPA2");
  band.encryptionModeCode = 4;
  Put(band.encryptionType, "AES");
  band.encryptionTypeCode = 4;
  Put(band.encryptionKey, "home-key-24");
  Put(band.encryptionKeyValidate, "0,64,0");
  Put(band.country, "NO");
  Put(band.channelList, kChannels24);
  Put(band.channel, "6");
  band.wlAcMode = 1;
  band.wlAcRuleNo = 2;
  FillRule(band, 0, 1, "02:00:00:00:00:01");
  FillRule(band, 1, 0, "02:00:00:00:00:02");
}

void FillBand5(RssWlan& band) {
  FillCommon(band, "5");
  band.wlSchedule = 1;
  Put(band.wirelessBssid, "02:00:00:00:50:01");
  Put(band.wirelessName, "Home-5");
  Put(band.wirelessNameValidate, "0,31,1");
  Put(band.encryptionMode, "WPAWPA2");
  band.encryptionModeCode = 3;
  Put(band.encryptionType, "AUTO");
  band.encryptionTypeCode = 0;
  Put(band.encryptionKey, "home-key-50");
  Put(band.encryptionKeyValidate, "0,63,0");
  Put(band.country, "SE");
  Put(band.channelList, kChannels5);
  Put(band.channel, "36");
  band.wlAcMode = 0;
  band.wlAcRuleNo = 1;
  FillRule(band, 0, 1, "02:00:00:00:00:05");
}

void FillUpLink(RssUpLink& up) {
  up.configurable = 1;
  Put(up.path, "Device/Uplink");
  Put(up.hardwareSupport, kHardware);
  Put(up.hardwareType, "Ethernet");
  Put(up.connType, "DHCP");
  Put(up.loginUserName, "line-user");
  Put(up.loginPassword, "line-pass");
  Put(up.ip, "10.0.0.2");
  Put(up.netMask, "255.255.255.0");
  Put(up.gateway, "10.0.0.1");
  Put(up.dns, "10.0.0.3");
  up.mtu = 1400;
  Put(up.dsl.path, "Device/Uplink/DSL");
  Put(up.dsl.countryName, "Norway");
  Put(up.dsl.ispName, "Fjord DSL");
  up.dsl.vpi = 8;
  up.dsl.vci = 35;
  Put(up.dsl.encapsulationMode, "LLC");
  Put(up.apn.path, "Device/Uplink/APN");
  Put(up.apn.countryName, "Sweden");
  Put(up.apn.ispName, "Berg Mobile");
  Put(up.extenderSite.path, "Device/Uplink/ExtenderSite");
  Put(up.extenderSite.connRefSiteBssid, "02:00:00:00:99:01");
  Put(up.extenderSite.wirelessType, "2.4");
  Put(up.extenderSite.wirelessName, "Upstream");
  Put(up.extenderSite.encryptionKey, "upstream-key");
}

void FillDevice(RssXmlData& record) {
  record.specMajor = 1;
  record.specMinor = 1;
  record.specVer = 101;
  Put(record.specName, "specVersion");
  record.configurable = 1;
  Put(record.devicePath, "Device");
  Put(record.deviceName, "Kitchen");
  Put(record.devicePwd, "secret12");
  Put(record.deviceType, "Router");
  record.routerEnbl = 1;
  Put(record.easyRoaming, "roam-1");
  Put(record.friendlyNameValidate, "0,32,1");
  Put(record.passwordValidate, "0,32,4");
  Put(record.loginUserNameValidate, "0,64,1");
  Put(record.loginPasswordValidate, "0,64,1");
  Put(record.tmpPath, "/var/tmp");
  Put(record.scriptPath, "/etc/scripts");
  record.apCloningFeature = 1;
  record.fwUpgradeFeature = 1;
  record.easyRoamingFeature = 1;
  record.safetyVyrFeature = 1;
  record.wlan24Feature = 1;
  record.wlan5Feature = 1;
}

using Members = std::vector<TextMember>;

template <std::size_t size>
void Add(Members& members, const std::string& name, const char (&text)[size]) {
  members.push_back({name, text, size});
}

void AddIsp(Members& members, const std::string& name, const RssIsp& isp) {
  Add(members, name + ".countryName", isp.countryName);
  Add(members, name + ".ispName", isp.ispName);
  Add(members, name + ".encapsulationMode", isp.encapsulationMode);
  Add(members, name + ".path", isp.path);
}

void AddUpLink(Members& members, const RssUpLink& up) {
  Add(members, "hardwareSupport", up.hardwareSupport);
  Add(members, "hardwareType", up.hardwareType);
  Add(members, "connType", up.connType);
  Add(members, "loginUserName", up.loginUserName);
  Add(members, "loginPassword", up.loginPassword);
  Add(members, "ip", up.ip);
  Add(members, "netMask", up.netMask);
  Add(members, "gateway", up.gateway);
  Add(members, "dns", up.dns);
  AddIsp(members, "dsl", up.dsl);
  AddIsp(members, "apn", up.apn);
  Add(members, "connRefSiteBssid", up.extenderSite.connRefSiteBssid);
  Add(members, "extenderSite.wirelessType", up.extenderSite.wirelessType);
  Add(members, "extenderSite.wirelessName", up.extenderSite.wirelessName);
  Add(members, "extenderSite.encryptionKey", up.extenderSite.encryptionKey);
  Add(members, "extenderSite.path", up.extenderSite.path);
  Add(members, "upLink.path", up.path);
}

void AddWlan(Members& members, const RssWlan& band) {
  Add(members, "wirelessBssid", band.wirelessBssid);
  Add(members, "wirelessName", band.wirelessName);
  Add(members, "encryptionMode", band.encryptionMode);
  Add(members, "encryptionType", band.encryptionType);
  Add(members, "encryptionKey", band.encryptionKey);
  Add(members, "country", band.country);
  Add(members, "channelList", band.channelList);
  Add(members, "channel", band.channel);
  for (const RssAcRule& rule : band.acRule) {
    Add(members, "acRule.mac", rule.mac);
    Add(members, "acRule.path", rule.path);
  }
  Add(members, "accessControlPath", band.accessControlPath);
  Add(members, "wlan.path", band.path);
  Add(members, "wirelessNameValidate", band.wirelessNameValidate);
  Add(members, "encryptionKeyValidate", band.encryptionKeyValidate);
}

}  // namespace

void StoreSampleDevice() {
  for (const auto& [path, value] : kNodes) {
    FakeHost::Get().Set(path, value);
  }
}

void StoreVersion10Device() {
  StoreSampleDevice();
  FakeHost::Get().Set("/zentrolinks/specversion/minor", "0");
}

void ClearRecord() { std::memset(&rssXmlData, 0, sizeof(rssXmlData)); }

void FillSampleRecord() {
  ClearRecord();
  FillDevice(rssXmlData);
  FillUpLink(rssXmlData.upLink);
  FillBand24(rssXmlData.wlan[0]);
  FillBand5(rssXmlData.wlan[1]);
  rssXmlData.safetyVyr.safetyVyrEnbl = 1;
  rssXmlData.safetyVyr.safetyNotifyEnbl = 1;
  Put(rssXmlData.safetyVyr.path, "Device/SafetyVyr");
}

std::string RecordBytes(const RssXmlData& record) {
  return {reinterpret_cast<const char*>(&record), sizeof(record)};
}

std::vector<TextMember> TextMembers(const RssXmlData& record) {
  Members members;
  Add(members, "specName", record.specName);
  Add(members, "deviceName", record.deviceName);
  Add(members, "devicePwd", record.devicePwd);
  Add(members, "deviceType", record.deviceType);
  Add(members, "easyRoaming", record.easyRoaming);
  AddUpLink(members, record.upLink);
  Add(members, "loginUserNameValidate", record.loginUserNameValidate);
  Add(members, "loginPasswordValidate", record.loginPasswordValidate);
  AddWlan(members, record.wlan[0]);
  AddWlan(members, record.wlan[1]);
  Add(members, "safetyVyr.path", record.safetyVyr.path);
  Add(members, "devicePath", record.devicePath);
  Add(members, "friendlyNameValidate", record.friendlyNameValidate);
  Add(members, "passwordValidate", record.passwordValidate);
  Add(members, "setMsg", record.setMsg);
  Add(members, "tmpPath", record.tmpPath);
  Add(members, "scriptPath", record.scriptPath);
  return members;
}

std::vector<std::string> UnterminatedMembers() {
  std::vector<std::string> names;
  for (const TextMember& member : TextMembers(rssXmlData)) {
    if (strnlen(member.text, member.capacity) == member.capacity) {
      names.push_back(member.name);
    }
  }
  return names;
}

}  // namespace kio::test
