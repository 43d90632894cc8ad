// Rows of the addresses of a static uplink.
#include "fields/row.h"

namespace kio::test {
namespace {

FieldRow UpLinkConnectionIP() {
  return {
      .name = "UpLinkConnection_IP",
      .section = SectionId::kUplink,
      .field = "IP",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.ip); },
      .node = "/uplink/ip",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"10.0.0.2", "10.0.0.2"}, {kAbsent, ""}, {kLong, kLong.substr(0, 15)}},
      .documents = {{
          .scenes = {Scene::kStatic, Scene::kStatic10},
          .element = "Device/UpLinkConnection/IP",
          .missing = "Device/UpLinkConnection/IP",
          .fault = "Device/Uplink/IP",
          .faults = {{"", 3}, {"10.0.0.0", 3}, {"10.0.0", 3}},
          .value = "192.168.1.2",
          .writes = {"/uplink/ip=192.168.1.2"},
          .too_long = TooLong{"192.168.100.1001", "192.168.100.100", 0},
      }},
      .dump = "     +- IP,NetMask='10.0.0.2,255.255.255.0'",
      .variables = {{
          .name = "rss_Upl_IP",
          .path = "/uplink/IP",
          .text = "10.0.0.2",
          .value = "192.168.1.2",
          .stored = [](RssXmlData& r) { Put(r.upLink.ip, "192.168.1.2"); },
          .read_back = "192.168.1.2",
          .refused = {{"", 2},
                      {"1.2.3", 2},
                      {"127.0.0.1", 2},
                      {"10.0.0.0", 2},
                      {"224.0.0.1", 2},
                      {"host", 2}},
          .empty_code = 2,
          .section = Section::kUplink,
      }},
  };
}

FieldRow UpLinkConnectionNetMask() {
  return {
      .name = "UpLinkConnection_NetMask",
      .section = SectionId::kUplink,
      .field = "NetMask",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.netMask); },
      .node = "/uplink/netmask",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"255.255.255.0", "255.255.255.0"}, {kAbsent, ""}, {kLong, kLong.substr(0, 15)}},
      .documents = {{
          .scenes = {Scene::kStatic, Scene::kStatic10},
          .element = "Device/UpLinkConnection/NetMask",
          .missing = "Device/UpLinkConnection/NetMask",
          .fault = "Device/Uplink/NetMask",
          .faults = {{"", 3}, {"255.0.255.0", 3}},
          .value = "255.255.0.0",
          .writes = {"/uplink/netmask=255.255.0.0"},
          .too_long = TooLong{"255.255.255.000xyz", "255.255.255.000", 0},
      }},
      .dump = "     +- IP,NetMask='10.0.0.2,255.255.255.0'",
      .variables = {{
          .name = "rss_Upl_NetMask",
          .path = "/uplink/NetMask",
          .text = "255.255.255.0",
          .value = "255.255.0.0",
          .stored = [](RssXmlData& r) { Put(r.upLink.netMask, "255.255.0.0"); },
          .read_back = "255.255.0.0",
          .refused = {{"", 2}, {"255.0.255.0", 2}, {"255.255.255", 2}, {"256.0.0.0", 2}},
          .empty_code = 2,
          .section = Section::kUplink,
      }},
  };
}

FieldRow UpLinkConnectionGateway() {
  return {
      .name = "UpLinkConnection_Gateway",
      .section = SectionId::kUplink,
      .field = "Gateway",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.gateway); },
      .node = "/uplink/gateway",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"10.0.0.1", "10.0.0.1"}, {kAbsent, ""}, {kLong, kLong.substr(0, 15)}},
      .documents = {{
          .scenes = {Scene::kStatic, Scene::kStatic10},
          .element = "Device/UpLinkConnection/Gateway",
          .missing = "Device/UpLinkConnection/Gateway",
          .fault = "Device/Uplink/Gateway",
          .faults = {{"", 3}, {"224.0.0.1", 3}},
          .value = "172.16.0.254",
          .writes = {"/uplink/gateway=172.16.0.254"},
          .too_long = TooLong{"192.168.100.1002", "192.168.100.100", 0},
      }},
      .dump = "     +- Gateway='10.0.0.1'",
      .variables = {{
          .name = "rss_Upl_Gateway",
          .path = "/uplink/Gateway",
          .text = "10.0.0.1",
          .value = "172.16.0.254",
          .stored = [](RssXmlData& r) { Put(r.upLink.gateway, "172.16.0.254"); },
          .read_back = "172.16.0.254",
          .refused = {{"", 2}, {"0.0.0.1", 2}, {"1.2.3.256", 2}},
          .empty_code = 2,
          .section = Section::kUplink,
      }},
  };
}

// Quirk "value-for-a-path".
FieldRow UpLinkConnectionDNS() {
  return {
      .name = "UpLinkConnection_DNS",
      .section = SectionId::kUplink,
      .field = "DNS",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.dns); },
      .node = "/uplink/dns",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"10.0.0.3", "10.0.0.3"}, {kAbsent, ""}, {kLong, kLong.substr(0, 15)}},
      .documents = {{
          .scenes = {Scene::kStatic, Scene::kStatic10},
          .element = "Device/UpLinkConnection/DNS",
          .missing = "Device/UpLinkConnection/DNS",
          .fault = "Device/Uplink/DNS",
          .faults = {{"127.0.0.1", 3}, {"x", 3}},
          .value = "9.9.9.9",
          .writes = {"/uplink/dns=9.9.9.9"},
          .too_long = TooLong{"192.168.100.1003", "192.168.100.100", 0},
      }},
      .dump = "     +- DNS='10.0.0.3'",
      .variables = {{
          .name = "rss_Upl_DNS",
          .path = "10.0.0.3",
          .text = "10.0.0.3",
          .value = "9.9.9.9",
          .stored = [](RssXmlData& r) { Put(r.upLink.dns, "9.9.9.9"); },
          .read_back = "9.9.9.9",
          .refused = {{"", 2}, {"127.0.0.1", 2}, {"9.9.9", 2}},
          .empty_code = 2,
          .section = Section::kUplink,
      }},
  };
}

}  // namespace

std::vector<FieldRow> AddressRows() {
  return {
      UpLinkConnectionIP(),
      UpLinkConnectionNetMask(),
      UpLinkConnectionGateway(),
      UpLinkConnectionDNS(),
  };
}

}  // namespace kio::test
