#include "signals.h"

#include <poll.h>
#include <sys/time.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <iterator>

namespace kiohost {
namespace {

volatile std::sig_atomic_t g_stop_requested = 0;

extern "C" void RequestStop(int /*signal*/) { g_stop_requested = 1; }

// For signals that are to end a wait and nothing else.
extern "C" void NoteOnly(int /*signal*/) {}

bool Handle(int signal_number, void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  return sigaction(signal_number, &action, nullptr) == 0;
}

// Whoever starts a program with SIGHUP ignored (nohup) wants it to outlive its terminal.
bool HandleHangup() {
  struct sigaction before = {};
  return sigaction(SIGHUP, nullptr, &before) == 0 &&
         (before.sa_handler == SIG_IGN || Handle(SIGHUP, RequestStop));
}

bool IsPending(int signal_number) {
  sigset_t pending;
  return sigpending(&pending) == 0 && sigismember(&pending, signal_number) == 1;
}

// SIGALRM, so that deferred work does not interrupt the library; the stops, so that none falls
// between a look at the flag and the wait.
constexpr int kWaitedFor[] = {SIGALRM, SIGTERM, SIGINT, SIGHUP};

// While a command runs: the alarm would call the library, which is in the midst of a call.
constexpr int kWaitedForWithChildren[] = {SIGCHLD, SIGTERM, SIGINT, SIGHUP};

bool IsAnyPending() { return std::any_of(std::begin(kWaitedFor), std::end(kWaitedFor), IsPending); }

constexpr long kMillisecondsPerSecond = 1000;
constexpr long kNanosecondsPerMillisecond = 1000000;

timespec Timespec(long milliseconds) {
  timespec time = {};
  time.tv_sec = milliseconds / kMillisecondsPerSecond;
  time.tv_nsec = milliseconds % kMillisecondsPerSecond * kNanosecondsPerMillisecond;
  return time;
}

bool BlockAll(sigset_t* before) {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGCHLD);
  for (const int signal_number : kWaitedFor) {
    sigaddset(&set, signal_number);
  }
  return sigprocmask(SIG_BLOCK, &set, before) == 0;
}

}  // namespace

bool InstallSignals() {
  // Until the library sets its own handler, an alarm has nothing to do. Children that end are
  // forgotten by the system when SIGCHLD is ignored, as it may be from the start.
  return BlockAll(nullptr) && Handle(SIGPIPE, SIG_IGN) && Handle(SIGALRM, NoteOnly) &&
         Handle(SIGCHLD, NoteOnly) && Handle(SIGTERM, RequestStop) && Handle(SIGINT, RequestStop) &&
         HandleHangup();
}

Alarm AlarmState() {
  // In this order: an alarm that rings in between is seen as pending.
  itimerval timer = {};
  getitimer(ITIMER_REAL, &timer);
  if (timer.it_value.tv_sec != 0 || timer.it_value.tv_usec != 0) {
    return Alarm::kSet;
  }
  return IsPending(SIGALRM) ? Alarm::kFired : Alarm::kNone;
}

bool StopRequested() { return g_stop_requested != 0; }

void WaitForEvents(int max_fd, fd_set* read_set, fd_set* write_set, fd_set* except_set,
                   std::optional<long> milliseconds) {
  sigset_t mask;
  sigprocmask(SIG_SETMASK, nullptr, &mask);
  for (const int signal_number : kWaitedFor) {
    sigdelset(&mask, signal_number);
  }
  // With a descriptor ready, pselect looks at no signal: busy clients could put them off. The wait
  // is over then, as it is for a signal that pselect lets through: the caller must see what it did.
  const bool served = IsAnyPending();
  if (served) {
    sigset_t blocked;
    sigprocmask(SIG_SETMASK, &mask, &blocked);
    sigprocmask(SIG_SETMASK, &blocked, nullptr);
  }
  const timespec timeout = Timespec(milliseconds.value_or(0));
  if (served || pselect(max_fd + 1, read_set, write_set, except_set,
                        milliseconds ? &timeout : nullptr, &mask) < 0) {
    // A signal ended the wait; the sets are as they were asked for, not as they are.
    FD_ZERO(read_set);
    FD_ZERO(write_set);
    FD_ZERO(except_set);
  }
}

// Where the alarm is being served, the stops are let through before this.
ChildWait::ChildWait() { BlockAll(&before_); }

ChildWait::~ChildWait() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

void ChildWait::Wait(std::optional<long> milliseconds) {
  sigset_t mask;
  sigprocmask(SIG_SETMASK, nullptr, &mask);
  for (const int signal_number : kWaitedForWithChildren) {
    sigdelset(&mask, signal_number);
  }
  const timespec timeout = Timespec(milliseconds.value_or(0));
  ppoll(nullptr, 0, milliseconds ? &timeout : nullptr, &mask);
}

}  // namespace kiohost
