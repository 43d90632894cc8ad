// A log call that the level drops.
#include <dlfcn.h>
#include <sys/sysinfo.h>

#include "figures.h"
#include "kioapp/log.h"
#include "platform/log.h"

namespace {
int g_sysinfo_calls = 0;
}  // namespace

// Replaces that of libc for the whole program, the library included.
int sysinfo(struct sysinfo* info) noexcept {
  using Function = int (*)(struct sysinfo*);
  static const auto libc_sysinfo = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "sysinfo"));
  ++g_sysinfo_calls;
  return libc_sysinfo(info);
}

// KIO_LOG reads the level through this table. The library does not export its own table; this one
// holds the address of the level and nothing else.
static_assert(kio::kDataLogLevel == 4);
void* const kio::kExportedData[kDataCount] = {nullptr, nullptr, nullptr, nullptr,
                                              &daemon_log_level};

namespace kio::bench {
namespace {

// Logs as the library's functions do: each call reads the level and compares it inline.
[[gnu::always_inline]] inline void DroppedCall(int value) {
  KIO_LOG(platform::kLogDetail, "%ld:value=%d\n", sys_uptime_seconds(), value);
  benchmark::ClobberMemory();
}
[[gnu::always_inline]] inline void NoCall(int value) {
  benchmark::DoNotOptimize(value);
  benchmark::ClobberMemory();
}

void Dropped(benchmark::State& state) {
  daemon_log_level = 5;
  g_sysinfo_calls = 0;
  int value = 0;
  const Pair pair = MeasurePair(
      state, [&] { DroppedCall(++value); }, [&] { NoCall(++value); });
  AddFigure({"log: a dropped call", pair.first, "ns", Bound::kAtMost, 2});
  AddFigure({"log: the same without the call, for comparison", pair.second, "ns"});
  AddFigure(
      {"log: sysinfo calls", static_cast<double>(g_sysinfo_calls), "calls", Bound::kAtMost, 0});
  // Shows that the counter works: a kept call reads the uptime.
  daemon_log_level = 7;
  DroppedCall(1);
  daemon_log_level = 5;
  AddFigure({"log: sysinfo calls of a kept call", static_cast<double>(g_sysinfo_calls), "calls",
             Bound::kAtLeast, 1});
}

}  // namespace

void RegisterLog() { RegisterPaired("log/dropped", Dropped); }

}  // namespace kio::bench
