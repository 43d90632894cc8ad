#include "device_routes.h"

#include <kioapp/platform.h>

#include <string>

#include "json.h"

namespace kiohost {
namespace {

Reply DescribeDevice(Store* store, const Events& events) {
  Reply reply;
  reply.content_type = "application/json";
  reply.body = "{\"model\": " + JsonString(store->Get("/sys/modelnumber").value_or("")) +
               ", \"name\": " + JsonString(store->Get("/sys/friendlyname").value_or("")) +
               ", \"uptime\": " + std::to_string(sys_uptime_seconds()) +
               ", \"events\": " + events.Json() + "}\n";
  return reply;
}

}  // namespace

void AddDeviceRoutes(Store* store, const Events* events, Router* router) {
  router->Add({.pattern = "/device",
               .method = MHD_HTTP_METHOD_GET,
               .handle = [store, events](const RequestView& /*request*/) {
                 return DescribeDevice(store, *events);
               }});
}

}  // namespace kiohost
