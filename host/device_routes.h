// What the device is, over HTTP: /device.
#ifndef HOST_DEVICE_ROUTES_H
#define HOST_DEVICE_ROUTES_H

#include "router.h"
#include "store.h"

namespace kiohost {

// The routes use the store for as long as they are.
void AddDeviceRoutes(Store* store, Router* router);

}  // namespace kiohost

#endif  // HOST_DEVICE_ROUTES_H
