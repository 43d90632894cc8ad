// Firmware upgrades over HTTP: /firmware and /firmware/ACTION.
#ifndef HOST_FIRMWARE_ROUTES_H
#define HOST_FIRMWARE_ROUTES_H

#include "firmware.h"
#include "reply.h"
#include "request_view.h"
#include "router.h"

namespace kiohost {

class FirmwareRoutes {
 public:
  explicit FirmwareRoutes(Firmware* firmware) : firmware_(firmware) {}

  // The routes use this object for as long as they are.
  void AddTo(Router* router);

 private:
  Reply Act(const RequestView& request);
  Reply LastStatus();

  Firmware* firmware_;
};

}  // namespace kiohost

#endif  // HOST_FIRMWARE_ROUTES_H
