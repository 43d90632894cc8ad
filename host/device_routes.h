// What the device is, over HTTP: /device.
#ifndef HOST_DEVICE_ROUTES_H
#define HOST_DEVICE_ROUTES_H

#include "events.h"
#include "router.h"
#include "store.h"

namespace kiohost {

// The store and the events must outlive the router.
void AddDeviceRoutes(Store* store, const Events* events, Router* router);

}  // namespace kiohost

#endif  // HOST_DEVICE_ROUTES_H
