#include "device_routes.h"

#include <optional>

#include "json_reply.h"
#include "nodes.h"
#include "route_table.h"
#include "uptime.h"

namespace kiohost {
namespace {

Json LastApply(ApplyLog* applies) {
  const std::optional<Apply> last = applies->Last();
  return last ? Json({{"id", last->id},
                      {"outcome", OutcomeWord(last->outcome)},
                      {"uptime", last->uptime}})
              : Json(nullptr);
}

Json PendingConfirm(const DeviceState& state) {
  const std::optional<WayBack::Pending> pending = state.way_back->pending();
  const std::optional<Apply> last = state.applies->Last();
  return pending && last ? Json({{"id", last->id},
                                 {"seconds", pending->seconds},
                                 {"secondsLeft", pending->seconds_left}})
                         : Json(nullptr);
}

Reply DescribeDevice(Store* store, const Events& events, const DeviceState& state) {
  // All of it as of one moment.
  const StoreView view(store);
  return JsonReply({{"model", store->Get(kModelNode).value_or("")},
                    {"name", store->Get(kNameNode).value_or("")},
                    {"uptime", UptimeSeconds()},
                    {"bootId", state.boot_id},
                    {"state", state.now()},
                    {"lastApply", LastApply(state.applies)},
                    {"pendingConfirm", PendingConfirm(state)},
                    {"events", events.AsJson()}});
}

}  // namespace

void AddDeviceRoutes(Store* store, const Events* events, const DeviceState& state, Router* router) {
  router->Add({.description = routes::kDevice,
               .answer = [store, events, state](const RequestView& /*request*/) {
                 return DescribeDevice(store, *events, state);
               }});
}

}  // namespace kiohost
