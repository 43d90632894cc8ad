// Rows of the access control of the 5 GHz radio.
#include "fields/row.h"

namespace kio::test {
namespace {

// Quirk "access-switch-fault-borrows-a-name".
FieldRow Wireless5AccessControlWlAcEnbl() {
  return {
      .name = "Wireless5_AccessControl_WlAcEnbl",
      .section = SectionId::kAccess,
      .field = "WlAcEnbl",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].wlAcEnbl); },
      .node = "/lan/wireless5:1/accesscontrol/wlacenbl",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"1", "1"}, {"0", "0"}, {kAbsent, "2"}},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless5/AccessControl/WlAcEnbl",
          .missing = "Device/Wireless5/AccessControl/WlAcEnbl",
          .fault = "Device/Wireless5/AccessControl/WlEnbl",
          .faults = {{"3", 3}, {"-1", 3}},
          .value = "0",
          .writes = {"/lan/wireless5:1/accesscontrol/wlacenbl=0"},
      }},
      .dump = "         +- WlAcEnbl=1",
      .variables = {{
          .name = "rss_Wl5_Acl_WlAcEnbl",
          .path = "/lan/wireless5:1/accesscontrol/WlAcEnbl",
          .text = "1",
          .value = "0",
          .stored = [](RssXmlData& r) { r.wlan[1].wlAcEnbl = 0; },
          .read_back = "0",
          .stored_empty = [](RssXmlData& r) { r.wlan[1].wlAcEnbl = 0; },
          .section = Section::kWireless5,
      }},
  };
}

// Quirk "access-mode-always-written".
FieldRow Wireless5AccessControlWlAcMode() {
  return {
      .name = "Wireless5_AccessControl_WlAcMode",
      .section = SectionId::kAccess,
      .field = "WlAcMode",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].wlAcMode); },
      .node = "/lan/wireless5:1/accesscontrol/wlacmode",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"0", "0"}, {"1", "1"}, {kAbsent, "0"}},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless5/AccessControl/WlAcMode",
          .missing = "Device/Wireless5/AccessControl/WlAcMode",
          .fault = "Device/Wireless5/AccessControl/WlAcMode",
          .faults = {{"2", 3}, {"-1", 3}},
          .value = "1",
          .writes = {"/lan/wireless5:1/accesscontrol/wlacmode=1"},
          .again = {"/lan/wireless5:1/accesscontrol/wlacmode=1"},
      }},
      .dump = "         +- WlAcMode=0",
      .variables = {{
          .name = "rss_Wl5_Acl_WlAcMode",
          .path = "/lan/wireless5:1/accesscontrol/WlAcMode",
          .text = "0",
          .value = "1",
          .stored = [](RssXmlData& r) { r.wlan[1].wlAcMode = 1; },
          .read_back = "1",
          .refused = {{"2", 2}, {"-1", 2}},
          .stored_empty = [](RssXmlData& r) { r.wlan[1].wlAcMode = 0; },
          .section = Section::kWireless5,
      }},
  };
}

// No element and no node of its own: the rules are counted.
FieldRow Wireless5AccessControlAcRuleNo() {
  return {
      .name = "Wireless5_AccessControl_AcRuleNo",
      .section = SectionId::kAccess,
      .field = "AcRuleNo",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].wlAcRuleNo); },
      .dump = kNotDumped,
      .variables = {{
          .name = "rss_Wl5_Acl_AcRuleNo",
          .path = "/lan/wireless5:1/accesscontrol/acrule#",
          .text = "1",
          .value = "40",
          .stored = [](RssXmlData& r) { r.wlan[1].wlAcRuleNo = 40; },
          .read_back = "40",
          .stored_empty = [](RssXmlData& r) { r.wlan[1].wlAcRuleNo = 0; },
          .section = Section::kWireless5,
      }},
  };
}

// Quirk "rules-filled-from-one": a snapshot puts the first rule into entry 1. Quirk
// "rule-path-without-a-radio": the path begins with the rule.
FieldRow Wireless5AcRule1Active() {
  return {
      .name = "Wireless5_AcRule1_Active",
      .section = SectionId::kRule,
      .field = "Active",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].acRule[0].active); },
      .node = "/lan/wireless5:1/accesscontrol/acrule:1/active",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"1", "1"}, {"0", "0"}, {kAbsent, "0"}},
      .first_rule =
          FirstRule{.record = [](const RssXmlData& r) { return Shown(r.wlan[1].acRule[1].active); },
                    .variable = "rss_Wl5_Acl_R01_Active"},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless5/AccessControl/AcRule/Active",
          .missing = "Device/Wireless5/AccessControl/AcRule/Active",
          .fault = "Device/Wireless5/AccessControl/AcRule/Active",
          .faults = {{"2", 3}, {"-1", 3}},
          .value = "0",
          .writes = {"/lan/wireless5:1/accesscontrol/acrule:1/active=0"},
      }},
      .dump = "             +- Active,MAC=1,02:00:00:00:00:05",
      .variables = {{
          .name = "rss_Wl5_Acl_R00_Active",
          .path = "/acrule:1/Active",
          .text = "1",
          .value = "0",
          .stored = [](RssXmlData& r) { r.wlan[1].acRule[0].active = 0; },
          .read_back = "0",
          .refused = {{"2", 2}, {"-1", 2}},
          .stored_empty = [](RssXmlData& r) { r.wlan[1].acRule[0].active = 0; },
          .section = Section::kWireless5,
      }},
  };
}

FieldRow Wireless5AcRule1MAC() {
  return {
      .name = "Wireless5_AcRule1_MAC",
      .section = SectionId::kRule,
      .field = "MAC",
      .radio = 1,
      .record = [](const RssXmlData& r) { return Shown(r.wlan[1].acRule[0].mac); },
      .node = "/lan/wireless5:1/accesscontrol/acrule:1/mac",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"02:00:00:00:00:05", "02:00:00:00:00:05"},
                {kAbsent, ""},
                {kLong, kLong.substr(0, 17)}},
      .first_rule =
          FirstRule{.record = [](const RssXmlData& r) { return Shown(r.wlan[1].acRule[1].mac); },
                    .variable = "rss_Wl5_Acl_R01_MAC"},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/Wireless5/AccessControl/AcRule/MAC",
          .missing = "Device/Wireless5/AccessControl/AcRule/MAC",
          .fault = "Device/Wireless5/AccessControl/AcRule/MAC",
          .faults = {{"", 3}, {" ", 3}},
          .value = "0A:03",
          .writes = {"/lan/wireless5:1/accesscontrol/acrule:1/mac=0A:03"},
          .too_long = TooLong{kLong, kLong.substr(0, 17), 0},
      }},
      .dump = "             +- Active,MAC=1,02:00:00:00:00:05",
      .variables = {{
          .name = "rss_Wl5_Acl_R00_MAC",
          .path = "/acrule:1/MAC",
          .text = "02:00:00:00:00:05",
          .value = "0A:00:00:00:00:05",
          .stored = [](RssXmlData& r) { Put(r.wlan[1].acRule[0].mac, "0A:00:00:00:00:05"); },
          .read_back = "0A:00:00:00:00:05",
          .stored_empty = [](RssXmlData& r) { Put(r.wlan[1].acRule[0].mac, ""); },
          .section = Section::kWireless5,
      }},
  };
}

}  // namespace

std::vector<FieldRow> Access5Rows() {
  return {
      Wireless5AccessControlWlAcEnbl(),
      Wireless5AccessControlWlAcMode(),
      Wireless5AccessControlAcRuleNo(),
  };
}

std::vector<FieldRow> Rule5Rows() {
  return {
      Wireless5AcRule1Active(),
      Wireless5AcRule1MAC(),
  };
}

}  // namespace kio::test
