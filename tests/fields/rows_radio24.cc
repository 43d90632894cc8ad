// Rows of the 2.4 GHz radio: what it can do and its switches.
#include "fields/row.h"

namespace kio::test {
namespace {

FieldRow Wireless24ChannelList() {
  return {
      .name = "Wireless24_ChannelList",
      .section = SectionId::kRadio,
      .field = "ChannelList",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].channelList); },
      .node = "/lan/wireless2.4:1/channellist",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"0,1,2,3,4,5,6,7,8,9,10,11,12,13", "0,1,2,3,4,5,6,7,8,9,10,11,12,13"},
                {" 1,2 ", "1,2"},
                {kAbsent, ""},
                {kLong, kLong.substr(0, 127)}},
      .dump = kNotDumped,
      .shown = {{
          .name = "rss_Wl2_ChannelList",
          .path = "/lan/wireless2.4:1/ChannelList",
          .text = "0,1,2,3,4,5,6,7,8,9,10,11,12,13",
          .section = Section::kWireless24,
      }},
  };
}

FieldRow Wireless24WirelessNameValidate() {
  return {
      .name = "Wireless24_WirelessName_Validate",
      .section = SectionId::kRadio,
      .field = "WirelessName_Validate",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].wirelessNameValidate); },
      .node = "/lan/wireless2.4:1/wirelessname_validate",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"0,32,1", "0,32,1"},
                {kAbsent, ""},
                {"0,9,1,0,0,&lt;", "0,9,1,0,0,<"},
                {kLong, kLong.substr(0, 127)}},
      .dump = kNotDumped,
      .shown = {{
          .name = "rss_Wl2_WirelessName_Validate",
          .path = "/lan/wireless2.4:1/WirelessName_Validate",
          .text = "0,32,1",
          .section = Section::kWireless24,
      }},
  };
}

FieldRow Wireless24EncryptionKeyValidate() {
  return {
      .name = "Wireless24_EncryptionKey_Validate",
      .section = SectionId::kRadio,
      .field = "EncryptionKey_Validate",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].encryptionKeyValidate); },
      .node = "/lan/wireless2.4:1/encryptionkey_validate",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"0,64,0", "0,64,0"},
                {kAbsent, ""},
                {"0,9,1,0,0,&lt;", "0,9,1,0,0,<"},
                {kLong, kLong.substr(0, 127)}},
      .dump = kNotDumped,
      .shown = {{
          .name = "rss_Wl2_EncryptionKey_Validate",
          .path = "/lan/wireless2.4:1/EncryptionKey_Validate",
          .text = "0,64,0",
          .section = Section::kWireless24,
      }},
  };
}

FieldRow Wireless24WlEnbl() {
  return {
      .name = "Wireless24_WlEnbl",
      .section = SectionId::kRadio,
      .field = "WlEnbl",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].wlEnbl); },
      .node = "/lan/wireless2.4:1/wlenbl",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"1", "1"}, {"0", "0"}, {"3", "3"}, {kAbsent, "2"}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/Wireless2.4/WlEnbl",
          .missing = "Device/Wireless2.4/WlEnbl",
          .fault = "Device/Wireless2.4/WlEnbl",
          .faults = {{"4", 3}, {"-1", 3}, {"2", 3}},
          .value = "0",
          .writes = {"/lan/wireless2.4:1/wlenbl=0"},
      }},
      .dump = "     +- WlEnbl,WlSchedule=1,0",
      .variables = {{
          .name = "rss_Wl2_WlEnbl",
          .path = "/lan/wireless2.4:1/WlEnbl",
          .text = "1",
          .value = "0",
          .stored = [](RssXmlData& r) { r.wlan[0].wlEnbl = 0; },
          .read_back = "0",
          .stored_empty = [](RssXmlData& r) { r.wlan[0].wlEnbl = 0; },
          .section = Section::kWireless24,
      }},
  };
}

FieldRow Wireless24WlSchedule() {
  return {
      .name = "Wireless24_WlSchedule",
      .section = SectionId::kRadio,
      .field = "WlSchedule",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].wlSchedule); },
      .node = "/lan/wireless2.4:1/wlschedule",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"0", "0"}, {"1", "1"}, {kAbsent, "2"}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/Wireless2.4/WlSchedule",
          .missing = "Device/Wireless2.4/WlSchedule",
          .fault = "Device/Wireless2.4/WlSchedule",
          .faults = {{"3", 3}, {"-1", 3}, {"2", 3}},
          .value = "1",
          .writes = {"/lan/wireless2.4:1/wlschedule=1"},
      }},
      .dump = "     +- WlEnbl,WlSchedule=1,0",
      .variables = {{
          .name = "rss_Wl2_WlSchedule",
          .path = "/lan/wireless2.4:1/WlSchedule",
          .text = "0",
          .value = "1",
          .stored = [](RssXmlData& r) { r.wlan[0].wlSchedule = 1; },
          .read_back = "1",
          .stored_empty = [](RssXmlData& r) { r.wlan[0].wlSchedule = 0; },
          .section = Section::kWireless24,
      }},
  };
}

}  // namespace

std::vector<FieldRow> Radio24Rows() {
  return {
      Wireless24ChannelList(), Wireless24WirelessNameValidate(), Wireless24EncryptionKeyValidate(),
      Wireless24WlEnbl(),      Wireless24WlSchedule(),
  };
}

}  // namespace kio::test
