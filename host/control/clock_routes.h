// The clock of the host on the control port: /clock.
#ifndef HOST_CONTROL_CLOCK_ROUTES_H
#define HOST_CONTROL_CLOCK_ROUTES_H

#include "control/clock_driver.h"
#include "router.h"

namespace kiohost {

void AddClockRoutes(ClockDriver* driver, Router* router);

}  // namespace kiohost

#endif  // HOST_CONTROL_CLOCK_ROUTES_H
