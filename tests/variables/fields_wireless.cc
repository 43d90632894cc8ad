// Variables of the radios.
#include "variables/fields.h"

namespace kio::test {
namespace {

const std::string kLongName(33, 'n');
const std::string kLongKey(65, 'k');

std::vector<StoredField> Switches24() {
  return {
      {"rss_Wl2_WlEnbl",
       "/lan/wireless2.4:1/WlEnbl",
       "1",
       "0",
       [](RssXmlData& r) { r.wlan[0].wlEnbl = 0; },
       "0",
       {},
       0,
       [](RssXmlData& r) { r.wlan[0].wlEnbl = 0; },
       false,
       Section::kWireless24},
      {"rss_Wl2_WlSchedule",
       "/lan/wireless2.4:1/WlSchedule",
       "0",
       "1",
       [](RssXmlData& r) { r.wlan[0].wlSchedule = 1; },
       "1",
       {},
       0,
       [](RssXmlData& r) { r.wlan[0].wlSchedule = 0; },
       false,
       Section::kWireless24},
  };
}

std::vector<StoredField> Texts24() {
  return {
      {"rss_Wl2_WirelessName",
       "/lan/wireless2.4:1/WirelessName",
       "Home",
       "Garden",
       [](RssXmlData& r) { Put(r.wlan[0].wirelessName, "Garden"); },
       "Garden",
       {{"", 10}, {kLongName, 10}, {"\x01", 11}},
       10,
       Nothing(),
       false,
       Section::kWireless24},
      {"rss_Wl2_EncryptionMode",
       "/lan/wireless2.4:1/EncryptionMode",
       "WPA2",
       "WEP",
       [](RssXmlData& r) {
         Put(r.wlan[0].encryptionMode, "WEP");
         r.wlan[0].encryptionModeCode = 1;
       },
       "WEP",
       {{"WPA3", 10}, {"", 10}, {"WPAWPA", 10}},
       10,
       Nothing(),
       true,
       Section::kWireless24},
      // The empty text is a word of this table.
      {"rss_Wl2_EncryptionType",
       "/lan/wireless2.4:1/EncryptionType",
       "AES",
       "TKIP",
       [](RssXmlData& r) {
         Put(r.wlan[0].encryptionType, "TKIP");
         r.wlan[0].encryptionTypeCode = 3;
       },
       "TKIP",
       {{"TKIPAES", 10}, {"None", 10}, {" ", 10}},
       0,
       [](RssXmlData& r) {
         Put(r.wlan[0].encryptionType, "");
         r.wlan[0].encryptionTypeCode = 5;
       },
       true,
       Section::kWireless24},
  };
}

std::vector<StoredField> KeyAndChannel24() {
  return {
      {"rss_Wl2_EncryptionKey",
       "/lan/wireless2.4:1/EncryptionKey",
       "home-key-24",
       "garden-key",
       [](RssXmlData& r) { Put(r.wlan[0].encryptionKey, "garden-key"); },
       "garden-key",
       {{kLongKey, 10}, {"k\x7F", 11}},
       0,
       [](RssXmlData& r) { Put(r.wlan[0].encryptionKey, ""); },
       false,
       Section::kWireless24},
      {"rss_Wl2_Channel",
       "/lan/wireless2.4:1/Channel",
       "6",
       "13",
       [](RssXmlData& r) { Put(r.wlan[0].channel, "13"); },
       "13",
       {{"", 2}, {"14", 2}, {"-1", 2}, {"36", 2}, {"06", 2}, {"6 ", 2}, {"x", 2}},
       2,
       Nothing(),
       false,
       Section::kWireless24},
  };
}

std::vector<StoredField> Texts5() {
  return {
      {"rss_Wl5_WirelessName",
       "/lan/wireless5:1/WirelessName",
       "Home-5",
       "Garden-5",
       [](RssXmlData& r) { Put(r.wlan[1].wirelessName, "Garden-5"); },
       "Garden-5",
       {{"", 10}, {"12345678901234567890123456789012", 10}, {"\x01", 11}},
       10,
       Nothing(),
       false,
       Section::kWireless5},
      {"rss_Wl5_EncryptionMode",
       "/lan/wireless5:1/EncryptionMode",
       "WPAWPA2",
       "None",
       [](RssXmlData& r) {
         Put(r.wlan[1].encryptionMode, "None");
         r.wlan[1].encryptionModeCode = 0;
       },
       "None",
       {{"AES", 10}, {"", 10}, {"Non", 10}},
       10,
       Nothing(),
       true,
       Section::kWireless5},
      {"rss_Wl5_EncryptionType",
       "/lan/wireless5:1/EncryptionType",
       "AUTO",
       "SHARED",
       [](RssXmlData& r) {
         Put(r.wlan[1].encryptionType, "SHARED");
         r.wlan[1].encryptionTypeCode = 2;
       },
       "SHARED",
       {{"WEP", 10}, {"AUT", 10}},
       0,
       [](RssXmlData& r) {
         Put(r.wlan[1].encryptionType, "");
         r.wlan[1].encryptionTypeCode = 5;
       },
       true,
       Section::kWireless5},
  };
}

std::vector<StoredField> KeyAndChannel5() {
  return {
      {"rss_Wl5_EncryptionKey",
       "/lan/wireless5:1/EncryptionKey",
       "home-key-50",
       "garden-key-5",
       [](RssXmlData& r) { Put(r.wlan[1].encryptionKey, "garden-key-5"); },
       "garden-key-5",
       {{"1234567890123456789012345678901234567890123456789012345678901234", 10}, {"\xFF", 11}},
       0,
       [](RssXmlData& r) { Put(r.wlan[1].encryptionKey, ""); },
       false,
       Section::kWireless5},
      {"rss_Wl5_Channel",
       "/lan/wireless5:1/Channel",
       "36",
       "100",
       [](RssXmlData& r) { Put(r.wlan[1].channel, "100"); },
       "100",
       {{"", 2}, {"6", 2}, {"-36", 2}, {"10", 2}, {"101", 2}},
       2,
       Nothing(),
       false,
       Section::kWireless5},
  };
}

}  // namespace

std::vector<StoredField> Wireless24Fields() {
  return Joined({Switches24(), Texts24(), KeyAndChannel24()});
}

std::vector<StoredField> Wireless5Fields() {
  const std::vector<StoredField> switches = {
      {"rss_Wl5_WlEnbl",
       "/lan/wireless5:1/WlEnbl",
       "1",
       "0",
       [](RssXmlData& r) { r.wlan[1].wlEnbl = 0; },
       "0",
       {},
       0,
       [](RssXmlData& r) { r.wlan[1].wlEnbl = 0; },
       false,
       Section::kWireless5},
      {"rss_Wl5_WlSchedule",
       "/lan/wireless5:1/WlSchedule",
       "1",
       "0",
       [](RssXmlData& r) { r.wlan[1].wlSchedule = 0; },
       "0",
       {},
       0,
       [](RssXmlData& r) { r.wlan[1].wlSchedule = 0; },
       false,
       Section::kWireless5},
  };
  return Joined({switches, Texts5(), KeyAndChannel5()});
}

std::vector<ReadOnlyField> WirelessTexts() {
  constexpr Section k24 = Section::kWireless24;
  constexpr Section k5 = Section::kWireless5;
  return {
      {"rss_Wl2_WirelessBSSID", "/lan/wireless2.4:1/WirelessBSSID", "02:00:00:00:24:01", {}, k24},
      {"rss_Wl2_Country", "/lan/wireless2.4:1/Country", "NO", {}, k24},
      {"rss_Wl2_ChannelList",
       "/lan/wireless2.4:1/ChannelList",
       "0,1,2,3,4,5,6,7,8,9,10,11,12,13",
       {},
       k24},
      {"rss_Wl2_ChannelUsing",
       "/lan/wireless2.4:1/ChannelUsing",
       "11",
       {{Kind::kGetText, "/lan/wireless2.4:1/ChannelUsing", "11"}},
       k24},
      {"rss_Wl2_WirelessName_Validate",
       "/lan/wireless2.4:1/WirelessName_Validate",
       "0,32,1",
       {},
       k24},
      {"rss_Wl2_EncryptionKey_Validate",
       "/lan/wireless2.4:1/EncryptionKey_Validate",
       "0,64,0",
       {},
       k24},
      {"rss_Wl5_WirelessBSSID", "/lan/wireless5:1/WirelessBSSID", "02:00:00:00:50:01", {}, k5},
      {"rss_Wl5_Country", "/lan/wireless5:1/Country", "SE", {}, k5},
      {"rss_Wl5_ChannelList", "/lan/wireless5:1/ChannelList", "0,36,40,44,48,100", {}, k5},
      {"rss_Wl5_ChannelUsing",
       "/lan/wireless5:1/ChannelUsing",
       "48",
       {{Kind::kGetText, "/lan/wireless5:1/ChannelUsing", "48"}},
       k5},
      {"rss_Wl5_WirelessName_Validate", "/lan/wireless5:1/WirelessName_Validate", "0,31,1", {}, k5},
      {"rss_Wl5_EncryptionKey_Validate",
       "/lan/wireless5:1/EncryptionKey_Validate",
       "0,63,0",
       {},
       k5},
  };
}

}  // namespace kio::test
