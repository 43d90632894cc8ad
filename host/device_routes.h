// What the device is, over HTTP: /device.
#ifndef HOST_DEVICE_ROUTES_H
#define HOST_DEVICE_ROUTES_H

#include "events.h"
#include "router.h"
#include "store.h"

namespace kiohost {

// The routes use the store and the events for as long as they are.
void AddDeviceRoutes(Store* store, const Events* events, Router* router);

}  // namespace kiohost

#endif  // HOST_DEVICE_ROUTES_H
