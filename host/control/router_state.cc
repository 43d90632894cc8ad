#include "control/router_state.h"

#include <cstring>
#include <string>

#include "host_clock.h"
#include "uptime.h"

namespace kiohost {
namespace {

Status WriteStore(const RouterParts& parts, const Store::Contents& contents, long ago) {
  const bool written = parts.store->WriteWithoutWait([&] {
    parts.store->Write(contents);
    parts.exchange->ExtendConfirmation(ago);
  });
  return written ? Status()
                 : Status(ExitCode::kStore, "the store could not be written, and is as before");
}

}  // namespace

RouterState SaveState(const RouterParts& parts) {
  RouterState state;
  state.store = parts.store->Read();
  // Byte for byte, with what lies between the members.
  std::memcpy(state.record.data(), &rssXmlData, state.record.size());
  state.clients = parts.clients->Save();
  state.events = parts.events->Save();
  state.exchange = parts.exchange->state();
  state.variables = parts.variables->series();
  state.firmware = parts.firmware->Save();
  state.channels = parts.channels->channels();
  state.arrived_before = parts.confirmations->arrived_before();
  state.uptime = UptimeSeconds();
  state.steady = SteadySeconds();
  return state;
}

Status RestoreState(const RouterParts& parts, const RouterState& state) {
  if (!parts.firmware->CanRestore(state.firmware)) {
    return {ExitCode::kUsage, "the library is at step " + std::to_string(parts.firmware->step()) +
                                  " of a firmware upgrade, and nothing brings it to step " +
                                  std::to_string(state.firmware.step)};
  }
  const Store::Contents before = parts.store->Read();
  const long ago = SteadySeconds() - state.steady;
  Status status = WriteStore(parts, state.store, ago);
  if (!status.ok()) {
    return status;
  }
  status = parts.firmware->Restore(state.firmware);
  if (!status.ok()) {
    const Status back = WriteStore(parts, before, 0);
    return back.ok() ? status : Status(status.code(), status.reason() + "; " + back.reason());
  }
  std::memcpy(&rssXmlData, state.record.data(), state.record.size());
  parts.clients->Restore(state.clients, ago);
  parts.events->Restore(state.events);
  parts.exchange->Restore(state.exchange);
  parts.variables->Restore(state.variables);
  parts.channels->Restore(state.channels);
  parts.confirmations->Restore(state.arrived_before);
  parts.history->Clear();
  TheClock().SetUptime(state.uptime);
  return {};
}

}  // namespace kiohost
