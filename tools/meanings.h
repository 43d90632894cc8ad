// What each row of the library's tables means to a host or an app, in words. A test checks that
// each row has a meaning, and each meaning a row (tests/tools/meanings_test.cc).
#ifndef TOOLS_MEANINGS_H
#define TOOLS_MEANINGS_H

#include "sections.h"

namespace kio::tools {

struct Meaning {
  SectionId section;
  platform::TextView name;  // of the element or variable, or the node of a row without a name
  const char* text;
};

// The section under which the meanings of `section` stand. APN and DSL share theirs.
constexpr SectionId ExplainedSection(SectionId section) {
  return section == SectionId::kApn ? SectionId::kDsl : section;
}

inline constexpr Meaning kMeanings[] = {
    {SectionId::kVersion, "major",
     "Major version of the settings documents that the device takes. The library knows 1."},
    {SectionId::kVersion, "minor",
     "Minor version of them: 1, or 0 for the older dialect. A document of another version is "
     "refused with result 1."},

    {SectionId::kDevice, "/zentrolinks/apcloning",
     "How far the device can copy the settings of another access point, 0 to 2; other numbers "
     "count as 0, and a device of version 1.0 has 0. For the host: the library only keeps it."},
    {SectionId::kDevice, "/zentrolinks/easyroaming",
     "Whether documents hold EasyRoaming. A device of version 1.0 has 0."},
    {SectionId::kDevice, "/zentrolinks/fwupgrade",
     "Whether the firmware can be upgraded. For the host: the library only keeps it."},
    {SectionId::kDevice, "/zentrolinks/safetyvyr",
     "Whether the device has the security service, so that documents hold SafetyVyr."},
    {SectionId::kDevice, "/zentrolinks/tempdirecory",
     "Directory of the result document, the firmware's files and the log; short and of plain "
     "characters, since shell commands of 127 characters hold it."},
    {SectionId::kDevice, "/zentrolinks/scriptdirecory",
     "Directory of `uplink.sh` and `device_resync.sh`, of at most 63 characters."},
    {SectionId::kDevice, "/zentrolinks/configurable",
     "0 fixes the whole device: a document of its version is answered with 0 and changes nothing."},
    {SectionId::kDevice, "DeviceType", "Kind of device, such as Router. Shown to the app."},
    {SectionId::kDevice, "DeviceName", "Name of the router."},
    {SectionId::kDevice, "DevicePwd",
     "Administrator password. The keys of a login are made of it, too."},
    {SectionId::kDevice, "RouterEnbl",
     "Router mode: 0 off, 1 on. A stored 2 or 3 locks it: another value is refused with result 3."},
    {SectionId::kDevice, "EasyRoaming",
     "Settings of the roaming between access points, a text of the app's and the device's own. A "
     "variable takes four numbers; a document takes any text."},
    {SectionId::kDevice, "ExtenderEnbl",
     "1 or 3 makes an Ethernet device an extender of another network, so that ExtenderSite is "
     "needed. It is not stored."},
    {SectionId::kDevice, "DeviceName_Validate", "Rule for DeviceName."},
    {SectionId::kDevice, "DevicePwd_Validate", "Rule for DevicePwd."},
    {SectionId::kDevice, "FactoryDefault",
     "1 as long as the device has its factory settings. The library writes 0 when it has changed "
     "something."},
    {SectionId::kDevice, "DeviceModel", "Name of the model. Shown to the app."},
    {SectionId::kDevice, "WirelessConcurrent",
     "Whether both radios can run at once. Shown to the app."},

    {SectionId::kUplink, "Configurable",
     "Whether the app may change the uplink. Otherwise documents need no UpLinkConnection, and one "
     "that is there is not read."},
    {SectionId::kUplink, "HardwareType",
     "What the uplink runs over. A document of version 1.1 must choose one of HardwareSupport; in "
     "version 1.0 it is never stored."},
    {SectionId::kUplink, "HardwareSupport",
     "The hardware types that the device has, as one text with a separator between them."},
    {SectionId::kUplink, "ConnType", "How the uplink gets its address."},
    {SectionId::kUplink, "MTU",
     "Frame size in bytes. Verified when the hardware type is DSL, and never stored."},
    {SectionId::kUplink, "LoginUserName", "User name at the provider."},
    {SectionId::kUplink, "LoginPassword", "Password at the provider."},
    {SectionId::kUplink, "IP", "Own address of a static uplink."},
    {SectionId::kUplink, "NetMask", "Netmask of a static uplink."},
    {SectionId::kUplink, "Gateway",
     "Gateway of a static uplink. Nothing relates it to the address."},
    {SectionId::kUplink, "DNS", "Name server of a static uplink. An empty one becomes 8.8.8.8."},
    {SectionId::kUplink, "LoginUserName_Validate", "Rule for LoginUserName."},
    {SectionId::kUplink, "LoginPassword_Validate", "Rule for LoginPassword."},

    {SectionId::kDsl, "CountryName", "Country of the provider."},
    {SectionId::kDsl, "IspName", "Name of the provider."},
    {SectionId::kDsl, "VPI", "Path number of the DSL circuit."},
    {SectionId::kDsl, "VCI", "Channel number of the DSL circuit."},
    {SectionId::kDsl, "EncapsulationMode",
     "Encapsulation of the DSL circuit. A fault is reported as EncryptionMode."},

    {SectionId::kSite, "Survey",
     "1 asks for a survey of the networks around; nothing else is changed by such a document. The "
     "host sets it back to 0 when the survey is done."},
    {SectionId::kSite, "ConnRefSiteBSSID", "Address of the upstream access point."},
    {SectionId::kSite, "WirelessType",
     "Radio that joins the upstream network. Its rules hold for WirelessName and EncryptionKey."},
    {SectionId::kSite, "WirelessName", "Name of the upstream network."},
    {SectionId::kSite, "EncryptionKey",
     "Key of the upstream network: empty, 8 to 63 characters, 5 or 13 characters, or 64, 10 or 26 "
     "hexadecimal digits of upper case."},
    {SectionId::kSite, "ConnStatus", "State of the connection to the upstream network."},

    {SectionId::kRadio, "ChannelList", "Channels that may be set, with commas between them."},
    {SectionId::kRadio, "WirelessName_Validate", "Rule for WirelessName."},
    {SectionId::kRadio, "EncryptionKey_Validate", "Rule for EncryptionKey."},
    {SectionId::kRadio, "WlEnbl",
     "Switch of the radio: 0 off, 1 on. A stored 2 or 3 locks it: another value is refused with "
     "result 3. The radio exists when the store holds 0, 1 or 3."},
    {SectionId::kRadio, "WlSchedule",
     "Switch of the radio's schedule: 0 off, 1 on. A stored 2 locks it."},
    {SectionId::kRadio, "WirelessBSSID", "Address of the radio."},
    {SectionId::kRadio, "WirelessName", "Name of the wireless network."},
    {SectionId::kRadio, "EncryptionMode", "How the network is encrypted."},
    {SectionId::kRadio, "EncryptionType",
     "Cipher, as the mode allows: AUTO or nothing for None; AUTO, OPEN or SHARED for WEP; AUTO, "
     "TKIP or AES for the others. A device of version 1.0 gets AUTO."},
    {SectionId::kRadio, "EncryptionKey",
     "Key of the network, as the mode demands: 5 or 13 characters, or 10 or 26 hexadecimal digits "
     "of upper case, for WEP; 8 to 63 characters, or 64 hexadecimal digits of upper case, for the "
     "WPA modes."},
    {SectionId::kRadio, "Channel", "Channel; 0 chooses automatically. It must be in ChannelList."},
    {SectionId::kRadio, "Country", "Country whose channels the radio uses."},
    {SectionId::kRadio, "ChannelUsing", "Channel in use, which the host keeps up to date."},

    {SectionId::kAccess, "WlAcEnbl",
     "Switch of the access control: 0 off, 1 on. A stored 2 locks it: another value is refused "
     "with result 3."},
    {SectionId::kAccess, "WlAcMode",
     "What becomes of the stations that are listed: 0 or 1, as the device defines it. Written "
     "whenever access control is on."},
    {SectionId::kAccess, "AcRuleNo", "Number of the rules."},
    {SectionId::kRule, "Active", "Whether the rule is in force: 0 or 1."},
    {SectionId::kRule, "MAC", "Address of the station; its form is not checked."},

    {SectionId::kSafety, "SafetyVyrEnbl", "Switch of the security service."},
    {SectionId::kSafety, "UrlDetectEnbl", "Switch of its detection of addresses."},
    {SectionId::kSafety, "SafetyNotifyEnbl", "Switch of its notices."},
    {SectionId::kSafety, "ToolRecommendEnbl", "Switch of its recommendations."},

    {SectionId::kFirmware, "Vendor", "Maker of the device. Shown to the app."},
    {SectionId::kFirmware, "DeviceMAC",
     "Address of the router. Entries of the firmware list are chosen by it; its letters are of the "
     "same case as in the list."},
    {SectionId::kFirmware, "HwVersion", "Version of the hardware. Shown to the app."},
    {SectionId::kFirmware, "RegionCode", "Region of the device. Shown to the app."},
    {SectionId::kFirmware, "CurrFwVersion", "Version of the running firmware. Shown to the app."},
    {SectionId::kFirmware, "CurrFwFileName",
     "File name of the running firmware. Entries of the firmware list are chosen by it; what "
     "stands before its first `_` names the list on the server."},
    {SectionId::kFirmware, "AccessKey", "Key of the firmware server. Shown to the app."},
    {SectionId::kFirmware, "ModelName", "The same node as DeviceModel."},
    {SectionId::kFirmware, "FwUpgradeURL",
     "Address at which the app sends firmware; `$lanip` and `$rssport` in it are replaced."},

    {SectionId::kSurvey, "SiteNo", "Number of the networks that the last survey found."},
    {SectionId::kSurveySite, "WirelessType", "Band of a network: 2.4 or 5."},
    {SectionId::kSurveySite, "BSSID", "Address of its access point."},
    {SectionId::kSurveySite, "WirelessName", "Name of the network."},
    {SectionId::kSurveySite, "EncryptionMode", "How it is encrypted."},
    {SectionId::kSurveySite, "WirelessStrength", "How strong it is received."},
};

constexpr platform::TextView NameOf(const Field& field) {
  return field.element.empty() ? field.node : field.element;
}
constexpr platform::TextView NameOf(const LiveNode& live) { return live.name; }

// The meaning of a row; null without one.
inline const Meaning* FindMeaning(SectionId section, platform::TextView name) {
  for (const Meaning& meaning : kMeanings) {
    if (meaning.section == ExplainedSection(section) && meaning.name == name) {
      return &meaning;
    }
  }
  return nullptr;
}

template <typename Row>
std::string MeaningOf(SectionId section, const Row& row) {
  const Meaning* const meaning = FindMeaning(section, NameOf(row));
  return meaning == nullptr ? "" : meaning->text;
}

}  // namespace kio::tools

#endif  // TOOLS_MEANINGS_H
