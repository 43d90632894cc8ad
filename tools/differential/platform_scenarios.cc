// Actions, the log, the clock, timers and files.
#include <vector>

#include "buffers.h"
#include "kioapp/kioapp.h"
#include "machine.h"
#include "observe.h"
#include "scenario.h"
#include "store.h"
#include "texts.h"

namespace kio::differential {
namespace {

constexpr const char* kStarting[] = {"/var/wlmngr_init_0", "/var/wlmngr_init_1"};

std::string Stations(Random& random) {
  std::string text;
  for (int i = random.Below(5); i > 0; --i) {
    text += random.OneIn(8) ? Odd(random, 20) : "assoclist";
    text += CharactersOf(random, " \t", random.OneIn(10) ? 0 : random.Between(1, 3));
    text += random.OneIn(8) ? Odd(random, 300) : Mac(random);
    text += CharactersOf(random, " \t", random.OneIn(10) ? 0 : random.Between(1, 3));
    text += random.OneIn(4) ? Number(random) : std::to_string(-random.Below(90));
    text += random.OneIn(10) ? "" : "\n";
  }
  return text;
}

void RunActions(Random& random) {
  Machine& machine = Machine::Get();
  for (int i = random.Between(1, 4); i > 0; --i) {
    if (!random.OneIn(8)) {
      machine.files["/var/tmp_assoc"] = {Stations(random)};
    }
    machine.interfaces_up = static_cast<unsigned>(random.Below(256));
    machine.no_socket = random.OneIn(15);
    for (const char* const marker : kStarting) {
      machine.files.erase(marker);
      if (random.OneIn(12)) {
        machine.files[marker] = {};
      }
    }
    // The wireless manager may start at any time.
    int commands = random.OneIn(5) ? random.Below(4) : -1;
    machine.on_command = [&machine, commands](const std::string& /*command*/) mutable {
      if (commands-- == 0) {
        machine.files[kStarting[1]] = {};
      }
    };
    const unsigned mask =
        random.OneIn(3) ? static_cast<unsigned>(random.Next()) : 1U << random.Below(11);
    Answer("exe_ExternalCall", {exe_ExternalCall(mask)});
    machine.on_command = nullptr;
  }
  constexpr int kIds[] = {0, 1, 2, 3, 4, 8, 16, 32, 64, 128, 256, 512, 1024, -1};
  Answer("get_ExternalCall_UseSec", {get_ExternalCall_UseSec(random.Of(kIds))});
}

void RunLog(Random& random) {
  for (int i = random.Between(1, 8); i > 0; --i) {
    std::string text = random.OneIn(4) ? Odd(random) : Letters(random, random.Below(30));
    if (random.OneIn(20)) {
      text = Letters(random, random.Between(5110, 5130));
    }
    text += random.OneIn(3) ? "" : "\n";
    const int level = random.Between(-1, 9);
    switch (random.Below(5)) {
      case 0:
        Answer("msgPrintf", {msgPrintf("%s|%d", text.c_str(), level)});
        break;
      case 1:
        Answer("dbgPrintf", {dbgPrintf("%s|%d", text.c_str(), level)});
        break;
      case 2:
        Answer("logPrintf", {logPrintf(level, "%s %d%s", text.c_str(), level, "\n")});
        break;
      default:
        Answer("logPrintf", {logPrintf(level, "%s", text.c_str())});
        break;
    }
    if (random.OneIn(4)) {
      daemon_log_file_size_k = random.Between(-1, 2);
      daemon_log_level = random.Between(-1, 9);
      AcceptChanges();
    }
    Machine::Get().uptime += random.Below(3);
  }
}

long g_ticks_seen = 0;
void ReportTimer(uintptr_t argument) {
  Event("timer", {argument});
  ++g_ticks_seen;
}

void RunTimers(Random& random) {
  static std::vector<KioTimer*> timers;
  for (int i = random.Between(1, 5); i > 0; --i) {
    Machine::Get().no_memory = random.OneIn(10);
    KioTimer* const timer = create_timer(
        static_cast<unsigned>(random.Below(3)), random.OneIn(5) ? nullptr : ReportTimer,
        random.Next(), static_cast<unsigned>(random.Next()), static_cast<unsigned>(random.Next()));
    Machine::Get().no_memory = false;
    Answer("create_timer", {timer != nullptr});
    if (timer == nullptr) {
      continue;
    }
    add_timer(timer);
    int next = timer->next == nullptr ? -1 : -2;
    for (std::size_t other = 0; other < timers.size(); ++other) {
      next = timers[other] == timer->next ? static_cast<int>(other) : next;
    }
    Answer("add_timer", {timer->remaining, timer->interval, timer->user_a, timer->user_b,
                         timer->arg, timer->callback == ReportTimer, next, g_ticks_seen});
    timers.push_back(timer);
  }
}

void RunFacts(Random& random) {
  Machine& machine = Machine::Get();
  constexpr std::uint64_t kSizes[] = {0, 1, 4294967294, 4294967295, 4294967296};
  machine.files["/tmp/file"] = {"", random.Of(kSizes)};
  machine.clock_fails = random.OneIn(8);
  constexpr const char* kPaths[] = {"/tmp/file", "/tmp/none", nullptr};
  Answer("getFileSize", {getFileSize(random.Of(kPaths))});
  machine.uptime = random.OneIn(4) ? static_cast<long>(random.Next()) : machine.uptime;
  Answer("sys_uptime_seconds", {sys_uptime_seconds()});
  Answer("sys_uptime_sec_str", {sys_uptime_sec_str()});
  Answer("starterLibVersion", {starterLibVersion()});
  Answer("rssSpecVersion", {rssSpecVersion()});
  Store::Set("/fwupgradeinfo/isengfwserver", Number(random));
  Answer("get_FwServerWebSite", {get_FwServerWebSite()});
}

constexpr Kind kKinds[] = {{"actions", 5, RunActions},
                           {"log", 4, RunLog},
                           {"timers", 1, RunTimers},
                           {"facts", 1, RunFacts}};

}  // namespace

const std::span<const Kind> kPlatformKinds = kKinds;

}  // namespace kio::differential
