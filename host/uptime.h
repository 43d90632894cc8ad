// The seconds since boot, as the library counts them.
#ifndef HOST_UPTIME_H
#define HOST_UPTIME_H

namespace kiohost {

// Any thread may ask; the library's sys_uptime_seconds() belongs to one.
long UptimeSeconds();

}  // namespace kiohost

#endif  // HOST_UPTIME_H
