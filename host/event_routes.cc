#include "event_routes.h"

#include <string>
#include <utility>

#include "route_table.h"

namespace kiohost {
namespace {

constexpr int kTryAgainSeconds = 10;

Reply OpenStream(EventStreams* streams, const RequestView& request) {
  Reply reply;
  reply.content_type = "text/event-stream";
  reply.stream = streams->Open(request.peer_address(), request.Header("Last-Event-ID"));
  return reply.stream != nullptr ? std::move(reply)
                                 : TryLater(MHD_HTTP_SERVICE_UNAVAILABLE,
                                            "there are " + std::to_string(EventStreams::kMost) +
                                                " streams of events already",
                                            kTryAgainSeconds);
}

}  // namespace

void AddEventRoutes(EventStreams* streams, Router* router) {
  router->Add({.description = routes::kEvents, .answer = [streams](const RequestView& request) {
                 return OpenStream(streams, request);
               }});
}

}  // namespace kiohost
