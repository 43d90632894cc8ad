// The calls by which the library reads and uses the time. The linker prefers the program's to the C
// library's. As long as the clock is the system's they only hand on.
#include <dlfcn.h>
#include <sys/sysinfo.h>
#include <unistd.h>

#include "host_clock.h"

namespace {

template <typename Call>
Call* Next(const char* name) {
  return reinterpret_cast<Call*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" [[gnu::visibility("default")]] int sysinfo(struct sysinfo* info) noexcept {
  static auto* const next = Next<int(struct sysinfo*)>("sysinfo");
  const int result = next(info);
  if (kiohost::TheClock().is_own()) {
    info->uptime = kiohost::TheClock().Uptime();
  }
  return result;
}

extern "C" [[gnu::visibility("default")]] unsigned int alarm(unsigned int seconds) noexcept {
  static auto* const next = Next<unsigned int(unsigned int)>("alarm");
  return kiohost::TheClock().is_own() ? kiohost::TheClock().SetAlarm(seconds) : next(seconds);
}
