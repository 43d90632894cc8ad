// The actions of a mask, and the time that each of them needs.
#include <cstdint>

#include "kioapp/platform.h"
#include "platform/command.h"
#include "platform/log.h"
#include "platform/nodes.h"
#include "platform/stations.h"
#include "platform/store.h"
#include "platform/text.h"

namespace kio::platform {
namespace {

// The texts stand in the row itself: so the table has no addresses, which the loader would set.
struct Action {
  std::uint16_t bit;
  std::uint8_t seconds;
  char line_end[2];  // of the log message
  char name[15];
};

// In ascending order of the bits. The message of the first does not end its line.
constexpr Action kActions[] = {
    // Quirk "wan-resync-leaves-its-line-open": the next message continues it.
    {KIOAPP_SYNC_WAN, 20, "", "WanResync"},
    {KIOAPP_SYNC_WLAN, 10, "\n", "WlanResync"},
    {KIOAPP_SYNC_WLAN_5G, 10, "\n", "Wlan5gResync"},
    {KIOAPP_SYNC_DEVICE, 5, "\n", "DeviceResync"},
    {KIOAPP_SYNC_SAVE_TO_FLASH, 6, "\n", "CfgSaveToFlash"},
    {KIOAPP_SYNC_SITE_SURVEY, 3, "\n", "WlanSiteSurvey"},
    {KIOAPP_SYNC_FW_UPGRADE, 50, "\n", "FwUpgrade"},
    {KIOAPP_SYNC_UPDATE_STA_RSSI, 1, "\n", "UpdateStaRssi"},
    {KIOAPP_SYNC_DEAUTH_STA, 1, "\n", "DeauthSta"},
};

// The script of an action, in the script directory; null for what is left to the host.
const char* ScriptOf(const Action& action) {
  switch (action.bit) {
    case KIOAPP_SYNC_WAN:
      return "/uplink.sh";
    case KIOAPP_SYNC_DEVICE:
      return "/device_resync.sh";
    default:
      return nullptr;
  }
}

void RunScript(const char* directory, const char* script) {
  char command[256];
  TextBuffer(command).Append(directory).Append(script);
  RunCommand(command);
}

// Quirk "marker-file-ends-the-mask": false when the actions that follow must not run.
bool RunAction(const Action& action, const char* script_directory) {
  KIO_LOG(kLogAction, "[%s,%s]%s", "exe_ExternalCall", action.name, action.line_end);
  if (const char* const script = ScriptOf(action)) {
    RunScript(script_directory, script);
  }
  if (action.bit == KIOAPP_SYNC_UPDATE_STA_RSSI) {
    return UpdateStations();
  }
  if (action.bit == KIOAPP_SYNC_DEAUTH_STA) {
    DisconnectStation();
  }
  return true;
}

}  // namespace
}  // namespace kio::platform

int get_ExternalCall_UseSec(int syncId) {
  for (const kio::platform::Action& action : kio::platform::kActions) {
    if (action.bit == static_cast<unsigned int>(syncId)) {
      return action.seconds;
    }
  }
  // Quirk "masks-need-no-time": only single ids are known here.
  KIO_LOG(kio::platform::kLogFailure, "[%s]Unknow sync_id=%d\n", "get_ExternalCall_UseSec", syncId);
  return 0;
}

unsigned int exe_ExternalCall(unsigned int mask) {
  char script_directory[64];
  kio::platform::ReadStoreText(kio::platform::kScriptDirectoryNode, script_directory);
  for (const kio::platform::Action& action : kio::platform::kActions) {
    if ((mask & action.bit) != 0 && !kio::platform::RunAction(action, script_directory)) {
      break;
    }
  }
  return 0;
}
