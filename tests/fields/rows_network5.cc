// Rows of the network of the 5 GHz radio.
#include "fields/row.h"

namespace kio::test {
namespace {

// The app does not set it.
FieldRow Wireless5WirelessBSSID() {
  return {
      .name = "Wireless5_WirelessBSSID",
      .section = SectionId::kRadio,
      .field = "WirelessBSSID",
      .radio = 1,
      .versions = Versions::kNot10,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].wirelessBssid); },
      .node = "/lan/wireless5:1/wirelessbssid",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"02:00:00:00:50:01", "02:00:00:00:50:01"},
                {kAbsent, ""},
                {kLong, kLong.substr(0, 17)}},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless5/WirelessBSSID",
          .missing = "Device/Wireless5/WirelessBSSID",
          .fault = "Device/Wireless5/WirelessBSSID",
          .faults = {{"", 3}, {" ", 3}},
          .value = "02:AA",
          .too_long = TooLong{kLong, kLong.substr(0, 17), 0},
      }},
      .dump = "     +- WirelessBSSID='02:00:00:00:50:01'",
      .shown = {{
          .name = "rss_Wl5_WirelessBSSID",
          .path = "/lan/wireless5:1/WirelessBSSID",
          .text = "02:00:00:00:50:01",
          .section = Section::kWireless5,
      }},
  };
}

FieldRow Wireless5WirelessName() {
  return {
      .name = "Wireless5_WirelessName",
      .section = SectionId::kRadio,
      .field = "WirelessName",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].wirelessName); },
      .node = "/lan/wireless5:1/wirelessname",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"Home-5", "Home-5"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/Wireless5/WirelessName",
          .missing = "Device/Wireless5/WirelessName",
          .fault = "Device/Wireless5/WirelessName",
          .faults = {{"", 10}, {std::string(33, 'n'), 10}, {"a\x7F", 11}},
          .value = "Garden",
          .writes = {"/lan/wireless5:1/wirelessname=Garden"},
          .too_long = TooLong{kLong, kLong.substr(0, 127), 10},
      }},
      .dump = "     +- WirelessName='Home-5'",
      .variables = {{
          .name = "rss_Wl5_WirelessName",
          .path = "/lan/wireless5:1/WirelessName",
          .text = "Home-5",
          .value = "Garden-5",
          .stored = [](RssXmlData& r) { Put(r.wlan[1].wirelessName, "Garden-5"); },
          .read_back = "Garden-5",
          .refused = {{"", 10}, {"12345678901234567890123456789012", 10}, {"\x01", 11}},
          .empty_code = 10,
          .section = Section::kWireless5,
      }},
  };
}

FieldRow Wireless5EncryptionMode() {
  return {
      .name = "Wireless5_EncryptionMode",
      .section = SectionId::kRadio,
      .field = "EncryptionMode",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].encryptionMode); },
      .code = [](const RssXmlData& r) { return r.wlan[1].encryptionModeCode; },
      .node = "/lan/wireless5:1/encryptionmode",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"WPAWPA2", "WPAWPA2", 3},
                {"wep", "WEP", 1},
                {kAbsent, "", -1},
                {kLong, kLong.substr(0, 31), -1}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/Wireless5/EncryptionMode",
          .missing = "Device/Wireless5/EncryptionMode",
          .fault = "Device/Wireless5/EncryptionMode",
          .faults = {{"WPA3", 3}, {"", 3}},
          .value = "WPA",
          .code = 2,
          .writes = {"/lan/wireless5:1/encryptionmode=WPA"},
          .too_long = TooLong{std::string(31, ' ') + "WPA", "", 3},
      }},
      .dump = "     +- EncryptionMode,Type='WPAWPA2,AUTO'",
      .variables = {{
          .name = "rss_Wl5_EncryptionMode",
          .path = "/lan/wireless5:1/EncryptionMode",
          .text = "WPAWPA2",
          .value = "None",
          .stored =
              [](RssXmlData& r) {
                Put(r.wlan[1].encryptionMode, "None");
                r.wlan[1].encryptionModeCode = 0;
              },
          .read_back = "None",
          .refused = {{"AES", 10}, {"", 10}, {"Non", 10}},
          .empty_code = 10,
          .is_keyword = true,
          .section = Section::kWireless5,
      }},
  };
}

FieldRow Wireless5EncryptionType() {
  return {
      .name = "Wireless5_EncryptionType",
      .section = SectionId::kRadio,
      .field = "EncryptionType",
      .radio = 1,
      .versions = Versions::kNot10,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].encryptionType); },
      .code = [](const RssXmlData& r) { return r.wlan[1].encryptionTypeCode; },
      .node = "/lan/wireless5:1/encryptiontype",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"AUTO", "AUTO", 0},
                {"tkip", "TKIP", 3},
                {kAbsent, "", 5},
                {kLong, kLong.substr(0, 31), -1}},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless5/EncryptionType",
          .missing = "Device/Wireless5/EncryptionType",
          .fault = "Device/Wireless5/EncryptionType",
          .faults = {{"OPEN", 3}, {"nonsense", 3}, {"", 3}},
          .value = "TKIP",
          .code = 3,
          .writes = {"/lan/wireless5:1/encryptiontype=TKIP"},
          .too_long = TooLong{std::string(31, ' ') + "TKIP", "", 3},
      }},
      .dump = "     +- EncryptionMode,Type='WPAWPA2,AUTO'",
      .variables = {{
          .name = "rss_Wl5_EncryptionType",
          .path = "/lan/wireless5:1/EncryptionType",
          .text = "AUTO",
          .value = "SHARED",
          .stored =
              [](RssXmlData& r) {
                Put(r.wlan[1].encryptionType, "SHARED");
                r.wlan[1].encryptionTypeCode = 2;
              },
          .read_back = "SHARED",
          .refused = {{"WEP", 10}, {"AUT", 10}},
          .stored_empty =
              [](RssXmlData& r) {
                Put(r.wlan[1].encryptionType, "");
                r.wlan[1].encryptionTypeCode = 5;
              },
          .is_keyword = true,
          .section = Section::kWireless5,
      }},
  };
}

FieldRow Wireless5EncryptionKey() {
  return {
      .name = "Wireless5_EncryptionKey",
      .section = SectionId::kRadio,
      .field = "EncryptionKey",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].encryptionKey); },
      .node = "/lan/wireless5:1/encryptionkey",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"home-key-50", "home-key-50"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/Wireless5/EncryptionKey",
          .missing = "Device/Wireless5/EncryptionKey",
          .fault = "Device/Wireless5/EncryptionKey",
          .faults = {{"1234567", 3}, {"", 3}, {"12345678\xFF", 11}},
          .value = "garden-key",
          .writes = {"/lan/wireless5:1/encryptionkey=garden-key"},
          .too_long = TooLong{kLong, kLong.substr(0, 31), 0},
      }},
      .dump = "     +- EncryptionKey='home-key-50'",
      .variables = {{
          .name = "rss_Wl5_EncryptionKey",
          .path = "/lan/wireless5:1/EncryptionKey",
          .text = "home-key-50",
          .value = "garden-key-5",
          .stored = [](RssXmlData& r) { Put(r.wlan[1].encryptionKey, "garden-key-5"); },
          .read_back = "garden-key-5",
          .refused = {{"1234567890123456789012345678901234567890123456789012345678901234", 10},
                      {"\xFF", 11}},
          .stored_empty = [](RssXmlData& r) { Put(r.wlan[1].encryptionKey, ""); },
          .section = Section::kWireless5,
      }},
  };
}

FieldRow Wireless5Channel() {
  return {
      .name = "Wireless5_Channel",
      .section = SectionId::kRadio,
      .field = "Channel",
      .radio = 1,
      .versions = Versions::kNot10,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].channel); },
      .node = "/lan/wireless5:1/channel",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"36", "36"}, {kAbsent, ""}, {kLong, kLong.substr(0, 31)}},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless5/Channel",
          .missing = "Device/Wireless5/Channel",
          .fault = "Device/Wireless5/Channel",
          .faults = {{"6", 3}, {"", 3}},
          .value = "44",
          .writes = {"/lan/wireless5:1/channel=44"},
          .too_long = TooLong{std::string(31, ' ') + "36", "", 3},
      }},
      .dump = "     +- Channel='36'",
      .variables = {{
          .name = "rss_Wl5_Channel",
          .path = "/lan/wireless5:1/Channel",
          .text = "36",
          .value = "100",
          .stored = [](RssXmlData& r) { Put(r.wlan[1].channel, "100"); },
          .read_back = "100",
          .refused = {{"", 2}, {"6", 2}, {"-36", 2}, {"10", 2}, {"101", 2}},
          .empty_code = 2,
          .section = Section::kWireless5,
      }},
  };
}

FieldRow Wireless5Country() {
  return {
      .name = "Wireless5_Country",
      .section = SectionId::kRadio,
      .field = "Country",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].country); },
      .node = "/lan/wireless5:1/country",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"SE", "SE"}, {kAbsent, ""}, {kLong, kLong.substr(0, 31)}},
      .dump = kNotDumped,
      .shown = {{
          .name = "rss_Wl5_Country",
          .path = "/lan/wireless5:1/Country",
          .text = "SE",
          .section = Section::kWireless5,
      }},
  };
}

}  // namespace

std::vector<FieldRow> Network5Rows() {
  return {
      Wireless5WirelessBSSID(),  Wireless5WirelessName(),  Wireless5EncryptionMode(),
      Wireless5EncryptionType(), Wireless5EncryptionKey(), Wireless5Channel(),
      Wireless5Country(),
  };
}

}  // namespace kio::test
