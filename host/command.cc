// The system() that the library calls: the linker prefers the program's to the C library's.
//
// The C library's ignores SIGINT while a command runs, so that a stop asked for meanwhile, or even
// pending when the command begins, would be lost, and it waits for as long as the command takes. It
// hands the host's blocked and ignored signals on to the command. And it leaves the command in the
// host's process group, where Ctrl-C would end a resync script, or the writing of a result
// document, half-way. Nor does it spare the shell where none is needed.
#include "command.h"

#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <deque>
#include <optional>
#include <utility>

#include "echo_command.h"
#include "fault_points.h"
#include "journal.h"
#include "signals.h"

namespace kiohost {
namespace {

using Clock = std::chrono::steady_clock;

// When the host is to stop: how long a command may go on, and how long it may take to end after
// SIGTERM. Resync scripts and the writing of a document mostly end by themselves in that time.
constexpr std::chrono::milliseconds kGrace(1300);
constexpr std::chrono::milliseconds kLastGrace(400);

// The same for what runs in the background: nobody waits for its result.
constexpr std::chrono::milliseconds kBackgroundGrace(200);
constexpr std::chrono::milliseconds kKillPatience(100);

class SpawnAttributes {
 public:
  SpawnAttributes() : valid_(posix_spawnattr_init(&attributes_) == 0) {
    sigset_t none;
    sigemptyset(&none);
    sigset_t ignored;
    sigemptyset(&ignored);
    sigaddset(&ignored, SIGPIPE);
    valid_ = valid_ && posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
             posix_spawnattr_setsigdefault(&attributes_, &ignored) == 0 &&
             posix_spawnattr_setpgroup(&attributes_, 0) == 0 &&
             posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                        POSIX_SPAWN_SETPGROUP) == 0;
  }
  ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;

  bool valid() const { return valid_; }
  const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_ = {};
  bool valid_;
};

// Starts a shell that leads a process group; -1 when it cannot be started.
pid_t StartShell(const char* command) {
  const SpawnAttributes attributes;
  // execve takes pointers to char, but does not write to the strings.
  char* const arguments[] = {const_cast<char*>("sh"), const_cast<char*>("-c"),
                             const_cast<char*>(command), nullptr};
  pid_t shell = -1;
  return attributes.valid() &&
                 posix_spawn(&shell, "/bin/sh", nullptr, attributes.get(), arguments, environ) == 0
             ? shell
             : -1;
}

bool GroupLives(pid_t group) { return kill(-group, 0) == 0 || errno != ESRCH; }

long MillisecondsUntil(Clock::time_point time) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - Clock::now());
  return std::max(0L, static_cast<long>(left.count()));
}

// Ends a command that does not end by itself after a stop was asked for: by SIGTERM, and later by
// SIGKILL.
class Ending {
 public:
  explicit Ending(pid_t group) : group_(group) {}

  // Sends the signal that is due. Returns the time until the next one, if there is one.
  std::optional<long> Advance() {
    if (!StopRequested() || is_over()) {
      return std::nullopt;
    }
    if (next_ == kNotBegun) {
      next_ = Clock::now() + kGrace;
    }
    if (Clock::now() >= next_) {
      Signal();
    }
    return MillisecondsUntil(next_);
  }

  // The last signal that was sent, 0 before.
  int signal_number() const { return signal_; }

  // Whether the time is over: what still runs is not waited for.
  bool is_over() const { return signal_ == SIGKILL && Clock::now() >= next_; }

 private:
  void Signal() {
    const bool first = signal_ == 0;
    signal_ = first ? SIGTERM : SIGKILL;
    kill(-group_, signal_);
    next_ = Clock::now() + (first ? kLastGrace : kKillPatience);
  }

  static constexpr auto kNotBegun = Clock::time_point::max();

  pid_t group_;
  Clock::time_point next_ = kNotBegun;
  int signal_ = 0;
};

// All child processes of the host. There is one object, as the library calls system(), which has no
// context argument.
class Children {
 public:
  int Run(const char* command) {
    const Clock::time_point begin = Clock::now();
    CommandResult result;
    result.command = command;
    FaultPoints* const faults = LibraryFaults();
    if (faults == nullptr) {
      RunAsEver(command, &result);
    } else {
      RunUnderFaults(faults, &result);
    }
    if (TheJournal().is_on()) {
      Note(result, Clock::now() - begin);
    }
    results_.push_back(result);
    if (results_.size() > kMostResults) {
      results_.pop_front();
    }
    return result.status;
  }

  void set_watch(CommandWatch watch) { watch_ = std::move(watch); }
  void set_always_shell(bool always) { always_shell_ = always; }

  std::vector<CommandResult> TakeResults() {
    std::vector<CommandResult> taken(results_.begin(), results_.end());
    results_.clear();
    return taken;
  }

  // Collects the status of all children that have ended. Returns whether `child` is one of them,
  // with its status.
  bool Reap(pid_t child, int* status) {
    bool ended = false;
    int one_status = 0;
    pid_t one = 0;
    while ((one = waitpid(-1, &one_status, WNOHANG)) > 0) {
      if (one == child) {
        *status = one_status;
        ended = true;
      }
    }
    // Once a group is empty, its number may be given to another: so an empty group is not kept.
    std::erase_if(left_groups_, [](pid_t group) { return !GroupLives(group); });
    return ended || (one < 0 && errno == ECHILD);
  }

  void EndLeft() {
    ChildWait wait;
    for (const auto& [signal_number, patience] :
         {std::pair(SIGTERM, kBackgroundGrace), std::pair(SIGKILL, kKillPatience)}) {
      Reap(-1, nullptr);
      for (const pid_t group : left_groups_) {
        kill(-group, signal_number);
      }
      const auto end = Clock::now() + patience;
      for (; !left_groups_.empty() && Clock::now() < end; Reap(-1, nullptr)) {
        wait.Wait(MillisecondsUntil(end));
      }
    }
  }

 private:
  static constexpr size_t kMostResults = 32;

  static void Note(const CommandResult& result, Clock::duration time) {
    Json about = {{"command", result.command},
                  {"status", WIFEXITED(result.status) ? WEXITSTATUS(result.status) : -1},
                  {"ms", std::chrono::duration_cast<std::chrono::milliseconds>(time).count()}};
    if (!result.ok()) {
      about["failure"] = DescribeStatus(result);
    }
    TheJournal().Add("command", std::move(about));
  }

  // A command that a rule holds up has begun.
  void RunUnderFaults(FaultPoints* faults, CommandResult* result) {
    TellBegin(*result);
    const FaultPoints::Command fault = faults->OnCommand(result->command);
    const std::string& command = fault.instead.empty() ? result->command : fault.instead;
    if (fault.status) {
      result->status = *fault.status;
    } else if (!RunWithoutShell(command.c_str(), &result->status)) {
      RunByShell(command.c_str(), result);
    }
    TellEnd(*result);
  }

  // Writes a line of a document. Returns false when a shell has to run the command.
  bool RunWithoutShell(const char* command, int* status) const {
    const std::optional<EchoCommand> echo = always_shell_ ? std::nullopt : ReadEchoCommand(command);
    const std::optional<int> done = echo ? RunEchoCommand(*echo) : std::nullopt;
    *status = done.value_or(*status);
    return done.has_value();
  }

  void TellBegin(const CommandResult& result) const {
    if (watch_.begins) {
      watch_.begins(result.command);
    }
  }
  void TellEnd(const CommandResult& result) const {
    if (watch_.ended) {
      watch_.ended(result);
    }
  }

  void RunAsEver(const char* command, CommandResult* result) {
    if (!RunWithoutShell(command, &result->status)) {
      TellBegin(*result);
      RunByShell(command, result);
      TellEnd(*result);
    }
  }

  void RunByShell(const char* command, CommandResult* result) {
    // Processes that commands leave in the background become children of the host, and not of a
    // process that may never wait for them.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const pid_t shell = StartShell(command);
    if (shell > 0) {
      AwaitEnd(shell, result);
    }
  }

  void AwaitEnd(pid_t shell, CommandResult* result) {
    ChildWait wait;
    Ending ending(shell);
    bool ended = Reap(shell, &result->status);
    // Processes that the shell started may end later than the shell.
    while (!ended || (ending.signal_number() != 0 && GroupLives(shell) && !ending.is_over())) {
      wait.Wait(ending.Advance());
      ended = Reap(shell, &result->status) || ended;
    }
    result->ended_by = ending.signal_number();
    if (GroupLives(shell)) {
      left_groups_.push_back(shell);
    }
  }

  bool always_shell_ = false;
  CommandWatch watch_;
  std::deque<CommandResult> results_;
  std::vector<pid_t> left_groups_;  // whose shells have ended
};

std::string KilledBy(int signal_number) {
  return "killed by signal " + std::to_string(signal_number);
}

// How many hold the commands. The library calls system() without a context argument.
int g_holders = 0;

Children& TheChildren() {
  static Children children;
  return children;
}

}  // namespace

std::string DescribeStatus(const CommandResult& result) {
  constexpr int kNotExecutable = 126;  // the status of a shell for that
  constexpr int kNotFound = 127;
  constexpr int kKilled = 128;  // plus the number of the signal
  if (result.status == -1) {
    return "could not be started";
  }
  if (result.ended_by != 0) {
    return KilledBy(result.ended_by) + " as the host stopped";
  }
  if (WIFSIGNALED(result.status)) {
    return KilledBy(WTERMSIG(result.status));
  }
  const int code = WEXITSTATUS(result.status);
  const std::string text = "exit status " + std::to_string(code);
  if (code > kKilled && code <= kKilled + SIGRTMAX) {
    return text + " (" + KilledBy(code - kKilled) + ")";
  }
  return text + (code == kNotFound        ? " (not found)"
                 : code == kNotExecutable ? " (not executable)"
                                          : "");
}

void AlwaysRunShell(bool always) { TheChildren().set_always_shell(always); }

HeldCommands::HeldCommands() { ++g_holders; }

HeldCommands::~HeldCommands() { --g_holders; }

void WatchCommands(CommandWatch watch) { TheChildren().set_watch(std::move(watch)); }

std::vector<CommandResult> TakeCommandResults() { return TheChildren().TakeResults(); }

void NoteEndedProcesses() { TheChildren().Reap(-1, nullptr); }

void EndLeftProcesses() { TheChildren().EndLeft(); }

}  // namespace kiohost

// Returns the command's wait status, -1 when it could not be started.
extern "C" [[gnu::visibility("default")]] int system(const char* command) {
  if (command == nullptr) {
    return 1;  // there is a shell
  }
  return kiohost::g_holders > 0 ? 0 : kiohost::TheChildren().Run(command);
}
