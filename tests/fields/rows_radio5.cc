// Rows of the 5 GHz radio: what it can do and its switches.
#include "fields/row.h"

namespace kio::test {
namespace {

FieldRow Wireless5ChannelList() {
  return {
      .name = "Wireless5_ChannelList",
      .section = SectionId::kRadio,
      .field = "ChannelList",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].channelList); },
      .node = "/lan/wireless5:1/channellist",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"0,36,40,44,48,100", "0,36,40,44,48,100"},
                {" 1,2 ", "1,2"},
                {kAbsent, ""},
                {kLong, kLong.substr(0, 127)}},
      .dump = kNotDumped,
      .shown = {{
          .name = "rss_Wl5_ChannelList",
          .path = "/lan/wireless5:1/ChannelList",
          .text = "0,36,40,44,48,100",
          .section = Section::kWireless5,
      }},
  };
}

FieldRow Wireless5WirelessNameValidate() {
  return {
      .name = "Wireless5_WirelessName_Validate",
      .section = SectionId::kRadio,
      .field = "WirelessName_Validate",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].wirelessNameValidate); },
      .node = "/lan/wireless5:1/wirelessname_validate",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"0,31,1", "0,31,1"},
                {kAbsent, ""},
                {"0,9,1,0,0,&lt;", "0,9,1,0,0,<"},
                {kLong, kLong.substr(0, 127)}},
      .dump = kNotDumped,
      .shown = {{
          .name = "rss_Wl5_WirelessName_Validate",
          .path = "/lan/wireless5:1/WirelessName_Validate",
          .text = "0,31,1",
          .section = Section::kWireless5,
      }},
  };
}

FieldRow Wireless5EncryptionKeyValidate() {
  return {
      .name = "Wireless5_EncryptionKey_Validate",
      .section = SectionId::kRadio,
      .field = "EncryptionKey_Validate",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].encryptionKeyValidate); },
      .node = "/lan/wireless5:1/encryptionkey_validate",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"0,63,0", "0,63,0"},
                {kAbsent, ""},
                {"0,9,1,0,0,&lt;", "0,9,1,0,0,<"},
                {kLong, kLong.substr(0, 127)}},
      .dump = kNotDumped,
      .shown = {{
          .name = "rss_Wl5_EncryptionKey_Validate",
          .path = "/lan/wireless5:1/EncryptionKey_Validate",
          .text = "0,63,0",
          .section = Section::kWireless5,
      }},
  };
}

FieldRow Wireless5WlEnbl() {
  return {
      .name = "Wireless5_WlEnbl",
      .section = SectionId::kRadio,
      .field = "WlEnbl",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].wlEnbl); },
      .node = "/lan/wireless5:1/wlenbl",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"1", "1"}, {"0", "0"}, {"3", "3"}, {kAbsent, "2"}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/Wireless5/WlEnbl",
          .missing = "Device/Wireless5/WlEnbl",
          .fault = "Device/Wireless5/WlEnbl",
          .faults = {{"4", 3}, {"-1", 3}, {"2", 3}},
          .value = "0",
          .writes = {"/lan/wireless5:1/wlenbl=0"},
      }},
      .dump = "     +- WlEnbl,WlSchedule=1,1",
      .variables = {{
          .name = "rss_Wl5_WlEnbl",
          .path = "/lan/wireless5:1/WlEnbl",
          .text = "1",
          .value = "0",
          .stored = [](RssXmlData& r) { r.wlan[1].wlEnbl = 0; },
          .read_back = "0",
          .stored_empty = [](RssXmlData& r) { r.wlan[1].wlEnbl = 0; },
          .section = Section::kWireless5,
      }},
  };
}

FieldRow Wireless5WlSchedule() {
  return {
      .name = "Wireless5_WlSchedule",
      .section = SectionId::kRadio,
      .field = "WlSchedule",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].wlSchedule); },
      .node = "/lan/wireless5:1/wlschedule",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"1", "1"}, {"0", "0"}, {kAbsent, "2"}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/Wireless5/WlSchedule",
          .missing = "Device/Wireless5/WlSchedule",
          .fault = "Device/Wireless5/WlSchedule",
          .faults = {{"3", 3}, {"-1", 3}, {"2", 3}},
          .value = "0",
          .writes = {"/lan/wireless5:1/wlschedule=0"},
      }},
      .dump = "     +- WlEnbl,WlSchedule=1,1",
      .variables = {{
          .name = "rss_Wl5_WlSchedule",
          .path = "/lan/wireless5:1/WlSchedule",
          .text = "1",
          .value = "0",
          .stored = [](RssXmlData& r) { r.wlan[1].wlSchedule = 0; },
          .read_back = "0",
          .stored_empty = [](RssXmlData& r) { r.wlan[1].wlSchedule = 0; },
          .section = Section::kWireless5,
      }},
  };
}

}  // namespace

std::vector<FieldRow> Radio5Rows() {
  return {
      Wireless5ChannelList(), Wireless5WirelessNameValidate(), Wireless5EncryptionKeyValidate(),
      Wireless5WlEnbl(),      Wireless5WlSchedule(),
  };
}

}  // namespace kio::test
