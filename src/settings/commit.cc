// Which actions an exchange calls for, and running them.

#include "kioapp/platform.h"
#include "kioapp/settings.h"
#include "platform/exported_data.h"
#include "platform/log.h"

namespace kio::settings {
namespace {

using platform::kLogAction;
using platform::kLogDetail;
using platform::kLogFailure;

// The actions for what the last applying changed. A site survey excludes all others.
// Quirk "safetyvyr-runs-no-action": a change of the service's switches is only saved.
int ChangedActions() {
  const RssXmlData& record = Record();
  if (record.apCloningOnly == 0 && record.wlanSurveyRestart != 0) {
    return KIOAPP_SYNC_SITE_SURVEY;
  }
  return (record.upLink.restart != 0 ? KIOAPP_SYNC_WAN : 0) |
         (record.wlan[0].restart != 0 ? KIOAPP_SYNC_WLAN : 0) |
         (record.wlan[1].restart != 0 ? KIOAPP_SYNC_WLAN_5G : 0) |
         (record.deviceRestart != 0 ? KIOAPP_SYNC_DEVICE : 0) |
         (record.saveflag != 0 ? KIOAPP_SYNC_SAVE_TO_FLASH : 0);
}

// Quirk "saving-is-not-waited-for": its seconds are not in the waiting time.
constexpr int kAwaitedActions[] = {KIOAPP_SYNC_WAN, KIOAPP_SYNC_WLAN, KIOAPP_SYNC_WLAN_5G,
                                   KIOAPP_SYNC_DEVICE, KIOAPP_SYNC_SITE_SURVEY};

int WaitSeconds(int actions) {
  int seconds = 0;
  for (const int action : kAwaitedActions) {
    if ((actions & action) != 0) {
      seconds += get_ExternalCall_UseSec(action);
    }
  }
  return seconds;
}

// The mask to run now; 0 for nothing.
int TakePendingActions() {
  // Quirk "commit-keeps-its-mask": a committed mask stays, so that the next exchange that changes
  // nothing runs it once more by way of `pre_exeflag`.
  int actions = Record().exeflag;
  if (actions == 0 && Record().pre_exeflag != 0) {
    actions = Record().pre_exeflag;
    KIO_LOG(kLogDetail, "Use pre_exeflag, pre_exeflag=%d, exeflag=%d\n", actions, 0);
    Record().pre_exeflag = 0;
  } else {
    KIO_LOG(kLogDetail, "exeflag=%d\n", actions);
  }
  return actions;
}

}  // namespace
}  // namespace kio::settings

void calc_RssExeFlag(void) {
  if (kio::Record().exeflag != 0) {
    kio::Record().pre_exeflag = kio::Record().exeflag;
  }
  kio::Record().exeflag = kio::settings::ChangedActions();
  kio::Record().exeWaitSec = kio::settings::WaitSeconds(kio::Record().exeflag);
  kio::platform::LogTime(kio::platform::kLogAction);
  KIO_LOG(kio::platform::kLogAction, "exeflag=%d, exeWaitSec=%d\n", kio::Record().exeflag,
          kio::Record().exeWaitSec);
}

unsigned int do_RssXml_Commit(void) {
  kio::platform::LogName("do_RssXml_Commit");
  const int actions = kio::settings::TakePendingActions();
  if (actions == 0) {
    return 0;
  }
  const unsigned int failed = exe_ExternalCall(static_cast<unsigned int>(actions));
  // Quirk "failures-are-not-reported": the actions of this library never fail.
  if (failed != 0) {
    KIO_LOG(kio::platform::kLogFailure, "exe_ExternalCall was fail!");
  }
  KIO_LOG_NAMED("do_RssXml_Commit", "done\n");
  return failed;
}

unsigned int do_RssXml_Commit_for_ApCloning(int full) {
  if (full != 0) {
    kio::Record().exeflag |= KIOAPP_SYNC_DEVICE | KIOAPP_SYNC_SAVE_TO_FLASH;
  }
  return do_RssXml_Commit();
}
