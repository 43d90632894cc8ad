// What every reader takes out of a settings document: all leaves, into fixed buffers.
#ifndef KIO_BENCH_SETTINGS_H
#define KIO_BENCH_SETTINGS_H

namespace kio::bench {

constexpr int kRuleCapacity = 40;

struct Rule {
  int active;
  char mac[18];
};

struct Radio {
  int configurable;
  int enabled;
  int schedule;
  char bssid[18];
  char name[128];
  char mode[32];
  char key[32];
  char type[32];
  char channel[32];
  int access_enabled;
  int access_mode;
  int rule_count;
  Rule rules[kRuleCapacity];
};

// Zeroed before it is compared: what one reader leaves out then differs from what another reads.
struct Settings {
  int major;
  int minor;
  int configurable;
  char device_name[128];
  char device_password[128];
  int router_enabled;
  int uplink_configurable;
  char hardware_type[32];
  char connection_type[32];
  char login_name[128];
  char login_password[128];
  char country[128];
  char provider[128];
  char roaming[128];
  Radio radios[2];
  int safety[4];
};

// Reads every leaf in the order in which the library's own parser does. A reader offers
//
//     Node Child(Node parent, const char* key)
//     void Text(Node parent, const char* key, char (&buffer)[N])
//     void Int(Node parent, const char* key, int& number)
//     Node FirstRule(Node parent), NextRule(Node parent, Node rule)
//
// and a Node converts to false when there is no such element.
template <typename Reader, typename Node>
void ReadRadio(Reader& reader, const Node& node, Radio& radio) {
  reader.Int(node, "Configurable", radio.configurable);
  reader.Int(node, "WlEnbl", radio.enabled);
  reader.Int(node, "WlSchedule", radio.schedule);
  reader.Text(node, "WirelessBSSID", radio.bssid);
  reader.Text(node, "WirelessName", radio.name);
  reader.Text(node, "EncryptionMode", radio.mode);
  reader.Text(node, "EncryptionKey", radio.key);
  reader.Text(node, "EncryptionType", radio.type);
  reader.Text(node, "Channel", radio.channel);
  const Node access = reader.Child(node, "AccessControl");
  reader.Int(access, "WlAcEnbl", radio.access_enabled);
  reader.Int(access, "WlAcMode", radio.access_mode);
  Node rule = reader.FirstRule(access);
  while (rule && radio.rule_count < kRuleCapacity) {
    Rule& out = radio.rules[radio.rule_count++];
    reader.Int(rule, "Active", out.active);
    reader.Text(rule, "MAC", out.mac);
    rule = reader.NextRule(access, rule);
  }
}

template <typename Reader, typename Node>
void ReadSettings(Reader& reader, const Node& root, Settings& out) {
  const Node version = reader.Child(root, "specVersion");
  reader.Int(version, "major", out.major);
  reader.Int(version, "minor", out.minor);
  const Node device = reader.Child(root, "Device");
  reader.Int(device, "Configurable", out.configurable);
  reader.Text(device, "DeviceName", out.device_name);
  reader.Text(device, "DevicePwd", out.device_password);
  reader.Int(device, "RouterEnbl", out.router_enabled);
  const Node uplink = reader.Child(device, "UpLinkConnection");
  reader.Int(uplink, "Configurable", out.uplink_configurable);
  reader.Text(uplink, "HardwareType", out.hardware_type);
  reader.Text(uplink, "ConnType", out.connection_type);
  reader.Text(uplink, "LoginUserName", out.login_name);
  reader.Text(uplink, "LoginPassword", out.login_password);
  const Node provider = reader.Child(uplink, "DSL");
  reader.Text(provider, "CountryName", out.country);
  reader.Text(provider, "IspName", out.provider);
  reader.Text(device, "EasyRoaming", out.roaming);
  ReadRadio(reader, reader.Child(device, "Wireless2.4"), out.radios[0]);
  ReadRadio(reader, reader.Child(device, "Wireless5"), out.radios[1]);
  const Node safety = reader.Child(device, "SafetyVyr");
  reader.Int(safety, "SafetyVyrEnbl", out.safety[0]);
  reader.Int(safety, "UrlDetectEnbl", out.safety[1]);
  reader.Int(safety, "SafetyNotifyEnbl", out.safety[2]);
  reader.Int(safety, "ToolRecommendEnbl", out.safety[3]);
}

}  // namespace kio::bench

#endif
