// The resource that tells about the device.
#ifndef HOST_DEVICE_ROUTES_H
#define HOST_DEVICE_ROUTES_H

#include <functional>
#include <string>

#include "apply_log.h"
#include "events.h"
#include "router.h"
#include "store.h"
#include "way_back.h"

namespace kiohost {

// What anybody may know of the host. Nothing of it is secret.
struct DeviceState {
  std::string boot_id;               // new at each start of the host
  std::function<const char*()> now;  // "ready", "busy" or "away"
  ApplyLog* applies;
  WayBack* way_back;
};

void AddDeviceRoutes(Store* store, const Events* events, const DeviceState& state, Router* router);

}  // namespace kiohost

#endif  // HOST_DEVICE_ROUTES_H
