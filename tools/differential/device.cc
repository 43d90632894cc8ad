#include "device.h"

#include <algorithm>
#include <cctype>

#include "store.h"
#include "texts.h"

namespace kio::differential {
namespace {

struct Node {
  std::string_view path;
  Maker make;
};

std::string One(Random& /*random*/) { return "1"; }

std::string MostlyOne(Random& random) { return random.OneIn(8) ? Number(random) : "1"; }

std::string Minor(Random& random) { return random.OneIn(4) ? "0" : "1"; }

std::string CloningLevel(Random& random) {
  return random.OneIn(6) ? Number(random) : SmallNumber(random);
}

std::string FirmwareUrl(Random& random) {
  constexpr const char* kUrls[] = {"http://firmware.kioapp.example/fw/AB12_FW1.0.8.bin",
                                   "http://x/AB12_FW1.0.8.bin?a/b_FW2",
                                   "AB12_FW1..8",
                                   "/a_b_FW1.2",
                                   "http://x/nothing",
                                   "http://x/_F1.bin"};
  return random.Chance(80) ? random.Of(kUrls) : Odd(random);
}

constexpr Node kNodes[] = {
    {"/zentrolinks/specversion/major", One},
    {"/zentrolinks/specversion/minor", Minor},
    {"/zentrolinks/configurable", MostlyOne},
    {"/zentrolinks/apcloning", CloningLevel},
    {"/zentrolinks/easyroaming", MostlyOne},
    {"/zentrolinks/fwupgrade", Switch},
    {"/zentrolinks/safetyvyr", MostlyOne},
    {"/zentrolinks/easyroaminginfo", Roaming},
    {"/zentrolinks/tempdirecory", Directory},
    {"/zentrolinks/scriptdirecory", Directory},
    {"/zentrolinks/rsshttpport", SmallNumber},
    {"/runtime/zentrolinks/lanip", Address},
    {"/sys/devicetype", DeviceType},
    {"/sys/modelnumber", Name},
    {"/sys/factorydefault", Switch},
    {"/sys/friendlyname", Name},
    {"/sys/friendlyname_validate", Rule},
    {"/sys/routerenbl", WideSwitch},
    {"/sys/user:1/password", Password},
    {"/sys/user:1/password_validate", Rule},
    {"/uplink/configurable", MostlyOne},
    {"/uplink/hardwaresupport", HardwareList},
    {"/uplink/hardwaretype", Hardware},
    {"/uplink/conntype", Connection},
    {"/uplink/loginusername", Name},
    {"/uplink/loginusername_validate", Rule},
    {"/uplink/loginpassword", Password},
    {"/uplink/loginpassword_validate", Rule},
    {"/uplink/ip", Address},
    {"/uplink/netmask", Netmask},
    {"/uplink/gateway", Address},
    {"/uplink/dns", Address},
    {"/uplink/dsl/countryname", Country},
    {"/uplink/dsl/ispname", Name},
    {"/uplink/dsl/vpi", Vpi},
    {"/uplink/dsl/vci", Vci},
    {"/uplink/dsl/encapsulationmode", Encapsulation},
    {"/uplink/apn/countryname", Country},
    {"/uplink/apn/ispname", Name},
    {"/uplink/extendersite/survey", Switch},
    {"/uplink/extendersite/connrefsitebssid", Mac},
    {"/uplink/extendersite/wirelesstype", RadioWord},
    {"/uplink/extendersite/wirelessname", Name},
    {"/uplink/extendersite/encryptionkey", WirelessKey},
    {"/uplink/sxtendersite/connstatus", SmallNumber},
    {"/safetyvyr/safetyvyrenbl", Switch},
    {"/safetyvyr/urldetectenbl", Switch},
    {"/safetyvyr/safetynotifyenbl", Switch},
    {"/safetyvyr/toolrecommendenbl", Switch},
    {"/fwupgradeinfo/isengfwserver", Switch},
    {"/fwupgradeinfo/devicemac", Mac},
    {"/fwupgradeinfo/currfwfilename", FirmwareFile},
    {"/fwupgradeinfo/fwupgradefn", FirmwareFile},
    {"/fwupgradeinfo/urlgetcmd", FetchTemplate},
    {"/fwupgradeinfo/newfw/fileurl", FirmwareUrl},
    {"/fwupgradeinfo/newfw/notesurl", FirmwareUrl},
    {"/fwupgradeinfo/vendor", Name},
    {"/fwupgradeinfo/hwversion", Name},
    {"/fwupgradeinfo/regioncode", Country},
    {"/fwupgradeinfo/currfwversion", Name},
    {"/fwupgradeinfo/accesskey", Name},
    {"/fwupgradeinfo/fwupgradeurl", AnyAddress},
    {"/lan/wirelessconcurrent", Switch},
    {"/runtime/easyroaming/deauthsta/ifname", Name},
    {"/runtime/easyroaming/deauthsta/mac", Mac},
    {"/runtime/apcloninginfo/extendersite/wirelesstype", RadioWord},
};

// Below "/lan/wireless2.4:1" and "/lan/wireless5:1".
constexpr Node kRadioNodes[] = {
    {"/configurable", MostlyOne},
    {"/wlenbl", WideSwitch},
    {"/wlschedule", WideSwitch},
    {"/wirelessbssid", Mac},
    {"/wirelessname", Name},
    {"/wirelessname_validate", Rule},
    {"/encryptionmode", EncryptionMode},
    {"/encryptiontype", EncryptionType},
    {"/encryptionkey", WirelessKey},
    {"/encryptionkey_validate", Rule},
    {"/country", Country},
    {"/channellist", ChannelList},
    {"/channel", Channel},
    {"/channelusing", Channel},
    {"/accesscontrol/wlacenbl", WideSwitch},
    {"/accesscontrol/wlacmode", Switch},
};
constexpr const char* kRadios[] = {"/lan/wireless2.4:1", "/lan/wireless5:1"};

constexpr Node kRuleNodes[] = {{"/active", Switch}, {"/mac", Mac}};
constexpr Node kSiteNodes[] = {{"/wirelesstype", RadioWord},
                               {"/bssid", Mac},
                               {"/wirelessname", Name},
                               {"/encryptionmode", EncryptionMode},
                               {"/wirelessstrength", SmallNumber}};

template <std::size_t N>
void SetNodes(Random& random, const std::string& stem, const Node (&nodes)[N],
              int odd_per_thousand) {
  for (const Node& node : nodes) {
    if (random.Below(1000) >= odd_per_thousand) {
      Store::Set(stem + std::string(node.path), node.make(random));
    } else if (random.Chance(60)) {
      Store::Set(stem + std::string(node.path), random.OneIn(2) ? Number(random) : Odd(random));
    }
  }
}

template <std::size_t N>
Maker MakerOf(std::string_view path, const Node (&nodes)[N]) {
  const auto* const node =
      std::find_if(std::begin(nodes), std::end(nodes),
                   [path](const Node& other) { return path.ends_with(other.path); });
  return node != std::end(nodes) ? node->make : nullptr;
}

int RuleCount(Random& random) {
  switch (random.Below(4)) {
    case 0:
      return 0;
    case 1:
      return random.Between(38, 45);
    default:
      return random.Between(1, 6);
  }
}

void MakeRules(Random& random, const std::string& radio, int odd_per_thousand) {
  const std::string access = radio + "/accesscontrol";
  const int count = RuleCount(random);
  for (int i = 1; i <= count; ++i) {
    SetNodes(random, access + "/acrule:" + std::to_string(i), kRuleNodes, odd_per_thousand);
  }
  if (random.OneIn(3)) {
    Store::Set(radio + "/configurable/acrule#", std::to_string(random.Between(-1, 44)));
  }
  if (random.OneIn(12)) {
    Store::Set(access + "/acrule#", std::to_string(random.Between(-2, 60)));
  }
}

}  // namespace

void MakeDevice(Random& random, int odd_per_thousand) {
  Store::Clear();
  SetNodes(random, "", kNodes, odd_per_thousand);
  for (const char* const radio : kRadios) {
    // Devices with one radio, or none.
    if (random.OneIn(10)) {
      continue;
    }
    SetNodes(random, radio, kRadioNodes, odd_per_thousand);
    // Most radios hold valid settings, so that a document that repeats them is accepted.
    if (random.Chance(90)) {
      const Encryption& encryption = GoodEncryption(random);
      Store::Set(std::string(radio) + "/encryptionmode", encryption.mode);
      Store::Set(std::string(radio) + "/encryptiontype", encryption.type);
      Store::Set(std::string(radio) + "/encryptionkey", encryption.key);
    }
    if (random.Chance(80)) {
      Store::Set(std::string(radio) + "/wlenbl", Switch(random));
      Store::Set(std::string(radio) + "/accesscontrol/wlacenbl", Switch(random));
      Store::Set(std::string(radio) + "/wlschedule", Switch(random));
    }
    if (random.Chance(90)) {
      Store::Set(std::string(radio) + "/wirelessname_validate", "0,32,1");
      Store::Set(std::string(radio) + "/encryptionkey_validate", "0,64,0");
    }
    MakeRules(random, radio, odd_per_thousand);
  }
  if (random.Chance(90)) {
    Store::Set("/sys/friendlyname_validate", "0,32,1");
    Store::Set("/sys/user:1/password_validate", "0,32,1");
    Store::Set("/uplink/loginusername_validate", "0,64,1");
    Store::Set("/uplink/loginpassword_validate", "0,64,1");
    Store::Set("/sys/routerenbl", Switch(random));
    Store::Set("/zentrolinks/tempdirecory", "/tmp/kio");
  }
  for (const char* const path :
       {"/zentrolinks/tempdirecory", "/fwupgradeinfo/fwupgradefn", "/fwupgradeinfo/urlgetcmd",
        "/sys/routerenbl", "/runtime/apcloninginfo/extendersite/wirelesstype"}) {
    if (random.OneIn(12)) {
      Store::Delete(path);
    }
  }
  for (int i = random.Below(5); i > 0; --i) {
    SetNodes(random, "/wirelesssitesurvey/site:" + std::to_string(i), kSiteNodes, odd_per_thousand);
  }
}

const Encryption& GoodEncryption(Random& random) {
  static constexpr Encryption kGood[] = {{"WPA2", "AES", "home-key-24"},
                                         {"WPAWPA2", "AUTO", "home-key-50"},
                                         {"WPA", "TKIP", "0123456789012345678901234567890"},
                                         {"WEP", "OPEN", "12345"},
                                         {"WEP", "SHARED", "ABCDE01234"},
                                         {"WEP", "AUTO", "thirteen-char"},
                                         {"None", "", "whatever"},
                                         {"none", "AUTO", ""}};
  return random.Of(kGood);
}

void ChangeDevice(Random& random) {
  for (int i = random.Between(1, 6); i > 0; --i) {
    const std::string path = AnyNode(random);
    if (random.OneIn(6)) {
      Store::Delete(path);
    } else {
      Store::Set(path, random.OneIn(8) ? Odd(random) : ValueFor(random, path));
    }
  }
}

std::string ValueFor(Random& random, const std::string& path) {
  std::string folded;
  for (const char character : path) {
    folded += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
  }
  if (folded.find("/acrule:") != std::string::npos) {
    return folded.ends_with("/mac") ? Mac(random) : Switch(random);
  }
  const Maker maker =
      folded.starts_with("/lan/") ? MakerOf(folded, kRadioNodes) : MakerOf(folded, kNodes);
  return maker != nullptr ? maker(random) : Odd(random);
}

std::string AnyNode(Random& random) {
  switch (random.Below(5)) {
    case 0:
    case 1:
      return std::string(random.Of(kNodes).path);
    case 2:
      return std::string(random.Of(kRadios)) +
             "/accesscontrol/acrule:" + std::to_string(random.Between(1, 42)) +
             (random.OneIn(2) ? "/active" : "/mac");
    default:
      return std::string(random.Of(kRadios)) + std::string(random.Of(kRadioNodes).path);
  }
}

}  // namespace kio::differential
