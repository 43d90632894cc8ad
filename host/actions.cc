#include "actions.h"

#include <kioapp/platform.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

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

// The action whose script a command runs, null without one.
const ActionRow* ActionOf(const std::string& command, unsigned int mask) {
  const auto* const found =
      std::find_if(std::begin(kActionRows), std::end(kActionRows), [&](const ActionRow& row) {
        return (mask & row.bit) != 0 && row.script != nullptr &&
               command.ends_with(std::string("/") + row.script);
      });
  return found == std::end(kActionRows) ? nullptr : found;
}

void TellStart(const ActionRow& action, Events* events) {
  events->Add({EventKind::kActionStarted, {{"action", action.name}}});
}

// `failure` is empty when there was none, and `status` when no script was run.
void TellEnd(const ActionRow& action, const std::string& status, const std::string& failure,
             Events* events) {
  PrintLine(stdout, std::string("action ") + action.name + ": " +
                        (failure.empty() ? action.effect : failure));
  Event event = {EventKind::kActionEnded,
                 {{"action", action.name},
                  {"ok", failure.empty()},
                  {"status", status.empty() ? Json(nullptr) : Json(status)}}};
  if (!failure.empty()) {
    event.text = std::string(action.name) + ": " + failure;
  }
  events->Add(std::move(event));
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

ActionReport::ActionReport(unsigned int mask, Events* events) : left_(mask), events_(events) {
  WatchCommands({[this](const std::string& command) { Begin(command); },
                 [this](const CommandResult& result) { End(result); }});
}

ActionReport::~ActionReport() { WatchCommands({}); }

void ActionReport::Begin(const std::string& command) {
  if (const ActionRow* const action = ActionOf(command, left_)) {
    TellTo(action->bit);
    TellStart(*action, events_);
  }
}

void ActionReport::End(const CommandResult& result) {
  const ActionRow* const action = ActionOf(result.command, left_);
  if (action == nullptr) {
    return;
  }
  left_ &= ~action->bit;
  failed_ |= result.ok() ? 0 : action->bit;
  const std::string status = DescribeStatus(result);
  TellEnd(*action, status,
          result.ok() ? std::string() : std::string(action->script) + " failed: " + status,
          events_);
}

unsigned int ActionReport::Finish() {
  TellTo(0);
  return failed_;
}

// Tells of the actions before the one with the bit `end`, or of all for 0.
void ActionReport::TellTo(unsigned int end) {
  for (const ActionRow& action : kActionRows) {
    if (action.bit == end) {
      return;
    }
    if ((left_ & action.bit) != 0) {
      left_ &= ~action.bit;
      TellStart(action, events_);
      TellEnd(action, {}, {}, events_);
    }
  }
}

}  // namespace kiohost
