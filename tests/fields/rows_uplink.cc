// Rows of the uplink but its addresses.
#include "fields/row.h"

namespace kio::test {
namespace {

FieldRow UpLinkConnectionConfigurable() {
  return {
      .name = "UpLinkConnection_Configurable",
      .section = SectionId::kUplink,
      .field = "Configurable",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.configurable); },
      .node = "/uplink/configurable",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"1", "1"}, {"0", "0"}, {"2", "0"}, {kAbsent, "0"}},
      .dump = "     +- Configurable=1",
      .shown = {{
          .name = "rss_Upl_Configurable",
          .path = "/uplink/Configurable",
          .text = "1",
          .section = Section::kUplink,
      }},
  };
}

FieldRow UpLinkConnectionHardwareType() {
  return {
      .name = "UpLinkConnection_HardwareType",
      .section = SectionId::kUplink,
      .field = "HardwareType",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.hardwareType); },
      .code = [](const RssXmlData& r) { return r.upLink.hardwareTypeCode; },
      .node = "/uplink/hardwaretype",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"Ethernet", "Ethernet", 0},
                {"wwanapn", "WWanAPN", 4},
                {kAbsent, "", -1},
                {kLong, kLong.substr(0, 31), -1}},
      .documents = {{
                        .scenes = {Scene::kAdsl},
                        .element = "Device/UpLinkConnection/HardwareType",
                        .missing = "Device/UpLinkConnection/HardwareType",
                        .fault = "Device/Uplink/HardwareType",
                        .faults = {{"Token Ring", 3}, {"", 3}},
                        .value = "VDSL",
                        .code = 2,
                        .writes = {"/uplink/hardwaretype=VDSL"},
                        .too_long = TooLong{std::string(24, ' ') + "Ethernet", "Etherne", 3},
                    },
                    {
                        .scenes = {Scene::kDsl10},
                        .element = "Device/UpLinkConnection/HardwareType",
                        .missing = "Device/UpLinkConnection/HardwareType",
                        .fault = "Device/Uplink/HardwareType",
                        .faults = {{"Token Ring", 3}, {"", 3}},
                        .value = "Ethernet",
                        .code = 0,
                    }},
      .dump = "     +- HardwareType='Ethernet',0",
      .dumped_in = Scene::kDhcp,
      .variables = {{
          .name = "rss_Upl_HardwareType",
          .path = "/uplink/HardwareType",
          .text = "Ethernet",
          .value = "WWan802.11",
          .stored =
              [](RssXmlData& r) {
                Put(r.upLink.hardwareType, "WWan802.11");
                r.upLink.hardwareTypeCode = 3;
              },
          .read_back = "WWan802.11",
          .refused = {{"Fiber", 10}, {"", 10}, {"Ethernet ", 10}, {"Ether", 10}, {"3", 10}},
          .empty_code = 10,
          .is_keyword = true,
          .section = Section::kUplink,
      }},
  };
}

// Quirk "value-for-a-path".
FieldRow UpLinkConnectionHardwareSupport() {
  return {
      .name = "UpLinkConnection_HardwareSupport",
      .section = SectionId::kUplink,
      .field = "HardwareSupport",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.hardwareSupport); },
      .node = "/uplink/hardwaresupport",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"Ethernet,ADSL,VDSL,WWan802.11,WWanAPN,DSL",
                 "Ethernet,ADSL,VDSL,WWan802.11,WWanAPN,DSL"},
                {kAbsent, ""},
                {kLong, kLong.substr(0, 127)}},
      .dump = kNotDumped,
      .shown = {{
          .name = "rss_Upl_HardwareSupport",
          .path = "Ethernet,ADSL,VDSL,WWan802.11,WWanAPN,DSL",
          .text = "Ethernet,ADSL,VDSL,WWan802.11,WWanAPN,DSL",
          .section = Section::kUplink,
      }},
  };
}

FieldRow UpLinkConnectionConnType() {
  return {
      .name = "UpLinkConnection_ConnType",
      .section = SectionId::kUplink,
      .field = "ConnType",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.connType); },
      .code = [](const RssXmlData& r) { return r.upLink.connTypeCode; },
      .node = "/uplink/conntype",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"DHCP", "DHCP", 0},
                {"pppOA", "PPPoA", 3},
                {kAbsent, "", -1},
                {kLong, kLong.substr(0, 127), -1}},
      .documents = {{
          .scenes = {Scene::kStatic, Scene::kStatic10},
          .element = "Device/UpLinkConnection/ConnType",
          .missing = "Device/UpLinkConnection/ConnType",
          .fault = "Device/Uplink/ConnType",
          .faults = {{"Token Ring", 3}, {"", 3}},
          .value = "DHCP",
          .code = 0,
          .writes = {"/uplink/conntype=DHCP"},
          .too_long = TooLong{std::string(28, ' ') + "DHCP", "DHC", 3},
      }},
      .dump = kNotDumped,
      .variables = {{
          .name = "rss_Upl_ConnType",
          .path = "/uplink/ConnType",
          .text = "DHCP",
          .value = "PPPoE",
          .stored =
              [](RssXmlData& r) {
                Put(r.upLink.connType, "PPPoE");
                r.upLink.connTypeCode = 2;
              },
          .read_back = "PPPoE",
          .refused = {{"PPP", 10}, {"", 10}, {"PPPoEA", 10}, {" DHCP", 10}},
          .empty_code = 10,
          .is_keyword = true,
          .section = Section::kUplink,
      }},
  };
}

// Quirk "mtu-is-never-written": no node holds it, and for the DSL circuit alone it is verified.
FieldRow UpLinkConnectionMTU() {
  return {
      .name = "UpLinkConnection_MTU",
      .section = SectionId::kUplink,
      .field = "MTU",
      .versions = Versions::kOnly10,
      .record = [](const RssXmlData& r) { return Shown(r.upLink.mtu); },
      .documents = {{
                        .scenes = {Scene::kDsl10},
                        .element = "Device/UpLinkConnection/MTU",
                        .missing = "Device/UpLinkConnection/MTU",
                        .fault = "Device/Uplink/DSL/MTU",
                        .faults = {{"0", 3}, {"1493", 3}, {"-1", 3}},
                        .value = "1492",
                    },
                    {
                        .scenes = {Scene::kDhcp10},
                        .element = "Device/UpLinkConnection/MTU",
                        .missing = "Device/UpLinkConnection/MTU",
                        .value = "9999",
                    }},
      .dump = kNotDumped,
  };
}

FieldRow UpLinkConnectionLoginUserName() {
  return {
      .name = "UpLinkConnection_LoginUserName",
      .section = SectionId::kUplink,
      .field = "LoginUserName",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.loginUserName); },
      .node = "/uplink/loginusername",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"line-user", "line-user"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
          .scenes = {Scene::kPppoe, Scene::kPppoe10},
          .element = "Device/UpLinkConnection/LoginUserName",
          .missing = "Device/UpLinkConnection/LoginUserName",
          .fault = "Device/Uplink/LoginUserName",
          .faults = {{"", 10}, {std::string(65, 'u'), 10}, {"u\x7F", 11}},
          .value = "other user",
          .writes = {"/uplink/loginusername=other user"},
          .too_long = TooLong{kLong, kLong.substr(0, 127), 10},
      }},
      .dump = "     +- LoginUserName='line-user'",
      .variables = {{
          .name = "rss_Upl_LoginUserName",
          .path = "/uplink/LoginUserName",
          .text = "line-user",
          .value = "other user",
          .stored = [](RssXmlData& r) { Put(r.upLink.loginUserName, "other user"); },
          .read_back = "other user",
          .refused = {{"", 10}, {std::string(65, 'x'), 10}, {"\x7F", 11}},
          .empty_code = 10,
          .section = Section::kUplink,
      }},
  };
}

FieldRow UpLinkConnectionLoginPassword() {
  return {
      .name = "UpLinkConnection_LoginPassword",
      .section = SectionId::kUplink,
      .field = "LoginPassword",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.loginPassword); },
      .node = "/uplink/loginpassword",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"line-pass", "line-pass"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
          .scenes = {Scene::kPppoe, Scene::kPppoe10},
          .element = "Device/UpLinkConnection/LoginPassword",
          .missing = "Device/UpLinkConnection/LoginPassword",
          .fault = "Device/Uplink/LoginPassword",
          .faults = {{"", 10}, {std::string(65, 'p'), 10}, {"p\x7F", 11}},
          .value = "p4ss",
          .writes = {"/uplink/loginpassword=p4ss"},
          .too_long = TooLong{kLong, kLong.substr(0, 127), 10},
      }},
      .dump = "     +- LoginPassword='line-pass'",
      .variables = {{
          .name = "rss_Upl_LoginPassword",
          .path = "/uplink/LoginPassword",
          .text = "line-pass",
          .value = "p4ss",
          .stored = [](RssXmlData& r) { Put(r.upLink.loginPassword, "p4ss"); },
          .read_back = "p4ss",
          .refused = {{"", 10}, {std::string(65, 'x'), 10}, {"\x1F", 11}},
          .empty_code = 10,
          .section = Section::kUplink,
      }},
  };
}

FieldRow UpLinkConnectionLoginUserNameValidate() {
  return {
      .name = "UpLinkConnection_LoginUserName_Validate",
      .section = SectionId::kUplink,
      .field = "LoginUserName_Validate",
      .record = [](const RssXmlData& r) { return Shown(r.loginUserNameValidate); },
      .node = "/uplink/loginusername_validate",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"0,64,1", "0,64,1"},
                {kAbsent, ""},
                {"0,9,1,0,0,&lt;", "0,9,1,0,0,<"},
                {kLong, kLong.substr(0, 127)}},
      .dump = kNotDumped,
      .shown = {{
          .name = "rss_Upl_LoginUserName_Validate",
          .path = "/uplink/LoginUserName_Validate",
          .text = "0,64,1",
          .section = Section::kUplink,
      }},
  };
}

FieldRow UpLinkConnectionLoginPasswordValidate() {
  return {
      .name = "UpLinkConnection_LoginPassword_Validate",
      .section = SectionId::kUplink,
      .field = "LoginPassword_Validate",
      .record = [](const RssXmlData& r) { return Shown(r.loginPasswordValidate); },
      .node = "/uplink/loginpassword_validate",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"0,64,1", "0,64,1"},
                {kAbsent, ""},
                {"0,9,1,0,0,&lt;", "0,9,1,0,0,<"},
                {kLong, kLong.substr(0, 127)}},
      .dump = kNotDumped,
      .shown = {{
          .name = "rss_Upl_LoginPassword_Validate",
          .path = "/uplink/LoginPassword_Validate",
          .text = "0,63,2",
          .section = Section::kUplink,
      }},
  };
}

}  // namespace

std::vector<FieldRow> UplinkRows() {
  return {
      UpLinkConnectionConfigurable(),
      UpLinkConnectionHardwareType(),
      UpLinkConnectionHardwareSupport(),
      UpLinkConnectionConnType(),
      UpLinkConnectionMTU(),
      UpLinkConnectionLoginUserName(),
      UpLinkConnectionLoginPassword(),
  };
}

std::vector<FieldRow> UplinkRuleRows() {
  return {
      UpLinkConnectionLoginUserNameValidate(),
      UpLinkConnectionLoginPasswordValidate(),
  };
}

}  // namespace kio::test
