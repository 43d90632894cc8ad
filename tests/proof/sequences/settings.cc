#include "settings.h"

#include <cstdlib>

#include "../../e2e/documents.h"

namespace kio::sequences {
namespace {

constexpr char kRadio2[] = "/lan/wireless2.4:1";
constexpr char kRadio5[] = "/lan/wireless5:1";

constexpr Field kFields[] = {
    {"name", "", "DeviceName", "/sys/friendlyname", "rss_DeviceName"},
    {"pwd", "", "DevicePwd", "/sys/user:1/password", "rss_DevicePwd"},
    {"router", "", "RouterEnbl", "/sys/routerenbl", "rss_RouterEnbl"},
    {"conn", "UpLinkConnection", "ConnType", "/uplink/conntype", "rss_Upl_ConnType"},
    {"ip", "UpLinkConnection", "IP", "/uplink/ip", "rss_Upl_IP"},
    {"mask", "UpLinkConnection", "NetMask", "/uplink/netmask", "rss_Upl_NetMask"},
    {"gate", "UpLinkConnection", "Gateway", "/uplink/gateway", "rss_Upl_Gateway"},
    {"dns", "UpLinkConnection", "DNS", "/uplink/dns", "rss_Upl_DNS"},
    {"on2", "Wireless2.4", "WlEnbl", "/lan/wireless2.4:1/wlenbl", "rss_Wl2_WlEnbl"},
    {"ssid2", "Wireless2.4", "WirelessName", "/lan/wireless2.4:1/wirelessname",
     "rss_Wl2_WirelessName"},
    {"key2", "Wireless2.4", "EncryptionKey", "/lan/wireless2.4:1/encryptionkey",
     "rss_Wl2_EncryptionKey"},
    {"chan2", "Wireless2.4", "Channel", "/lan/wireless2.4:1/channel", "rss_Wl2_Channel"},
    {"on5", "Wireless5", "WlEnbl", "/lan/wireless5:1/wlenbl", "rss_Wl5_WlEnbl"},
    {"ssid5", "Wireless5", "WirelessName", "/lan/wireless5:1/wirelessname", "rss_Wl5_WirelessName"},
    {"key5", "Wireless5", "EncryptionKey", "/lan/wireless5:1/encryptionkey",
     "rss_Wl5_EncryptionKey"},
    {"chan5", "Wireless5", "Channel", "/lan/wireless5:1/channel", "rss_Wl5_Channel"},
    {"notify", "SafetyVyr", "SafetyNotifyEnbl", "/safetyvyr/safetynotifyenbl",
     "rss_Vyr_SafetyNotifyEnbl"},
    {"tools", "SafetyVyr", "ToolRecommendEnbl", "/safetyvyr/toolrecommendenbl",
     "rss_Vyr_ToolRecommendEnbl"},
};

// What the delivered document asks for.
const std::map<std::string, std::string> kFactoryValues = {{"name", "Home router"},
                                                           {"pwd", "change-me-soon"},
                                                           {"router", "1"},
                                                           {"conn", "DHCP"},
                                                           {"on2", "1"},
                                                           {"ssid2", "HomeNet"},
                                                           {"chan2", "0"},
                                                           {"on5", "1"},
                                                           {"ssid5", "HomeNet-5G"},
                                                           {"chan5", "36"},
                                                           {"notify", "0"},
                                                           {"tools", "0"},
                                                           {"key2", "correct-horse-24"},
                                                           {"key5", "correct-horse-50"}};

struct ActionRow {
  unsigned bit;
  const char* name;
  int seconds;
};
constexpr ActionRow kActionRows[] = {{kWan, "WanResync", 20},
                                     {4, "WlanResync", 10},
                                     {8, "Wlan5gResync", 10},
                                     {kDevice, "DeviceResync", 5},
                                     {kSave, "CfgSaveToFlash", 0}};

int ToInt(const std::string& text) {
  constexpr int kDecimal = 10;
  return static_cast<int>(std::strtol(text.c_str(), nullptr, kDecimal));
}

bool IsNumber(const std::string& key) {
  return key == "router" || key.starts_with("on") || key == "notify" || key == "tools";
}

int CheckText(const std::string& value, size_t shortest, size_t longest, bool blanks = true) {
  if (value.size() < shortest || value.size() > longest) {
    return 10;
  }
  return blanks || value.find(' ') == std::string::npos ? 0 : 11;
}

bool IsAddress(const std::string& value) {
  // Those that sequences use.
  return value.starts_with("192.0.2.") && ToInt(value.substr(8)) < 255;
}

bool IsChannel(const std::string& value, bool of_5ghz) {
  const std::string list =
      of_5ghz ? ",0,36,40,44,48,52,56,60,64,100,104,108,112," : ",0,1,2,3,4,5,6,7,8,9,10,11,12,13,";
  return !value.empty() && list.find("," + value + ",") != std::string::npos;
}

unsigned BitOf(const std::string& node) {
  if (node.starts_with("/sys/")) {
    return kDevice;
  }
  if (node.starts_with("/uplink/")) {
    return kWan;
  }
  if (node.starts_with(kRadio2)) {
    return 4;
  }
  return node.starts_with(kRadio5) ? 8 : 0;
}

// The store while settings are applied.
class Writer {
 public:
  explicit Writer(Nodes* store) : store_(store) {}

  void Write(const std::string& node, const std::string& value) {
    const auto found = store_->find(node);
    if (found == store_->end() || found->second != value) {
      (*store_)[node] = value;
      Changed(node);
    }
  }
  void Remove(const std::string& stem) {
    for (const char* const leaf : {"/active", "/mac"}) {
      if (store_->erase(stem + leaf) > 0) {
        Changed(stem);
      }
    }
  }
  void Finish(unsigned* mask) {
    if (changed_) {
      (*store_)["/sys/factorydefault"] = "0";
      mask_ |= kSave;
    }
    *mask = mask_;
  }

 private:
  void Changed(const std::string& node) {
    changed_ = true;
    mask_ |= BitOf(node);
  }

  Nodes* store_;
  unsigned mask_ = 0;
  bool changed_ = false;
};

std::string Encoded(const std::string& value) {
  std::string encoded;
  for (const char c : value) {
    encoded += c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
  }
  return encoded;
}

}  // namespace

std::span<const Field> Fields() { return kFields; }

const Field* FieldOf(const std::string& key) {
  for (const Field& field : kFields) {
    if (key == field.key) {
      return &field;
    }
  }
  return nullptr;
}

const Field* FieldOfVariable(const std::string& variable) {
  for (const Field& field : kFields) {
    if (variable == field.variable) {
      return &field;
    }
  }
  return nullptr;
}

std::vector<std::string> ActionsOf(unsigned mask) {
  std::vector<std::string> names;
  for (const ActionRow& action : kActionRows) {
    if ((mask & action.bit) != 0) {
      names.emplace_back(action.name);
    }
  }
  return names;
}

int WaitOf(unsigned mask) {
  int seconds = 0;
  for (const ActionRow& action : kActionRows) {
    seconds += (mask & action.bit) != 0 ? action.seconds : 0;
  }
  return seconds;
}

Settings Settings::OfStore(const Nodes& store) {
  Settings settings;
  for (const Field& field : kFields) {
    const auto node = store.find(field.node);
    settings.values_[field.key] = node == store.end() ? "" : node->second;
  }
  settings.access_[0].on = store.at(std::string(kRadio2) + "/accesscontrol/wlacenbl");
  settings.access_[1].on = store.at(std::string(kRadio5) + "/accesscontrol/wlacenbl");
  return settings;
}

Settings Settings::OfDocument(const Step& step) {
  Settings settings;
  settings.values_ = kFactoryValues;
  for (const Field& field : kFields) {
    if (step.Has(field.key)) {
      settings.Set(field.key, step.Get(field.key));
    }
  }
  if (step.Has("uplink")) {
    settings.values_.insert_or_assign("conn", "Static");
    settings.values_.insert_or_assign("ip", step.Get("uplink"));
    settings.values_.insert_or_assign("mask", "255.255.255.0");
    settings.values_.insert_or_assign("gate", "192.0.2.1");
    settings.values_.insert_or_assign("dns", "192.0.2.1");
  }
  settings.access_[0].on = "0";
  settings.access_[1] = {"1", "0", {{"1", "02:00:5E:AA:00:01"}}};
  for (const size_t i : {size_t{0}, size_t{1}}) {
    const std::string word = i == 0 ? "acl2" : "acl5";
    if (!step.Has(word)) {
      continue;
    }
    const int count = ToInt(step.Get(word));
    settings.access_[i] = {count > 0 ? "1" : "0", count > 0 ? "1" : "0", {}};
    for (int rule = 1; rule <= count; ++rule) {
      settings.access_[i].rules.emplace_back("1", "02:00:5E:BB:00:0" + std::to_string(rule));
    }
  }
  return settings;
}

std::string Settings::Get(const std::string& key) const {
  const auto value = values_.find(key);
  return value == values_.end() ? "" : value->second;
}

void Settings::Set(const std::string& key, const std::string& value) {
  values_[key] = IsNumber(key) ? std::to_string(ToInt(value)) : value;
}

int Settings::Check(const Field& field, const std::string& value) const {
  const std::string key = field.key;
  if (key == "name" || key.starts_with("ssid")) {
    return CheckText(value, 1, 32);
  }
  if (key == "pwd") {
    return CheckText(value, 5, 32, false);
  }
  if (key.starts_with("key")) {
    return CheckText(value, 0, 64);
  }
  if (key == "router" || key.starts_with("on")) {
    const int now = ToInt(Get(key));
    return now >= 2 && ToInt(value) != now ? 2 : 0;
  }
  if (key == "notify" || key == "tools") {
    return ToInt(value) == 0 || ToInt(value) == 1 ? 0 : 2;
  }
  if (key.starts_with("chan")) {
    return IsChannel(value, key == "chan5") ? 0 : 2;
  }
  if (key == "conn") {
    return value == "DHCP" || value == "Static" ? 0 : 10;
  }
  if (key == "mask") {
    return value.starts_with("255.255.") ? 0 : 2;
  }
  return IsAddress(value) ? 0 : 2;
}

Verdict Settings::Verify() const {
  for (const char* const key : {"name", "pwd"}) {
    if (const int code = Check(*FieldOf(key), Get(key))) {
      return {code, std::string("Device/") + FieldOf(key)->element};
    }
  }
  if (Get("conn") == "Static" && !IsAddress(Get("ip"))) {
    return {3, "Device/Uplink/IP"};
  }
  for (const char* const radio : {"2", "5"}) {
    const std::string section = std::string("Device/Wireless") + (*radio == '2' ? "2.4/" : "5/");
    const std::string on = Get(std::string("on") + radio);
    if (ToInt(on) < 0 || ToInt(on) > 3) {
      return {3, section + "WlEnbl"};
    }
    const std::string name = Get(std::string("ssid") + radio);
    if (const int code = CheckText(name, 1, 32)) {
      return {code, section + "WirelessName"};
    }
    const size_t key_length = Get(std::string("key") + radio).size();
    if (key_length < 8 || key_length > 63) {
      return {3, section + "EncryptionKey"};
    }
    if (!IsChannel(Get(std::string("chan") + radio), *radio == '5')) {
      return {3, section + "Channel"};
    }
  }
  for (const char* const key : {"notify", "tools"}) {
    if (ToInt(Get(key)) < 0 || ToInt(Get(key)) > 1) {
      return {3, std::string("Device/SafetyVyr/") + FieldOf(key)->element};
    }
  }
  return {};
}

Verdict Settings::Apply(Nodes* store, unsigned* mask) const {
  Writer writer(store);
  *mask = 0;
  for (const Field& field : kFields) {
    const std::string key = field.key;
    if ((key == "ip" || key == "mask" || key == "gate" || key == "dns") &&
        Get("conn") != "Static") {
      continue;
    }
    if ((key == "router" || key.starts_with("on")) && (*store)[field.node] != Get(key) &&
        ToInt(Get(key)) > 1) {
      return {
          3, std::string("Device/") + field.block + (*field.block != 0 ? "/" : "") + field.element};
    }
    writer.Write(field.node, Get(key));
  }
  for (const size_t i : {size_t{0}, size_t{1}}) {
    const std::string stem = std::string(i == 0 ? kRadio2 : kRadio5) + "/accesscontrol";
    writer.Write(stem + "/wlacenbl", access_[i].on);
    if (access_[i].on != "1") {
      continue;
    }
    writer.Write(stem + "/wlacmode", access_[i].mode);
    int number = 0;
    for (const auto& [active, mac] : access_[i].rules) {
      const std::string rule = stem + "/acrule:" + std::to_string(++number);
      writer.Write(rule + "/active", active);
      writer.Write(rule + "/mac", mac);
    }
    constexpr int kMostRules = 40;
    while (++number <= kMostRules) {
      writer.Remove(stem + "/acrule:" + std::to_string(number));
    }
  }
  writer.Finish(mask);
  return {};
}

std::string DocumentOf(const Step& step) {
  std::string document = FactoryDocument();
  if (step.Has("uplink")) {
    document = With(document, "UpLinkConnection", StaticUplink(step.Get("uplink")));
  }
  for (const char* const word : {"acl2", "acl5"}) {
    if (step.Has(word)) {
      const int count = ToInt(step.Get(word));
      document =
          WithIn(document, word[3] == '2' ? "Wireless2.4" : "Wireless5", "AccessControl",
                 count > 0 ? AccessRules(count) : "<WlAcEnbl>0</WlAcEnbl><WlAcMode>0</WlAcMode>");
    }
  }
  for (const Field& field : kFields) {
    if (step.Has(field.key)) {
      const std::string value = Encoded(step.Get(field.key));
      document = *field.block == 0 ? With(document, field.element, value)
                                   : WithIn(document, field.block, field.element, value);
    }
  }
  if (step.Has("version")) {
    document = With(document, "minor", step.Get("version"));
  }
  return step.Has("without") ? Without(document, step.Get("without")) : document;
}

Verdict FormOf(const Step& step) {
  if (step.Has("version") && step.Get("version") != "1") {
    return {1, ""};
  }
  return step.Has("without") ? Verdict{2, "Device/" + step.Get("without")} : Verdict{};
}

}  // namespace kio::sequences
