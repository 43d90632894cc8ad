#include "uptime.h"

#include <sys/sysinfo.h>

namespace kiohost {

long UptimeSeconds() {
  struct sysinfo info = {};
  sysinfo(&info);
  return info.uptime;
}

}  // namespace kiohost
