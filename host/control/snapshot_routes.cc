#include "control/snapshot_routes.h"

#include <kioapp/record.h>

#include <algorithm>
#include <optional>

#include "control/control_table.h"
#include "control/json_body.h"
#include "control/record_json.h"
#include "fault_points.h"
#include "json_reply.h"

namespace kiohost {
namespace {

bool IsName(const std::string& name) {
  constexpr size_t kMostLength = 64;
  return !name.empty() && name.size() <= kMostLength &&
         name.find_first_not_of(
             "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.-") ==
             std::string::npos;
}

Json About(const std::string& name, const RouterState& state) {
  return {{"name", name},
          {"uptime", state.uptime},
          {"nodes", state.store.nodes.size()},
          {"clients", state.clients.clients.size()}};
}

Reply Busy() {
  return ErrorReply(MHD_HTTP_CONFLICT,
                    "the router is at work or away; move the clock, or wait until it is ready");
}

Reply NoSnapshot(const std::string& name) {
  return ErrorReply(MHD_HTTP_NOT_FOUND, "there is no snapshot " + name);
}

}  // namespace

Reply Snapshots::List() const {
  Json list = Json::array();
  for (const auto& [name, state] : snapshots_) {
    list.push_back(About(name, state));
  }
  return JsonReply({{"snapshots", std::move(list)}});
}

Reply Snapshots::Describe(const std::string& name) const {
  const auto found = snapshots_.find(name);
  return found == snapshots_.end() ? NoSnapshot(name) : JsonReply(About(name, found->second));
}

Reply Snapshots::Put(const std::string& name) {
  if (!IsName(name)) {
    return BadRequestReply("a name has at most 64 letters, digits, and _ . -");
  }
  if (snapshots_.size() >= kMost && !snapshots_.contains(name)) {
    return BadRequestReply("there are " + std::to_string(kMost) + " snapshots; delete one first");
  }
  if (!host_.settle()) {
    return Busy();
  }
  RouterState& state = snapshots_[name] = SaveState(host_.parts);
  return JsonReply(About(name, state));
}

Reply Snapshots::Delete(const std::string& name) {
  return snapshots_.erase(name) == 0 ? NoSnapshot(name) : JsonReply({{"name", name}});
}

Reply Snapshots::Restore(const std::string& name) {
  const auto found = snapshots_.find(name);
  if (found == snapshots_.end()) {
    return NoSnapshot(name);
  }
  if (!host_.settle()) {
    return Busy();
  }
  const WithoutFaults bench;
  const Reply answer = Answer(RestoreState(host_.parts, found->second));
  return answer.status == MHD_HTTP_OK ? JsonReply(About(name, found->second)) : answer;
}

Reply Snapshots::Reset(const RequestView& request) {
  Reply refusal;
  const std::optional<Json> body =
      JsonBody(request, {{"profile", JsonMember::Type::kText}}, &refusal);
  if (!body) {
    return refusal;
  }
  const std::string profile = body->value("profile", std::string());
  if (body->contains("profile") && !IsName(profile)) {
    return BadRequestReply("\"profile\" takes the name of a delivered profile");
  }
  if (!host_.settle()) {
    return Busy();
  }
  const WithoutFaults bench;
  const RouterState before = SaveState(host_.parts);
  Status status = host_.write_profile(profile);
  if (status.code() == ExitCode::kProfile) {
    return BadRequestReply(status.reason());
  }
  RouterState state = first_;
  if (status.ok()) {
    state.store = host_.parts.store->Read();
    state.uptime = before.uptime;
    state.steady = before.steady;
    status = RestoreState(host_.parts, state);
    if (!status.ok()) {
      // The profile is taken back.
      const Status back = RestoreState(host_.parts, before);
      status = back.ok() ? status : back;
    } else {
      host_.end_faults();
    }
  }
  return Answer(status);
}

Reply Snapshots::Answer(const Status& status) {
  host_.publish();
  if (!status.ok()) {
    return ErrorReply(
        status.code() == ExitCode::kUsage ? MHD_HTTP_CONFLICT : MHD_HTTP_INTERNAL_SERVER_ERROR,
        status.reason());
  }
  return JsonReply({{"nodes", host_.parts.store->List().size()}});
}

void AddSnapshotRoutes(Snapshots* snapshots, Router* router) {
  router->Add(
      {.description = control_routes::kRecord, .handle = [](const RequestView& /*request*/) {
         return JsonReply(RecordAsJson(rssXmlData));
       }});
  router->Add({.description = control_routes::kReset,
               .handle = [snapshots](const auto& request) { return snapshots->Reset(request); }});
  router->Add({.description = control_routes::kSnapshots,
               .handle = [snapshots](const auto& /*request*/) { return snapshots->List(); }});
  router->Add(
      {.description = control_routes::kSnapshot,
       .handle = [snapshots](const auto& request) { return snapshots->Describe(request.name()); }});
  router->Add(
      {.description = control_routes::kPutSnapshot,
       .handle = [snapshots](const auto& request) { return snapshots->Put(request.name()); }});
  router->Add(
      {.description = control_routes::kDeleteSnapshot,
       .handle = [snapshots](const auto& request) { return snapshots->Delete(request.name()); }});
  router->Add(
      {.description = control_routes::kRestoreSnapshot,
       .handle = [snapshots](const auto& request) { return snapshots->Restore(request.name()); }});
}

}  // namespace kiohost
