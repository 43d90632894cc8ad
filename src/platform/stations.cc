#include "platform/stations.h"

#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <syslog.h>

#include <cstring>

#include "platform/command.h"
#include "platform/file.h"
#include "platform/line_reader.h"
#include "platform/store.h"
#include "platform/text.h"

namespace kio::platform {
namespace {

constexpr const char* kStationList = "/runtime/easyroaming/connstainfo";
constexpr const char* kDriverAnswer = "/var/tmp_assoc";
constexpr int kRadios = 2;
constexpr int kInterfacesPerRadio = 4;

// Entries that the last run wrote into the list.
int g_listed_stations = 0;

// A line of the driver's answer, "assoclist MAC RSSI". The MAC is terminated inside the line.
struct StationLine {
  const char* mac;
  int rssi;
};

bool ParseStationLine(char* line, StationLine* station) {
  constexpr TextView kKeyword = "assoclist";
  constexpr const char* kBlanks = " \t\n\v\f\r";
  if (std::strncmp(line, kKeyword.data(), kKeyword.size()) != 0) {
    return false;
  }
  char* const mac = line + kKeyword.size() + std::strspn(line + kKeyword.size(), kBlanks);
  const std::size_t mac_size = std::strcspn(mac, kBlanks);
  const char* number = mac + mac_size;
  if (!ScanInt(&number, &station->rssi)) {
    return false;
  }
  mac[mac_size] = '\0';
  station->mac = mac;
  return true;
}

// Asks the driver for the stations of an interface and adds them to the list.
void ListStations(const char* interface_name) {
  char command[256];
  TextBuffer(command)
      .Append("wlctl -i ")
      .Append(interface_name)
      .Append(" staassoclist > ")
      .Append(kDriverAnswer);
  RunCommand(command);

  constexpr std::size_t kLineSize = 256;
  LineReader<kLineSize> lines(kDriverAnswer);
  StorePath list(kStationList);
  char line[kLineSize];
  StationLine station = {};
  while (lines.Next(line)) {
    if (ParseStationLine(line, &station)) {
      ++g_listed_stations;
      WriteStoreText(list.Instance("/sta", g_listed_stations, "/ifname"), interface_name);
      WriteStoreText(list.Instance("/sta", g_listed_stations, "/mac"), station.mac);
      WriteStoreInt(list.Instance("/sta", g_listed_stations, "/rssi"), station.rssi);
    }
  }
}

bool IsInterfaceUp(const FileDescriptor& probe, const char* interface_name) {
  ifreq request = {};
  CopyText(request.ifr_name, interface_name);
  return ioctl(probe.get(), SIOCGIFFLAGS, &request) == 0 && (request.ifr_flags & IFF_UP) != 0;
}

bool IsWirelessStarting() {
  return FileExists("/var/wlmngr_init_0") || FileExists("/var/wlmngr_init_1");
}

}  // namespace

bool UpdateStations() {
  // Quirk "empty-run-deletes-nothing": entries of others stay after it.
  if (g_listed_stations != 0) {
    DeleteStoreNode(kStationList);
    g_listed_stations = 0;
  }
  if (IsWirelessStarting()) {
    return false;
  }
  const FileDescriptor probe(socket(AF_INET, SOCK_DGRAM, 0));
  for (int radio = 0; radio < kRadios; ++radio) {
    for (int index = 0; index < kInterfacesPerRadio; ++index) {
      char name[IFNAMSIZ];
      TextBuffer text(name);
      text.Append("wl").AppendNumber(radio);
      if (index > 0) {
        text.Append('.').AppendNumber(index);
      }
      // The manager may start at any time, so this is asked again for each interface.
      if (IsInterfaceUp(probe, name) && !IsWirelessStarting()) {
        ListStations(name);
      }
    }
  }
  return true;
}

void DisconnectStation() {
  if (IsWirelessStarting()) {
    return;
  }
  char interface_name[16];
  char mac[20];
  ReadStoreText("/runtime/easyroaming/deauthsta/ifname", interface_name);
  ReadStoreText("/runtime/easyroaming/deauthsta/mac", mac);
  syslog(LOG_INFO, "monitor: Deauth STA %s %s", interface_name, mac);
  char command[256];
  TextBuffer(command)
      .Append("wlctl -i ")
      .Append(interface_name)
      .Append(" deauthenticate ")
      .Append(mac);
  RunCommand(command);
}

}  // namespace kio::platform
