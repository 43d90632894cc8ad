#include "device_routes.h"

#include <kioapp/platform.h>

#include <optional>

#include "json_reply.h"
#include "nodes.h"
#include "route_table.h"

namespace kiohost {
namespace {

Json LastApply(ApplyLog* applies) {
  const std::optional<Apply> last = applies->Last();
  return last ? Json({{"id", last->id},
                      {"outcome", OutcomeWord(last->outcome)},
                      {"uptime", last->uptime}})
              : Json(nullptr);
}

Json PendingConfirm(Exchange* exchange) {
  const std::optional<WayBack::Pending> pending = exchange->pending();
  const std::optional<Apply> last = exchange->applies()->Last();
  return pending && last ? Json({{"id", last->id},
                                 {"seconds", pending->seconds},
                                 {"secondsLeft", pending->seconds_left}})
                         : Json(nullptr);
}

Reply DescribeDevice(Store* store, const Events& events, const DeviceState& state) {
  return JsonReply({{"model", store->Get(kModelNode).value_or("")},
                    {"name", store->Get("/sys/friendlyname").value_or("")},
                    {"uptime", sys_uptime_seconds()},
                    {"bootId", state.boot_id},
                    {"state", state.now()},
                    {"lastApply", LastApply(state.exchange->applies())},
                    {"pendingConfirm", PendingConfirm(state.exchange)},
                    {"events", events.AsJson()}});
}

}  // namespace

void AddDeviceRoutes(Store* store, const Events* events, const DeviceState& state, Router* router) {
  router->Add({.description = routes::kDevice,
               .handle = [store, events, state](const RequestView& /*request*/) {
                 return DescribeDevice(store, *events, state);
               }});
}

}  // namespace kiohost
