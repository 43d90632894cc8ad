#include "actions.h"

#include <kioapp/platform.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "command.h"
#include "printable_text.h"

namespace kiohost {
namespace {

struct ActionRow {
  unsigned int bit;
  const char* name;
  const char* script;  // that the library runs; null when it runs none
  const char* effect;
};

constexpr ActionRow kActionRows[] = {
    {KIOAPP_SYNC_WAN, "WanResync", "uplink.sh",
     "ran uplink.sh; a router brings its uplink up anew"},
    {KIOAPP_SYNC_WLAN, "WlanResync", nullptr, "a router restarts its 2.4 GHz radio"},
    {KIOAPP_SYNC_WLAN_5G, "Wlan5gResync", nullptr, "a router restarts its 5 GHz radio"},
    {KIOAPP_SYNC_DEVICE, "DeviceResync", "device_resync.sh",
     "ran device_resync.sh; a router takes over name, password and mode"},
    {KIOAPP_SYNC_SAVE_TO_FLASH, "CfgSaveToFlash", nullptr,
     "the store has the settings; a router writes its flash"},
    {KIOAPP_SYNC_SITE_SURVEY, "WlanSiteSurvey", nullptr, "a router scans for access points"},
    {KIOAPP_SYNC_FW_UPGRADE, "FwUpgrade", nullptr, "a router writes its new firmware"},
    {KIOAPP_SYNC_UPDATE_STA_RSSI, "UpdateStaRssi", nullptr, "listed the associated stations"},
    {KIOAPP_SYNC_DEAUTH_STA, "DeauthSta", nullptr, "disconnected a station"},
};

// How the script of an action failed; empty when it did not, or when there is none.
std::string ScriptFailure(const ActionRow& action, const std::vector<CommandResult>& results) {
  if (action.script == nullptr) {
    return {};
  }
  const std::string end = std::string("/") + action.script;
  const auto last = std::find_if(results.rbegin(), results.rend(), [&end](const auto& result) {
    return result.command.ends_with(end);
  });
  const bool failed = last != results.rend() && !last->ok();
  return failed ? std::string(action.script) + " failed: " + DescribeFailure(*last) : "";
}

}  // namespace

std::vector<NamedAction> ActionsOf(unsigned int mask) {
  std::vector<NamedAction> actions;
  for (const ActionRow& action : kActionRows) {
    if ((mask & action.bit) != 0) {
      actions.push_back({action.bit, action.name});
    }
  }
  return actions;
}

unsigned int ReportActions(unsigned int mask, Events* events) {
  const std::vector<CommandResult> results = TakeCommandResults();
  unsigned int failed = 0;
  for (const ActionRow& action : kActionRows) {
    if ((mask & action.bit) == 0) {
      continue;
    }
    const std::string failure = ScriptFailure(action, results);
    PrintLine(stdout, std::string("action ") + action.name + ": " +
                          (failure.empty() ? action.effect : failure));
    if (!failure.empty()) {
      events->Add(std::string(action.name) + ": " + failure);
      failed |= action.bit;
    }
  }
  return failed;
}

}  // namespace kiohost
