// The resource that tells events as they happen.
#ifndef HOST_EVENT_ROUTES_H
#define HOST_EVENT_ROUTES_H

#include "event_streams.h"
#include "router.h"

namespace kiohost {

void AddEventRoutes(EventStreams* streams, Router* router);

}  // namespace kiohost

#endif  // HOST_EVENT_ROUTES_H
