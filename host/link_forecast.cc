#include "link_forecast.h"

#include <kioapp/platform.h>
#include <strings.h>

#include <string_view>

#include "node_changes.h"
#include "nodes.h"

namespace kiohost {
namespace {

constexpr std::string_view kRouterMode = "/sys/routerenbl";
constexpr std::string_view kUplinkAddress = "/uplink/ip";
constexpr std::string_view kUplinkKind = "/uplink/conntype";
constexpr std::string_view kStations = "/runtime/easyroaming/connstainfo/sta:";

struct Radio {
  const char* band;
  const char* interface;  // how the names of its interfaces begin
  unsigned int action;
};

constexpr Radio kRadios[] = {{"2.4", "wl0", KIOAPP_SYNC_WLAN}, {"5", "wl1", KIOAPP_SYNC_WLAN_5G}};

bool IsLoopback(const std::string& address) {
  return address.starts_with("127.") || address == "::1";
}

// An IPv6 address that is used on the own link or site alone.
bool IsLocalIPv6(const std::string& address) {
  return address.starts_with("fe80:") || address.starts_with("fc") || address.starts_with("fd");
}

// Whether two IPv4 addresses share their first three numbers.
bool ShareNetwork(const std::string& a, const std::string& b) {
  const size_t end = a.rfind('.');
  return end != std::string::npos && b.rfind('.') == end && a.compare(0, end, b, 0, end) == 0;
}

// The radio that the list of stations names for a client; null when it is in none.
const Radio* RadioOf(const std::string& mac, const std::vector<Node>& nodes) {
  for (const Node& node : nodes) {
    const bool is_station = strncasecmp(node.path.c_str(), kStations.data(), kStations.size()) == 0;
    if (!is_station || strcasecmp(node.text.c_str(), mac.c_str()) != 0 || mac.empty()) {
      continue;
    }
    const std::string station = node.path.substr(0, node.path.rfind('/'));
    const std::string interface = TextIn(nodes, station + "/ifname");
    for (const Radio& radio : kRadios) {
      if (interface.starts_with(radio.interface)) {
        return &radio;
      }
    }
  }
  return nullptr;
}

LinkForecast::Network NetworkOf(const Radio& radio, const std::vector<Node>& nodes) {
  const std::string node = RadioNodes(radio.band);
  return {radio.band, TextIn(nodes, node + "wirelessname"), TextIn(nodes, node + "encryptionmode"),
          TextIn(nodes, node + "wlenbl") == "1"};
}

// Finds out which way the client comes; the radio too, if the list of stations has it.
const Radio* FindWay(const LinkEnds& ends, const std::vector<Node>& nodes, LinkForecast* link) {
  const std::string lan = TextIn(nodes, kLanAddressNode);
  if (IsLoopback(ends.peer_address)) {
    link->by = "host";
    link->known.emplace_back("the client runs on the router itself");
    return nullptr;
  }
  if (TextIn(nodes, kUplinkKind) == "Static" &&
      TextIn(nodes, kUplinkAddress) == ends.local_address) {
    link->by = "uplink";
    link->known.emplace_back("the client uses the router's address at the uplink");
    return nullptr;
  }
  if (const Radio* radio = RadioOf(ends.mac, nodes); radio != nullptr) {
    link->by = std::string("radio ") + radio->band;
    link->known.push_back("the list of stations has the client at the " + std::string(radio->band) +
                          " GHz radio");
    link->assumed.emplace_back("the client has not moved since the stations were listed");
    return radio;
  }
  if (ShareNetwork(ends.peer_address, lan) || IsLocalIPv6(ends.peer_address)) {
    link->by = "lan";
    link->known.emplace_back("the address of the client is one of the LAN");
    link->assumed.emplace_back("the LAN has a netmask of 24 bits");
    return nullptr;
  }
  link->by = "uplink";
  link->known.emplace_back("the address of the client is none of the LAN");
  link->assumed.emplace_back("what is not on the LAN comes by the uplink");
  return nullptr;
}

// A client of the LAN, at a cable or at a radio that is not known.
void ForecastLan(const std::vector<Node>& after, unsigned int actions, LinkForecast* link) {
  for (const Radio& radio : kRadios) {
    if ((actions & radio.action) != 0) {
      link->drops = true;
      link->known.push_back("the " + std::string(radio.band) + " GHz radio restarts");
      link->rejoin.push_back(NetworkOf(radio, after));
    }
  }
  if (link->drops) {
    link->assumed.emplace_back(
        "the client may be at a radio that restarts; at a cable, or at another radio, it stays");
  }
}

}  // namespace

LinkForecast ForecastLink(const LinkEnds& ends, const std::vector<Node>& before,
                          const std::vector<Node>& after, unsigned int actions) {
  LinkForecast link;
  const Radio* radio = FindWay(ends, before, &link);
  if (link.by == "host") {
    return link;
  }
  if (link.by == "uplink") {
    link.drops = (actions & KIOAPP_SYNC_WAN) != 0;
    if (link.drops) {
      link.known.emplace_back("the uplink is brought up anew");
      if (TextIn(after, kUplinkKind) == "Static") {
        link.known.push_back("the router's address at the uplink is then " +
                             TextIn(after, kUplinkAddress));
      }
    }
    return link;
  }
  if (radio != nullptr && (actions & radio->action) != 0) {
    link.drops = true;
    link.known.emplace_back("this radio restarts");
    link.rejoin.push_back(NetworkOf(*radio, after));
  }
  if (radio == nullptr) {
    ForecastLan(after, actions, &link);
  }
  if ((actions & KIOAPP_SYNC_DEVICE) != 0 &&
      TextIn(before, kRouterMode) != TextIn(after, kRouterMode)) {
    link.drops = true;
    link.known.emplace_back("the router mode changes");
    link.assumed.emplace_back("with the router mode the addresses of the LAN change");
  }
  return link;
}

}  // namespace kiohost
