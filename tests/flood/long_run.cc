// kiohost_long_run SECONDS: fifty clients of all kinds at a kiohost, round after round. Looks
// whether each answer is right, and whether memory, descriptors, processes, files and the work for
// an answer stay what they are.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "host_process.h"
#include "mixed_clients.h"
#include "remains.h"

namespace {

constexpr int kRoundSeconds = 60;
constexpr long kMostGrowthKiB = 64;
constexpr long kMostLogKiB = 2L * (250 + 8);  // two files of the library's limit and a message
constexpr double kMostMoreWork = 1.25;

struct Round {
  Remains remains;
  size_t processes;
  long log_kib;
  long store_kib;
  double work_ms;  // processor time of an answer
};

// The processes whose parent the host is.
size_t ChildrenOf(pid_t pid) {
  size_t children = 0;
  for (const auto& task :
       std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/task")) {
    const std::string list = ReadFile((task.path() / "children").string());
    children += static_cast<size_t>(std::count(list.begin(), list.end(), ' '));
  }
  return children;
}

// The size of the files below the host's directory whose names hold a text.
long KiBOf(const HostProcess& host, const std::string& name) {
  constexpr long kKiB = 1024;
  long size = 0;
  for (const auto& file : std::filesystem::recursive_directory_iterator(host.dir().path())) {
    if (file.is_regular_file() && file.path().filename().string().find(name) != std::string::npos) {
      size += static_cast<long>(file.file_size());
    }
  }
  return size / kKiB;
}

int g_failures = 0;

void Expect(bool holds, const std::string& what) {
  std::printf("%-6s %s\n", holds ? "ok" : "FAILED", what.c_str());
  g_failures += holds ? 0 : 1;
}

double Milliseconds(long microseconds) { return static_cast<double>(microseconds) / 1000; }

void PrintWaits(const MixedClients& clients) {
  for (size_t kind = 0; kind < clients.kinds().size(); ++kind) {
    const KindTally& tally = clients.tallies()[kind];
    std::vector<long> waits = tally.waits_us;
    std::sort(waits.begin(), waits.end());
    if (waits.empty()) {
      continue;
    }
    std::printf("  %-22s %9ld right %5ld wrong   wait: median %7.2f ms, longest %8.2f ms\n",
                clients.kinds()[kind].name, tally.right, tally.wrong,
                Milliseconds(waits[waits.size() / 2]), Milliseconds(waits.back()));
  }
}

Round RunRound(const HostProcess& host, MixedClients* clients) {
  const long before_ms = host.ProcessorTime();
  const long before = clients->right();
  clients->Work(std::chrono::seconds(kRoundSeconds));
  Round round = {AtRest(host), ChildrenOf(host.pid()), KiBOf(host, "_log.txt"),
                 KiBOf(host, "store.db"), 0};
  round.work_ms = static_cast<double>(host.ProcessorTime() - before_ms) /
                  static_cast<double>(std::max(1L, clients->right() - before));
  return round;
}

// The first round is for warming up.
void ExpectFlat(const std::vector<Round>& rounds) {
  const Round& warm = rounds.front();
  const Round& last = rounds.back();
  const long growth = last.remains.memory_kib - warm.remains.memory_kib;
  Expect(growth <= kMostGrowthKiB, "memory grew by " + std::to_string(growth) + " KiB");
  Expect(std::all_of(rounds.begin(), rounds.end(),
                     [&](const Round& round) {
                       return round.remains.descriptors == warm.remains.descriptors;
                     }),
         "descriptors are the same after each round");
  Expect(std::all_of(rounds.begin(), rounds.end(),
                     [](const Round& round) { return round.processes == 0; }),
         "no process is left after a round");
  Expect(std::all_of(rounds.begin(), rounds.end(),
                     [](const Round& round) { return round.log_kib <= kMostLogKiB; }),
         "the log stays below its limit");
  const long store_growth = last.store_kib - warm.store_kib;
  Expect(store_growth <= kMostGrowthKiB,
         "the store grew by " + std::to_string(store_growth) + " KiB");
  const double ratio = last.work_ms / rounds[1].work_ms;
  Expect(ratio <= kMostMoreWork, "an answer takes as much processor time as in the beginning");
  std::printf("figure: Growth of memory in the run\t%ld KiB\n", growth);
  std::printf("figure: Processor time of an answer, last round to second\t%.2f\n", ratio);
}

int Run(int rounds_wanted) {
  HostProcess host;
  GiveBackAtOnce();
  host.UseScript("device_resync.sh", "#!/bin/sh\n");
  if (!host.StartClosed()) {
    std::fprintf(stderr, "the host does not start:\n%s", host.Errors().c_str());
    return 1;
  }
  MixedClients clients(host.port());
  std::vector<Round> rounds;
  for (int i = 0; i < rounds_wanted; ++i) {
    rounds.push_back(RunRound(host, &clients));
    const Round& round = rounds.back();
    std::printf(
        "round %d of %d: %ld KiB, %zu descriptors, %zu processes, log %ld KiB, store %ld KiB, "
        "%.3f ms of processor time for an answer\n",
        i + 1, rounds_wanted, round.remains.memory_kib, round.remains.descriptors, round.processes,
        round.log_kib, round.store_kib, round.work_ms);
    PrintWaits(clients);
  }
  for (size_t kind = 0; kind < clients.kinds().size(); ++kind) {
    const KindTally& tally = clients.tallies()[kind];
    Expect(tally.right > 0 && tally.wrong == 0,
           std::string(clients.kinds()[kind].name) + " were all answered right" +
               (tally.wrong > 0 ? ", but: " + tally.first_wrong : ""));
  }
  Expect(clients.events() > 0 && clients.broken_streams() == 0, "each event came once, in order");
  ExpectFlat(rounds);
  Expect(host.End(SIGTERM) == 0, "the host ended in order");
  std::printf("figure: Clients at once\t%d\n", clients.clients());
  std::printf("figure: Minutes\t%d\n", rounds_wanted * kRoundSeconds / 60);
  std::printf("figure: Answers\t%ld\n", clients.right() + clients.wrong());
  std::printf("figure: Wrong answers\t%ld\n", clients.wrong());
  return g_failures == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  constexpr int kLeastRounds = 3;
  const long seconds = argc == 2 ? std::strtol(argv[1], nullptr, 10) : 0;
  const int rounds = static_cast<int>(seconds / kRoundSeconds);
  if (rounds < kLeastRounds) {
    std::fprintf(stderr, "usage: kiohost_long_run SECONDS, %d or more\n",
                 kLeastRounds * kRoundSeconds);
    return 2;
  }
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  std::signal(SIGPIPE, SIG_IGN);
  return Run(rounds);
}
