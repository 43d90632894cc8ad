// The uptime, the library's only clock.
#include <sys/sysinfo.h>

#include <cstdio>

#include "kioapp/platform.h"

long sys_uptime_seconds(void) {
  struct sysinfo info = {};
  sysinfo(&info);
  return static_cast<long>(info.uptime);  // unsigned in some C libraries
}

char* sys_uptime_sec_str(void) {
  static char text[24];
  std::snprintf(text, sizeof(text), "%ld", sys_uptime_seconds());
  return text;
}
