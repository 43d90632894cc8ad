#include "support/sample_device.h"

#include <cstring>

#include "support/fake_host.h"
#include "testing/memory_store.h"

namespace kio::test {
namespace {

constexpr const char* kChannels24 = "0,1,2,3,4,5,6,7,8,9,10,11,12,13";
constexpr const char* kChannels5 = "0,36,40,44,48,100";
constexpr const char* kHardware = "Ethernet,ADSL,VDSL,WWan802.11,WWanAPN,DSL";

void FillRule(RssWlan& radio, int index, int active, const std::string& mac) {
  radio.acRule[index].active = active;
  Put(radio.acRule[index].mac, mac);
  Put(radio.acRule[index].path, std::string(radio.accessControlPath) + "/AcRule");
}

void FillCommon(RssWlan& radio, const std::string& suffix) {
  radio.configurable = 1;
  radio.wlEnbl = 1;
  Put(radio.path, "Device/Wireless" + suffix);
  Put(radio.accessControlPath, "Device/Wireless" + suffix + "/AccessControl");
  radio.wlAcEnbl = 1;
}

void FillRadio24(RssWlan& radio) {
  FillCommon(radio, "2.4");
  radio.wlSchedule = 0;
  Put(radio.wirelessBssid, "02:00:00:00:24:01");
  Put(radio.wirelessName, "Home");
  Put(radio.wirelessNameValidate, "0,32,1");
  Put(radio.encryptionMode, "WPA2");
  radio.encryptionModeCode = 4;
  Put(radio.encryptionType, "AES");
  radio.encryptionTypeCode = 4;
  Put(radio.encryptionKey, "home-key-24");
  Put(radio.encryptionKeyValidate, "0,64,0");
  Put(radio.country, "NO");
  Put(radio.channelList, kChannels24);
  Put(radio.channel, "6");
  radio.wlAcMode = 1;
  radio.wlAcRuleNo = 2;
  FillRule(radio, 0, 1, "02:00:00:00:00:01");
  FillRule(radio, 1, 0, "02:00:00:00:00:02");
}

void FillRadio5(RssWlan& radio) {
  FillCommon(radio, "5");
  radio.wlSchedule = 1;
  Put(radio.wirelessBssid, "02:00:00:00:50:01");
  Put(radio.wirelessName, "Home-5");
  Put(radio.wirelessNameValidate, "0,31,1");
  Put(radio.encryptionMode, "WPAWPA2");
  radio.encryptionModeCode = 3;
  Put(radio.encryptionType, "AUTO");
  radio.encryptionTypeCode = 0;
  Put(radio.encryptionKey, "home-key-50");
  Put(radio.encryptionKeyValidate, "0,63,0");
  Put(radio.country, "SE");
  Put(radio.channelList, kChannels5);
  Put(radio.channel, "36");
  radio.wlAcMode = 0;
  radio.wlAcRuleNo = 1;
  FillRule(radio, 0, 1, "02:00:00:00:00:05");
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

void AddWlan(Members& members, const RssWlan& radio) {
  Add(members, "wirelessBssid", radio.wirelessBssid);
  Add(members, "wirelessName", radio.wirelessName);
  Add(members, "encryptionMode", radio.encryptionMode);
  Add(members, "encryptionType", radio.encryptionType);
  Add(members, "encryptionKey", radio.encryptionKey);
  Add(members, "country", radio.country);
  Add(members, "channelList", radio.channelList);
  Add(members, "channel", radio.channel);
  for (const RssAcRule& rule : radio.acRule) {
    Add(members, "acRule.mac", rule.mac);
    Add(members, "acRule.path", rule.path);
  }
  Add(members, "accessControlPath", radio.accessControlPath);
  Add(members, "wlan.path", radio.path);
  Add(members, "wirelessNameValidate", radio.wirelessNameValidate);
  Add(members, "encryptionKeyValidate", radio.encryptionKeyValidate);
}

}  // namespace

void StoreSampleDevice() { StoreDeviceInUse(); }

void StoreVersion10Device() {
  StoreSampleDevice();
  FakeHost::Get().Set("/zentrolinks/specversion/minor", "0");
}

void ClearRecord() { std::memset(&rssXmlData, 0, sizeof(rssXmlData)); }

void FillSampleRecord() {
  ClearRecord();
  FillDevice(rssXmlData);
  FillUpLink(rssXmlData.upLink);
  FillRadio24(rssXmlData.wlan[0]);
  FillRadio5(rssXmlData.wlan[1]);
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
