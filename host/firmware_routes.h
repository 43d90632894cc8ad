// Firmware upgrades over HTTP: /firmware and /firmware/ACTION.
#ifndef HOST_FIRMWARE_ROUTES_H
#define HOST_FIRMWARE_ROUTES_H

#include "change_guard.h"
#include "firmware.h"
#include "published.h"
#include "router.h"

namespace kiohost {

// The firmware must outlive the router.
void AddFirmwareRoutes(Firmware* firmware, const ChangeGuard& guard,
                       const PublishedState* published, Router* router);

}  // namespace kiohost

#endif  // HOST_FIRMWARE_ROUTES_H
