#include "actions.h"

#include <kioapp/platform.h>

#include <cstdio>

#include "printable_text.h"

namespace kiohost {
namespace {

struct Action {
  unsigned int bit;
  const char* name;
  const char* effect;
};

constexpr Action kActions[] = {
    {KIOAPP_SYNC_WAN, "WanResync", "ran uplink.sh; a router brings its uplink up anew"},
    {KIOAPP_SYNC_WLAN, "WlanResync", "a router restarts its 2.4 GHz radio"},
    {KIOAPP_SYNC_WLAN_5G, "Wlan5gResync", "a router restarts its 5 GHz radio"},
    {KIOAPP_SYNC_DEVICE, "DeviceResync",
     "ran device_resync.sh; a router takes over name, password and mode"},
    {KIOAPP_SYNC_SAVE_TO_FLASH, "CfgSaveToFlash",
     "brought the log into the store's file; a router writes its flash"},
    {KIOAPP_SYNC_SITE_SURVEY, "WlanSiteSurvey", "a router scans for access points"},
    {KIOAPP_SYNC_FW_UPGRADE, "FwUpgrade", "a router writes its new firmware"},
    {KIOAPP_SYNC_UPDATE_STA_RSSI, "UpdateStaRssi", "listed the associated stations"},
    {KIOAPP_SYNC_DEAUTH_STA, "DeauthSta", "disconnected a station"},
};

}  // namespace

std::vector<std::string> DescribeActions(unsigned int mask) {
  std::vector<std::string> lines;
  for (const Action& action : kActions) {
    if ((mask & action.bit) != 0) {
      lines.push_back(std::string("action ") + action.name + ": " + action.effect);
    }
  }
  return lines;
}

void PrintActions(unsigned int mask) {
  for (const std::string& line : DescribeActions(mask)) {
    PrintLine(stdout, line);
  }
}

}  // namespace kiohost
