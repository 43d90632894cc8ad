// The fault rules on the control port: /faults.
#ifndef HOST_CONTROL_FAULT_ROUTES_H
#define HOST_CONTROL_FAULT_ROUTES_H

#include "control/faults.h"
#include "router.h"

namespace kiohost {

void AddFaultRoutes(Faults* faults, Router* router);

}  // namespace kiohost

#endif  // HOST_CONTROL_FAULT_ROUTES_H
