// kiohost_flood SECONDS: floods a kiohost with all kinds of clients, and looks what that costs the
// honest ones among them and what it leaves behind.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "host_process.h"
#include "load.h"
#include "remains.h"

namespace {

constexpr int kRounds = 4;  // the first one is for warming up
constexpr long kMostGrowthKiB = 64;
constexpr double kMostWaitSeconds = 10;  // a host that hangs, not a machine that is slow

double Seconds(long microseconds) {
  constexpr double kPerSecond = 1e6;
  return static_cast<double>(microseconds) / kPerSecond;
}

void PrintTallies(const Load& load) {
  std::printf("%-22s %9s %9s %9s %11s\n", "clients", "served", "refused", "503", "no answer");
  for (const Tally* tally : load.tallies()) {
    std::printf("%-22s %9ld %9ld %9ld %11ld\n", tally->name, tally->answered.load(),
                tally->refused.load(), tally->full.load(), tally->silent.load());
  }
  for (const Tally* tally : {&load.honest, &load.changers}) {
    std::printf("longest wait of %s: %.3f s\n", tally->name, Seconds(tally->longest_wait_us));
  }
}

int g_failures = 0;

void Expect(bool holds, const std::string& what) {
  std::printf("%-6s %s\n", holds ? "ok" : "FAILED", what.c_str());
  g_failures += holds ? 0 : 1;
}

void ExpectServed(const Tally& tally) {
  const std::string name = tally.name;
  Expect(tally.answered > 0 && tally.refused + tally.full + tally.silent == 0,
         name + " were all served");
  Expect(Seconds(tally.longest_wait_us) < kMostWaitSeconds, name + " did not wait for long");
}

// The growth is that after the first round.
void ExpectNothingLeft(const Remains& before, const Remains& warm, const Remains& last) {
  const long growth = last.memory_kib - warm.memory_kib;
  std::printf("memory %ld KiB before, %ld KiB warm, %ld KiB in the end: growth %ld KiB\n",
              before.memory_kib, warm.memory_kib, last.memory_kib, growth);
  std::printf("descriptors %zu before, %zu in the end\n", before.descriptors, last.descriptors);
  Expect(growth <= kMostGrowthKiB, "no memory is left behind");
  Expect(last.descriptors == before.descriptors, "no descriptor is left behind");
}

int Run(int seconds) {
  HostProcess host;
  GiveBackAtOnce();
  host.UseScript("device_resync.sh", "#!/bin/sh\n");
  if (!host.Start()) {
    std::fprintf(stderr, "the host does not start:\n%s", host.Errors().c_str());
    return 1;
  }
  Load load;
  const Remains before = AtRest(host);
  Remains warm = before;
  Remains last = before;
  for (int round = 0; round < kRounds; ++round) {
    load.Start(host.port());
    std::this_thread::sleep_for(std::chrono::seconds(seconds) / kRounds);
    load.Stop();
    last = AtRest(host);
    warm = round == 0 ? last : warm;
    std::printf("round %d of %d: %ld KiB, %zu descriptors, %.1f s of processor time\n", round + 1,
                kRounds, last.memory_kib, last.descriptors,
                static_cast<double>(host.ProcessorTime()) / 1000);
  }
  PrintTallies(load);
  ExpectNothingLeft(before, warm, last);
  ExpectServed(load.honest);
  ExpectServed(load.changers);
  Expect(load.heads.full > 0 && load.heads.refused > 0, "dripping heads were ended");
  Expect(load.bodies.refused > 0, "dripping bodies were ended");
  Expect(host.End(SIGTERM) == 0, "the host ended in order");
  return g_failures == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  constexpr int kLeastSeconds = 60;  // a round takes longer than a deadline of the host
  const int seconds = argc == 2 ? static_cast<int>(std::strtol(argv[1], nullptr, 10)) : 0;
  if (seconds < kLeastSeconds) {
    std::fprintf(stderr, "usage: kiohost_flood SECONDS, %d or more\n", kLeastSeconds);
    return 2;
  }
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  std::signal(SIGPIPE, SIG_IGN);
  return Run(seconds);
}
