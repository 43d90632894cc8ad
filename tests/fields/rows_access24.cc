// Rows of the access control of the 2.4 GHz radio.
#include "fields/row.h"

namespace kio::test {
namespace {

// Quirk "access-switch-fault-borrows-a-name".
FieldRow Wireless24AccessControlWlAcEnbl() {
  return {
      .name = "Wireless24_AccessControl_WlAcEnbl",
      .section = SectionId::kAccess,
      .field = "WlAcEnbl",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].wlAcEnbl); },
      .node = "/lan/wireless2.4:1/accesscontrol/wlacenbl",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"1", "1"}, {"0", "0"}, {kAbsent, "2"}},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless2.4/AccessControl/WlAcEnbl",
          .missing = "Device/Wireless2.4/AccessControl/WlAcEnbl",
          .fault = "Device/Wireless2.4/AccessControl/WlEnbl",
          .faults = {{"3", 3}, {"-1", 3}},
          .value = "0",
          .writes = {"/lan/wireless2.4:1/accesscontrol/wlacenbl=0"},
      }},
      .dump = "         +- WlAcEnbl=1",
      .variables = {{
          .name = "rss_Wl2_Acl_WlAcEnbl",
          .path = "/lan/wireless2.4:1/accesscontrol/WlAcEnbl",
          .text = "1",
          .value = "0",
          .stored = [](RssXmlData& r) { r.wlan[0].wlAcEnbl = 0; },
          .read_back = "0",
          .stored_empty = [](RssXmlData& r) { r.wlan[0].wlAcEnbl = 0; },
          .section = Section::kWireless24,
      }},
  };
}

// Quirk "access-mode-always-written".
FieldRow Wireless24AccessControlWlAcMode() {
  return {
      .name = "Wireless24_AccessControl_WlAcMode",
      .section = SectionId::kAccess,
      .field = "WlAcMode",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].wlAcMode); },
      .node = "/lan/wireless2.4:1/accesscontrol/wlacmode",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"1", "1"}, {"0", "0"}, {kAbsent, "0"}},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless2.4/AccessControl/WlAcMode",
          .missing = "Device/Wireless2.4/AccessControl/WlAcMode",
          .fault = "Device/Wireless2.4/AccessControl/WlAcMode",
          .faults = {{"2", 3}, {"-1", 3}},
          .value = "0",
          .writes = {"/lan/wireless2.4:1/accesscontrol/wlacmode=0"},
          .again = {"/lan/wireless2.4:1/accesscontrol/wlacmode=0"},
      }},
      .dump = "         +- WlAcMode=1",
      .variables = {{
          .name = "rss_Wl2_Acl_WlAcMode",
          .path = "/lan/wireless2.4:1/accesscontrol/WlAcMode",
          .text = "1",
          .value = "0",
          .stored = [](RssXmlData& r) { r.wlan[0].wlAcMode = 0; },
          .read_back = "0",
          .refused = {{"2", 2}, {"-1", 2}},
          .stored_empty = [](RssXmlData& r) { r.wlan[0].wlAcMode = 0; },
          .section = Section::kWireless24,
      }},
  };
}

// No element and no node of its own: the rules are counted.
FieldRow Wireless24AccessControlAcRuleNo() {
  return {
      .name = "Wireless24_AccessControl_AcRuleNo",
      .section = SectionId::kAccess,
      .field = "AcRuleNo",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].wlAcRuleNo); },
      .dump = kNotDumped,
      .variables = {{
          .name = "rss_Wl2_Acl_AcRuleNo",
          .path = "/lan/wireless2.4:1/accesscontrol/acrule#",
          .text = "2",
          .value = "17",
          .stored = [](RssXmlData& r) { r.wlan[0].wlAcRuleNo = 17; },
          .read_back = "17",
          .stored_empty = [](RssXmlData& r) { r.wlan[0].wlAcRuleNo = 0; },
          .section = Section::kWireless24,
      }},
  };
}

// Quirk "rules-filled-from-one": a snapshot puts the first rule into entry 1. Quirk
// "rule-path-without-a-radio": the path begins with the rule.
// Quirk "active-goes-to-the-rule-of-its-value": the 1 goes to rule 1, whatever rule is named.
FieldRow Wireless24AcRule1Active() {
  return {
      .name = "Wireless24_AcRule1_Active",
      .section = SectionId::kRule,
      .field = "Active",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].acRule[0].active); },
      .node = "/lan/wireless2.4:1/accesscontrol/acrule:1/active",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"1", "1"}, {"0", "0"}, {kAbsent, "0"}},
      .first_rule =
          FirstRule{.record = [](const RssXmlData& r) { return Shown(r.wlan[0].acRule[1].active); },
                    .variable = "rss_Wl2_Acl_R01_Active"},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless2.4/AccessControl/AcRule/Active",
          .missing = "Device/Wireless2.4/AccessControl/AcRule/Active",
          .fault = "Device/Wireless2.4/AccessControl/AcRule/Active",
          .faults = {{"2", 3}, {"-1", 3}},
          .value = "0",
          .writes = {"/lan/wireless2.4:1/accesscontrol/acrule:1/active=0"},
      }},
      .dump = "             +- Active,MAC=1,02:00:00:00:00:01",
      .variables = {{
          .name = "rss_Wl2_Acl_R00_Active",
          .path = "/acrule:1/Active",
          .text = "1",
          .value = "1",
          .stored = [](RssXmlData& r) { r.wlan[0].acRule[1].active = 1; },
          .read_back = "1",
          .refused = {{"2", 2}, {"-1", 2}, {"40", 2}},
          .stored_empty = [](RssXmlData& r) { r.wlan[0].acRule[0].active = 0; },
          .section = Section::kWireless24,
      }},
  };
}

FieldRow Wireless24AcRule1MAC() {
  return {
      .name = "Wireless24_AcRule1_MAC",
      .section = SectionId::kRule,
      .field = "MAC",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].acRule[0].mac); },
      .node = "/lan/wireless2.4:1/accesscontrol/acrule:1/mac",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"02:00:00:00:00:01", "02:00:00:00:00:01"},
                {kAbsent, ""},
                {kLong, kLong.substr(0, 17)}},
      .first_rule =
          FirstRule{.record = [](const RssXmlData& r) { return Shown(r.wlan[0].acRule[1].mac); },
                    .variable = "rss_Wl2_Acl_R01_MAC"},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless2.4/AccessControl/AcRule/MAC",
          .missing = "Device/Wireless2.4/AccessControl/AcRule/MAC",
          .fault = "Device/Wireless2.4/AccessControl/AcRule/MAC",
          .faults = {{"", 3}, {" ", 3}},
          .value = "0A:03",
          .writes = {"/lan/wireless2.4:1/accesscontrol/acrule:1/mac=0A:03"},
          .too_long = TooLong{kLong, kLong.substr(0, 17), 0},
      }},
      .dump = "             +- Active,MAC=1,02:00:00:00:00:01",
      .variables = {{
          .name = "rss_Wl2_Acl_R00_MAC",
          .path = "/acrule:1/MAC",
          .text = "02:00:00:00:00:01",
          .value = "no mac at all",
          .stored = [](RssXmlData& r) { Put(r.wlan[0].acRule[0].mac, "no mac at all"); },
          .read_back = "no mac at all",
          .stored_empty = [](RssXmlData& r) { Put(r.wlan[0].acRule[0].mac, ""); },
          .section = Section::kWireless24,
      }},
  };
}

// The second rule, as a variable; its 0 goes to rule 0.
FieldRow Wireless24AcRule2Active() {
  return {
      .name = "Wireless24_AcRule2_Active",
      .section = SectionId::kRule,
      .field = "Active",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].acRule[1].active); },
      .dump = "             +- Active,MAC=0,02:00:00:00:00:02",
      .variables = {{
          .name = "rss_Wl2_Acl_R01_Active",
          .path = "/acrule:2/Active",
          .text = "0",
          .value = "0",
          .stored = [](RssXmlData& r) { r.wlan[0].acRule[0].active = 0; },
          .read_back = "0",
          .refused = {{"2", 2}, {"-1", 2}, {"99", 2}},
          .stored_empty = [](RssXmlData& r) { r.wlan[0].acRule[0].active = 0; },
          .section = Section::kWireless24,
      }},
  };
}

FieldRow Wireless24AcRule2MAC() {
  return {
      .name = "Wireless24_AcRule2_MAC",
      .section = SectionId::kRule,
      .field = "MAC",
      .record = [](const RssXmlData& r) { return Shown(r.wlan[0].acRule[1].mac); },
      .dump = "             +- Active,MAC=0,02:00:00:00:00:02",
      .variables = {{
          .name = "rss_Wl2_Acl_R01_MAC",
          .path = "/acrule:2/MAC",
          .text = "02:00:00:00:00:02",
          .value = "0A:00:00:00:00:03",
          .stored = [](RssXmlData& r) { Put(r.wlan[0].acRule[1].mac, "0A:00:00:00:00:03"); },
          .read_back = "0A:00:00:00:00:03",
          .stored_empty = [](RssXmlData& r) { Put(r.wlan[0].acRule[1].mac, ""); },
          .section = Section::kWireless24,
      }},
  };
}

}  // namespace

std::vector<FieldRow> Access24Rows() {
  return {
      Wireless24AccessControlWlAcEnbl(),
      Wireless24AccessControlWlAcMode(),
      Wireless24AccessControlAcRuleNo(),
  };
}

std::vector<FieldRow> Rule24Rows() {
  return {
      Wireless24AcRule1Active(),
      Wireless24AcRule1MAC(),
      Wireless24AcRule2Active(),
      Wireless24AcRule2MAC(),
  };
}

}  // namespace kio::test
