// Rows of the network of the 2.4 GHz radio.
#include "fields/row.h"

namespace kio::test {
namespace {

// The app does not set it.
FieldRow Wireless24WirelessBSSID() {
  return {
      .name = "Wireless24_WirelessBSSID",
      .section = SectionId::kRadio,
      .field = "WirelessBSSID",
      .versions = Versions::kNot10,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].wirelessBssid); },
      .node = "/lan/wireless2.4:1/wirelessbssid",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"02:00:00:00:24:01", "02:00:00:00:24:01"},
                {kAbsent, ""},
                {kLong, kLong.substr(0, 17)}},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless2.4/WirelessBSSID",
          .missing = "Device/Wireless2.4/WirelessBSSID",
          .fault = "Device/Wireless2.4/WirelessBSSID",
          .faults = {{"", 3}, {" ", 3}},
          .value = "02:AA",
          .too_long = TooLong{kLong, kLong.substr(0, 17), 0},
      }},
      .dump = "     +- WirelessBSSID='02:00:00:00:24:01'",
      .shown = {{
          .name = "rss_Wl2_WirelessBSSID",
          .path = "/lan/wireless2.4:1/WirelessBSSID",
          .text = "02:00:00:00:24:01",
          .section = Section::kWireless24,
      }},
  };
}

FieldRow Wireless24WirelessName() {
  return {
      .name = "Wireless24_WirelessName",
      .section = SectionId::kRadio,
      .field = "WirelessName",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].wirelessName); },
      .node = "/lan/wireless2.4:1/wirelessname",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"Home", "Home"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/Wireless2.4/WirelessName",
          .missing = "Device/Wireless2.4/WirelessName",
          .fault = "Device/Wireless2.4/WirelessName",
          .faults = {{"", 10}, {std::string(33, 'n'), 10}, {"a\x7F", 11}},
          .value = "Garden",
          .writes = {"/lan/wireless2.4:1/wirelessname=Garden"},
          .too_long = TooLong{kLong, kLong.substr(0, 127), 10},
      }},
      .dump = "     +- WirelessName='Home'",
      .variables = {{
          .name = "rss_Wl2_WirelessName",
          .path = "/lan/wireless2.4:1/WirelessName",
          .text = "Home",
          .value = "Garden",
          .stored = [](RssXmlData& r) { Put(r.wlan[0].wirelessName, "Garden"); },
          .read_back = "Garden",
          .refused = {{"", 10}, {std::string(33, 'n'), 10}, {"\x01", 11}},
          .empty_code = 10,
          .section = Section::kWireless24,
      }},
  };
}

FieldRow Wireless24EncryptionMode() {
  return {
      .name = "Wireless24_EncryptionMode",
      .section = SectionId::kRadio,
      .field = "EncryptionMode",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].encryptionMode); },
      .code = [](const RssXmlData& r) { return r.wlan[0].encryptionModeCode; },
      .node = "/lan/wireless2.4:1/encryptionmode",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"WPA2", "WPA2", 4},
                {"wep", "WEP", 1},
                {kAbsent, "", -1},
                {kLong, kLong.substr(0, 31), -1}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/Wireless2.4/EncryptionMode",
          .missing = "Device/Wireless2.4/EncryptionMode",
          .fault = "Device/Wireless2.4/EncryptionMode",
          .faults = {{"WPA3", 3}, {"", 3}},
          .value = "WPA",
          .code = 2,
          .writes = {"/lan/wireless2.4:1/encryptionmode=WPA"},
          .too_long = TooLong{std::string(31, ' ') + "WPA", "", 3},
      }},
      .dump = "     +- EncryptionMode,Type='WPA2,AES'",
      .variables = {{
          .name = "rss_Wl2_EncryptionMode",
          .path = "/lan/wireless2.4:1/EncryptionMode",
          .text = "WPA2",
          .value = "WEP",
          .stored =
              [](RssXmlData& r) {
                Put(r.wlan[0].encryptionMode, "WEP");
                r.wlan[0].encryptionModeCode = 1;
              },
          .read_back = "WEP",
          .refused = {{"WPA3", 10}, {"", 10}, {"WPAWPA", 10}},
          .empty_code = 10,
          .is_keyword = true,
          .section = Section::kWireless24,
      }},
  };
}

FieldRow Wireless24EncryptionType() {
  return {
      .name = "Wireless24_EncryptionType",
      .section = SectionId::kRadio,
      .field = "EncryptionType",
      .versions = Versions::kNot10,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].encryptionType); },
      .code = [](const RssXmlData& r) { return r.wlan[0].encryptionTypeCode; },
      .node = "/lan/wireless2.4:1/encryptiontype",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"AES", "AES", 4},
                {"tkip", "TKIP", 3},
                {kAbsent, "", 5},
                {kLong, kLong.substr(0, 31), -1}},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless2.4/EncryptionType",
          .missing = "Device/Wireless2.4/EncryptionType",
          .fault = "Device/Wireless2.4/EncryptionType",
          .faults = {{"OPEN", 3}, {"nonsense", 3}, {"", 3}},
          .value = "TKIP",
          .code = 3,
          .writes = {"/lan/wireless2.4:1/encryptiontype=TKIP"},
          .too_long = TooLong{std::string(31, ' ') + "TKIP", "", 3},
      }},
      .dump = "     +- EncryptionMode,Type='WPA2,AES'",
      .variables = {{
          .name = "rss_Wl2_EncryptionType",
          .path = "/lan/wireless2.4:1/EncryptionType",
          .text = "AES",
          .value = "TKIP",
          .stored =
              [](RssXmlData& r) {
                Put(r.wlan[0].encryptionType, "TKIP");
                r.wlan[0].encryptionTypeCode = 3;
              },
          .read_back = "TKIP",
          .refused = {{"TKIPAES", 10}, {"None", 10}, {" ", 10}},
          .stored_empty =
              [](RssXmlData& r) {
                Put(r.wlan[0].encryptionType, "");
                r.wlan[0].encryptionTypeCode = 5;
              },
          .is_keyword = true,
          .section = Section::kWireless24,
      }},
  };
}

FieldRow Wireless24EncryptionKey() {
  return {
      .name = "Wireless24_EncryptionKey",
      .section = SectionId::kRadio,
      .field = "EncryptionKey",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].encryptionKey); },
      .node = "/lan/wireless2.4:1/encryptionkey",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"home-key-24", "home-key-24"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/Wireless2.4/EncryptionKey",
          .missing = "Device/Wireless2.4/EncryptionKey",
          .fault = "Device/Wireless2.4/EncryptionKey",
          .faults = {{"1234567", 3}, {"", 3}, {"12345678\xFF", 11}},
          .value = "garden-key",
          .writes = {"/lan/wireless2.4:1/encryptionkey=garden-key"},
          .too_long = TooLong{kLong, kLong.substr(0, 31), 0},
      }},
      .dump = "     +- EncryptionKey='home-key-24'",
      .variables = {{
          .name = "rss_Wl2_EncryptionKey",
          .path = "/lan/wireless2.4:1/EncryptionKey",
          .text = "home-key-24",
          .value = "garden-key",
          .stored = [](RssXmlData& r) { Put(r.wlan[0].encryptionKey, "garden-key"); },
          .read_back = "garden-key",
          .refused = {{std::string(65, 'k'), 10}, {"k\x7F", 11}},
          .stored_empty = [](RssXmlData& r) { Put(r.wlan[0].encryptionKey, ""); },
          .section = Section::kWireless24,
      }},
  };
}

FieldRow Wireless24Channel() {
  return {
      .name = "Wireless24_Channel",
      .section = SectionId::kRadio,
      .field = "Channel",
      .versions = Versions::kNot10,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].channel); },
      .node = "/lan/wireless2.4:1/channel",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"6", "6"}, {kAbsent, ""}, {kLong, kLong.substr(0, 31)}},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless2.4/Channel",
          .missing = "Device/Wireless2.4/Channel",
          .fault = "Device/Wireless2.4/Channel",
          .faults = {{"14", 3}, {"", 3}},
          .value = "11",
          .writes = {"/lan/wireless2.4:1/channel=11"},
          .too_long = TooLong{std::string(31, ' ') + "6", "", 3},
      }},
      .dump = "     +- Channel='6'",
      .variables = {{
          .name = "rss_Wl2_Channel",
          .path = "/lan/wireless2.4:1/Channel",
          .text = "6",
          .value = "13",
          .stored = [](RssXmlData& r) { Put(r.wlan[0].channel, "13"); },
          .read_back = "13",
          .refused = {{"", 2}, {"14", 2}, {"-1", 2}, {"36", 2}, {"06", 2}, {"6 ", 2}, {"x", 2}},
          .empty_code = 2,
          .section = Section::kWireless24,
      }},
  };
}

FieldRow Wireless24Country() {
  return {
      .name = "Wireless24_Country",
      .section = SectionId::kRadio,
      .field = "Country",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].country); },
      .node = "/lan/wireless2.4:1/country",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"NO", "NO"}, {kAbsent, ""}, {kLong, kLong.substr(0, 31)}},
      .dump = kNotDumped,
      .shown = {{
          .name = "rss_Wl2_Country",
          .path = "/lan/wireless2.4:1/Country",
          .text = "NO",
          .section = Section::kWireless24,
      }},
  };
}

}  // namespace

std::vector<FieldRow> Network24Rows() {
  return {
      Wireless24WirelessBSSID(),  Wireless24WirelessName(),  Wireless24EncryptionMode(),
      Wireless24EncryptionType(), Wireless24EncryptionKey(), Wireless24Channel(),
      Wireless24Country(),
  };
}

}  // namespace kio::test
