// Requests to the router, and their way to a route. The input is the bytes of a request. Behind the
// filters stand the routes that read, and one that takes a form, as those of the library do.
#include "device_routes.h"
#include "entity_tag.h"
#include "events.h"
#include "host_store.h"
#include "http_call.h"
#include "input.h"
#include "json_reply.h"
#include "route_table.h"
#include "variable_list.h"
#include "way_back.h"
#include "web_filters.h"

namespace {

// The routes of documents: their checks, and an answer in the place of the library's.
void AddTaker(const kiohost::RouteDescription& description, kiohost::Router* router) {
  router->Add({.description = description,
               .check = kiohost::CheckDryRun,
               .handle = [](const kiohost::RequestView& request) {
                 kiohost::Reply reply = kiohost::JsonReply({{"name", request.name()},
                                                            {"body", request.body()},
                                                            {"host", std::string(request.host())}});
                 return kiohost::WithEntityTag(std::move(reply), request);
               }});
}

const kiohost::Router& TheRouter() {
  static kiohost::Store* const store = kio::fuzz::HostStore(false);
  static kiohost::ApplyLog applies(store);
  static kiohost::WayBack way_back(store);
  static kiohost::Events events;
  static const kiohost::Router router = [] {
    kiohost::Router made;
    kiohost::AddWebFilters(store, {"router"}, &made);
    kiohost::AddDeviceRoutes(store, &events,
                             {.boot_id = "boot",
                              .now = [] { return "ready"; },
                              .applies = &applies,
                              .way_back = &way_back},
                             &made);
    AddTaker(kiohost::routes::kSettings, &made);
    AddTaker(kiohost::routes::kSetVariable, &made);
    return made;
  }();
  return router;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kio::fuzz::CallRouter(TheRouter(), {reinterpret_cast<const char*>(data), size});
  return 0;
}
