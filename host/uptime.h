// The seconds since boot, as the library counts them.
#ifndef HOST_UPTIME_H
#define HOST_UPTIME_H

namespace kiohost {

// Any thread may ask; the library's sys_uptime_seconds() belongs to one.
long UptimeSeconds();

// The same unless the uptime was set back on the host's own clock (host_clock.h): for whatever is
// to end some seconds after it began.
long SteadySeconds();

}  // namespace kiohost

#endif  // HOST_UPTIME_H
