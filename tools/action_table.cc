#include "action_table.h"

#include "kioapp/log.h"
#include "kioapp/platform.h"

namespace kio::tools {
namespace {

// What the library's code does not say about an action.
struct Description {
  unsigned int bit;
  const char* name;
  const char* asked;    // by what
  const char* library;  // what the library does itself; empty for nothing
  const char* script;   // that it runs, below the script directory
  const char* host;     // what is left to the host
};

constexpr Description kDescriptions[] = {
    {KIOAPP_SYNC_WAN, "WanResync", "anything below `/uplink` changed", "runs `uplink.sh`",
     "/uplink.sh", "Supply the script. It brings the uplink up anew from the store."},
    {KIOAPP_SYNC_WLAN, "WlanResync", "anything of the 2.4 GHz radio changed", "", "",
     "Restart the 2.4 GHz radio with the settings of the store."},
    {KIOAPP_SYNC_WLAN_5G, "Wlan5gResync", "anything of the 5 GHz radio changed", "", "",
     "Restart the 5 GHz radio with the settings of the store."},
    {KIOAPP_SYNC_DEVICE, "DeviceResync", "name, password, router mode or roaming changed",
     "runs `device_resync.sh`", "/device_resync.sh",
     "Supply the script. It takes over name, password, mode and roaming from the store."},
    {KIOAPP_SYNC_SAVE_TO_FLASH, "CfgSaveToFlash",
     "anything at all changed, the switches of the security service included", "", "",
     "Make the store permanent. Read the switches below `/safetyvyr`: no action of their own "
     "tells of them. The waiting time does not count these seconds."},
    {KIOAPP_SYNC_SITE_SURVEY, "WlanSiteSurvey",
     "a document asked for a survey, then alone; or the variable `rss_Act_SiteSurvey`", "", "",
     "Look for networks, list them below `/wirelesssitesurvey`, and set "
     "`/uplink/extendersite/survey` to 0."},
    {KIOAPP_SYNC_FW_UPGRADE, "FwUpgrade", "the step '4' of a firmware upgrade", "", "",
     "Deliver the status document, check the image with `check`, write it to the flash, restart."},
    {KIOAPP_SYNC_UPDATE_STA_RSSI, "UpdateStaRssi", "the host alone, by `exe_ExternalCall`",
     "asks the driver by `wlctl` and lists the stations below "
     "`/runtime/easyroaming/connstainfo`",
     "", "Ask for it when it wants a list that is up to date; read the list afterwards."},
    {KIOAPP_SYNC_DEAUTH_STA, "DeauthSta", "the host alone, by `exe_ExternalCall`",
     "disconnects the station of `/runtime/easyroaming/deauthsta` by `wlctl`", "",
     "Write that node before it asks."},
};

const Description* FindDescription(unsigned int bit) {
  for (const Description& description : kDescriptions) {
    if (description.bit == bit) {
      return &description;
    }
  }
  return nullptr;
}

}  // namespace

std::vector<Action> ListActions() {
  constexpr unsigned int kBits = 31;
  // The library logs a failure for each bit that it does not know.
  const int log_level = daemon_log_level;
  daemon_log_level = 0;
  std::vector<Action> actions;
  for (unsigned int i = 0; i < kBits; ++i) {
    const unsigned int bit = 1U << i;
    const int seconds = get_ExternalCall_UseSec(static_cast<int>(bit));
    if (seconds == 0) {
      continue;
    }
    Action action{.bit = bit, .seconds = seconds};
    if (const Description* const description = FindDescription(bit); description != nullptr) {
      action = {bit,
                description->name,
                seconds,
                description->asked,
                description->library,
                description->script,
                description->host};
    }
    actions.push_back(action);
  }
  daemon_log_level = log_level;
  return actions;
}

std::string ActionTable(const std::vector<Action>& actions) {
  std::string table =
      "| Bit | Action | Seconds | Asked for by | The library | The host |\n"
      "|---|---|---|---|---|---|\n";
  for (const Action& action : actions) {
    table += "| " + std::to_string(action.bit) + " | " + action.name + " | " +
             std::to_string(action.seconds) + " | " + action.asked + " | " +
             (action.library.empty() ? "nothing" : action.library) + " | " + action.host + " |\n";
  }
  return table;
}

}  // namespace kio::tools
