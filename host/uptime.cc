#include "uptime.h"

#include "host_clock.h"

namespace kiohost {

long UptimeSeconds() { return TheClock().Uptime(); }

long SteadySeconds() { return TheClock().SteadySeconds(); }

}  // namespace kiohost
