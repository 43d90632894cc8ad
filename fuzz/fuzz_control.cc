// Requests to the control port: its clock, its nodes of the store, its fault rules and what it
// expects of its journal. The input is the bytes of a request.
#include <vector>

#include "control/clock_routes.h"
#include "control/control_table.h"
#include "control/expectation.h"
#include "control/fault_routes.h"
#include "control/faults.h"
#include "control/json_body.h"
#include "control/store_routes.h"
#include "host_store.h"
#include "http_call.h"
#include "input.h"
#include "json_reply.h"
#include "node_path.h"

namespace kiohost {

// No command is run here, so none meets a rule.
std::optional<FirmwareFaults::Download> FirmwareFaults::Recognise(
    const std::string& /*command*/) const {
  return std::nullopt;
}
void FirmwareFaults::AddKinds(const Download& /*download*/, std::vector<FaultKind>* /*kinds*/) {}
FaultPoints::Command FirmwareFaults::Spoil(const Download& /*download*/, FaultKind /*kind*/,
                                           const Json& /*rule*/) {
  return {};
}

}  // namespace kiohost

namespace {

using kiohost::Json;

bool g_has_changed = false;

// A journal of a few entries is compared with what the body expects.
kiohost::Reply Expect(const kiohost::RequestView& request) {
  using Type = kiohost::JsonMember::Type;
  const std::vector<Json> entries = {
      {{"seq", 1}, {"kind", "store"}, {"path", "/sys/friendlyname"}, {"text", "name"}},
      {{"seq", 2}, {"kind", "store"}, {"path", "/sys/notice"}, {"undone", true}},
      {{"seq", 3}, {"kind", "command"}, {"command", "/sbin/resync lan"}, {"status", 0}},
  };
  kiohost::Reply refusal;
  const std::optional<Json> body = kiohost::JsonBody(
      request, {{"kinds", Type::kList}, {"expect", Type::kList}, {"since", Type::kWhole}},
      &refusal);
  if (!body) {
    return refusal;
  }
  if (!body->contains("expect")) {
    return kiohost::BadRequestReply("\"expect\" is missing");
  }
  return kiohost::JsonReply(kiohost::Compare(
      entries, body->contains("kinds") ? (*body)["kinds"] : Json(nullptr), (*body)["expect"]));
}

kiohost::Faults& TheFaults() {
  static kiohost::Faults faults(kiohost::FirmwareFaults(nullptr, nullptr, ""));
  return faults;
}

const kiohost::Router& TheRouter() {
  static kiohost::Store* const store = kio::fuzz::HostStore(false);
  static kiohost::ClockDriver driver(
      &kiohost::TheClock(),
      {.next_due = [](kiohost::HostClock::Time /*now*/) { return std::nullopt; }, .settle = [] {}});
  static const kiohost::Router router = [] {
    kiohost::Router made;
    kiohost::TheClock().Own();
    kiohost::AddClockRoutes(&driver, &made);
    kiohost::AddStoreRoutes(
        store, store, [] { g_has_changed = true; }, &made);
    kiohost::AddFaultRoutes(&TheFaults(), &made);
    made.Add({.description = kiohost::control_routes::kExpect, .handle = Expect});
    return made;
  }();
  return router;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kiohost::Store* const store = kio::fuzz::HostStore(g_has_changed);
  g_has_changed = false;
  kio::fuzz::CallRouter(TheRouter(), {reinterpret_cast<const char*>(data), size});
  TheFaults().RemoveAll();
  if (g_has_changed) {
    for (const kiohost::Node& node : store->List()) {
      if (!kiohost::IsNodePath(node.path) || node.text.size() > kiohost::Store::kMaxTextLength ||
          node.text.find('\0') != std::string::npos) {
        kio::fuzz::Report("the store holds what is no node");
      }
    }
  }
  return 0;
}
