#include "run.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "buffers.h"
#include "device.h"
#include "files.h"
#include "kioapp/kioapp.h"
#include "machine.h"
#include "observe.h"
#include "scenario.h"
#include "store.h"
#include "texts.h"

namespace kio::differential {
namespace {

// Scenarios that run in one process, one after the other: what the library keeps in its own memory
// lasts from one to the next.
constexpr int kGroupSize = 20;
// Processor time after which a group is ended. It usually takes some milliseconds.
constexpr rlim_t kSecondsOfAGroup = 10;
// The run stops after so many groups that did not come to their end.
constexpr int kMostEnded = 10;

// How far a group has come; shared with the process that runs it.
struct Progress {
  int scenario;
  char kind[40];
};

// Where PrintUnfinished prints.
FILE* g_output = nullptr;

std::vector<const Kind*> CollectKinds() {
  std::vector<const Kind*> kinds;
  for (const auto& part : {kExchangeKinds, kRecordKinds, kVariableKinds, kFirmwareKinds,
                           kUpgradeKinds, kLoginKinds, kToolkitKinds, kTextKinds, kPlatformKinds}) {
    for (const Kind& kind : part) {
      kinds.insert(kinds.end(), static_cast<std::size_t>(kind.weight), &kind);
    }
  }
  return kinds;
}

// At a lower level the messages above it are dropped: this shows the level of each message.
int LogLevel(Random& random) {
  constexpr int kLevels[] = {7, 7, 7, 7, 7, 7, 7, 6, 6, 5, 5, 4, 3, 8, 0};
  return random.Of(kLevels);
}

void ChooseLogFile(Random& random) {
  constexpr const char* kPaths[] = {
      "/log", "/log", "",
      "/l",   "l",    "/a/directory/of/sixty/three/characters/for/the/log/abcdefghijkl"};
  std::snprintf(daemon_log_path, sizeof(daemon_log_path), "%s", random.Of(kPaths));
  constexpr const char* kHeaders[] = {"host", "", "a name of thirty-one characters"};
  std::snprintf(daemon_log_header, sizeof(daemon_log_header), "%s", random.Of(kHeaders));
}

void PrepareMachine(Random& random, bool begins) {
  Machine& machine = Machine::Get();
  if (begins || random.Chance(70)) {
    machine.files.clear();
  }
  machine.files_ending.clear();
  machine.interruption = random.OneIn(6) ? random.Between(2, 9) : 0;
  machine.nothing_opens = random.OneIn(60);
  machine.nothing_is_written = random.OneIn(60);
  machine.gives_descriptor_0 = false;
  machine.no_memory = false;
  machine.clock_fails = false;
  machine.handler = nullptr;
  machine.on_command = nullptr;
  machine.uptime =
      begins || random.OneIn(3) ? random.Below(100000) : machine.uptime + random.Below(400);
  machine.time_of_day = 1700000000 + random.Below(1000);
  constexpr int kStatuses[] = {0, 0, 0, 0, 256, -1};
  machine.command_status = random.Of(kStatuses);
}

void PrepareLibrary(Random& random, bool begins) {
  if (begins || random.OneIn(10)) {
    ChooseLogFile(random);
  }
  daemon_log_level = LogLevel(random);
  daemon_log_file_size_k = random.OneIn(10) ? random.Between(-1, 3) : 250;
  if (random.OneIn(2)) {
    std::memset(&rssXmlData, 0, sizeof(rssXmlData));
    std::memset(&fwXmlData, 0, sizeof(fwXmlData));
    XmlErrMsg_LostKey = nullptr;
  }
}

void PrepareStore(Random& random, bool begins) {
  constexpr int kOddPerThousand[] = {0, 0, 0, 0, 0, 5, 5, 20, 100, 400};
  if (begins || random.Chance(75)) {
    MakeDevice(random, random.Of(kOddPerThousand));
  } else {
    ChangeDevice(random);
  }
  const bool absent_leaves_buffer = random.OneIn(2);
  constexpr int kResults[] = {0, 0, -1, 1};
  Store::Begin(absent_leaves_buffer, random.Of(kResults));
  for (const auto& [path, text] : Store::Nodes()) {
    Note("node", {path, text});
  }
}

void RunScenario(const Kind& kind, const Plan& plan, int scenario, bool begins) {
  Random random(plan.seed, static_cast<std::uint64_t>(scenario));
  ReleaseBuffers();
  PrepareMachine(random, begins);
  PrepareLibrary(random, begins);
  PrepareStore(random, begins);
  AcceptChanges();
  Machine& machine = Machine::Get();
  Note("machine", {"level", daemon_log_level, "uptime", machine.uptime, "interruption",
                   machine.interruption, "command status", machine.command_status});
  machine.is_on = true;
  kind.run(random);
  Observe();
  ReportOpenFiles();
  machine.is_on = false;
}

void PrintScenario(const Plan& plan, const Kind& kind, int scenario, FILE* output) {
  const std::string name(kind.name);
  const Transcript& transcript = TheTranscript();
  if (plan.shown.empty()) {
    std::fprintf(output, "%d %016llx %s\n", scenario,
                 static_cast<unsigned long long>(transcript.digest()), name.c_str());
  } else if (transcript.keeps_text()) {
    std::fprintf(output, "=== scenario %d: %s\n%s=== end\n", scenario, name.c_str(),
                 transcript.text().c_str());
  }
  // The library may end the process at any time.
  std::fflush(output);
}

// Handler of the signals that end a process: prints the events of a shown scenario so far.
void PrintUnfinished(int number) {
  if (TheTranscript().keeps_text()) {
    std::fwrite(TheTranscript().text().data(), 1, TheTranscript().text().size(), g_output);
    std::fflush(g_output);
  }
  raise(number);
}

void WatchForSignals(FILE* output) {
  static char stack[1 << 16];
  g_output = output;
  const stack_t alternate{stack, 0, sizeof(stack)};
  sigaltstack(&alternate, nullptr);
  struct sigaction action = {};
  action.sa_handler = PrintUnfinished;
  action.sa_flags = static_cast<int>(SA_ONSTACK | SA_RESETHAND | SA_NODEFER);
  for (const int number : {SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL, SIGXCPU}) {
    sigaction(number, &action, nullptr);
  }
}

[[noreturn]] void RunGroup(const Plan& plan, int begin, int end, Progress* progress, FILE* output) {
  static const std::vector<const Kind*> kinds = CollectKinds();
  WatchConsole();
  WatchForSignals(output);
  const rlimit limit{kSecondsOfAGroup, kSecondsOfAGroup};
  setrlimit(RLIMIT_CPU, &limit);
  Random random(~plan.seed, static_cast<std::uint64_t>(begin));
  // A group of one kind tries that kind thoroughly; a mixed one shows what kinds do to each other.
  const Kind* const only = random.OneIn(3) ? random.Of(kinds) : nullptr;
  for (int scenario = begin; scenario < end; ++scenario) {
    const Kind& kind = only != nullptr ? *only : *random.Of(kinds);
    progress->scenario = scenario;
    progress->kind[kind.name.copy(progress->kind, sizeof(progress->kind) - 1)] = '\0';
    TheTranscript().Begin(plan.shown.contains(scenario));
    RunScenario(kind, plan, scenario, scenario == begin);
    PrintScenario(plan, kind, scenario, output);
  }
  progress->scenario = end;
  std::exit(0);
}

// Prints the scenario that ended the process of a group, and those of the group that did not run.
int PrintEnd(const Plan& plan, const Progress& progress, int end, int status, FILE* output) {
  if (progress.scenario >= end) {
    return 0;
  }
  const int signal_number = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  const bool is_shown = plan.shown.contains(progress.scenario);
  if (plan.shown.empty() || is_shown) {
    std::fprintf(output, "%s%d ended-by-signal-%d %s\n", is_shown ? "=== scenario " : "",
                 progress.scenario, signal_number, progress.kind);
  }
  if (plan.shown.empty()) {
    for (int scenario = progress.scenario + 1; scenario < end; ++scenario) {
      std::fprintf(output, "%d not-run -\n", scenario);
    }
  }
  return 1;
}

}  // namespace

int Run(const Plan& plan, FILE* output) {
  auto* const progress = static_cast<Progress*>(
      mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  if (progress == MAP_FAILED) {
    std::fprintf(stderr, "no memory: %s\n", std::strerror(errno));
    std::exit(2);
  }
  int ended = 0;
  for (int begin = 0; begin < plan.scenarios && ended < kMostEnded; begin += kGroupSize) {
    const int end = std::min(begin + kGroupSize, plan.scenarios);
    if (!plan.shown.empty()) {
      const auto next = plan.shown.lower_bound(begin);
      if (next == plan.shown.end() || *next >= end) {
        continue;
      }
    }
    std::fflush(output);
    progress->scenario = begin;
    const pid_t child = fork();
    if (child == 0) {
      RunGroup(plan, begin, end, progress, output);
    }
    int status = 0;
    while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (child < 0) {
      std::fprintf(stderr, "no process for a group: %s\n", std::strerror(errno));
      std::exit(2);
    }
    ended += PrintEnd(plan, *progress, end, status, output);
  }
  std::fflush(output);
  return ended;
}

}  // namespace kio::differential
