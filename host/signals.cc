#include "signals.h"

#include <poll.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <iterator>

#include "host_clock.h"

namespace kiohost {
namespace {

volatile std::sig_atomic_t g_stop_requested = 0;

extern "C" void RequestStop(int /*signal*/) { g_stop_requested = 1; }

// The handler of signals that only end a wait.
extern "C" void NoteOnly(int /*signal*/) {}

bool Handle(int signal_number, void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  return sigaction(signal_number, &action, nullptr) == 0;
}

// A program that is started with SIGHUP ignored (nohup) is to outlive its terminal.
bool HandleHangup() {
  struct sigaction before = {};
  return sigaction(SIGHUP, nullptr, &before) == 0 &&
         (before.sa_handler == SIG_IGN || Handle(SIGHUP, RequestStop));
}

bool IsPending(int signal_number) {
  sigset_t pending;
  return sigpending(&pending) == 0 && sigismember(&pending, signal_number) == 1;
}

// The signals that the wait for events serves. They are blocked otherwise: SIGALRM so that deferred
// work does not interrupt the library, the stops so that none comes between a look at the flag and
// the wait.
constexpr int kWaitedFor[] = {SIGALRM, SIGTERM, SIGINT, SIGHUP};

// The signals that the wait for a command serves. The alarm is not among them: it would call the
// library, which is within a call already.
constexpr int kWaitedForWithChildren[] = {SIGCHLD, SIGTERM, SIGINT, SIGHUP};

bool IsAnyPending() { return std::any_of(std::begin(kWaitedFor), std::end(kWaitedFor), IsPending); }

constexpr long kMillisecondsPerSecond = 1000;
constexpr long kNanosecondsPerMillisecond = 1000000;

timespec Timespec(long time_ms) {
  timespec time = {};
  time.tv_sec = time_ms / kMillisecondsPerSecond;
  time.tv_nsec = time_ms % kMillisecondsPerSecond * kNanosecondsPerMillisecond;
  return time;
}

bool BlockAll(sigset_t* before) {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGCHLD);
  for (const int signal_number : kWaitedFor) {
    sigaddset(&set, signal_number);
  }
  return pthread_sigmask(SIG_BLOCK, &set, before) == 0;
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
  if (TheClock().is_own() && TheClock().alarm()) {
    return Alarm::kSet;
  }
  // In this order: an alarm that fires in between is seen as pending.
  itimerval timer = {};
  getitimer(ITIMER_REAL, &timer);
  if (timer.it_value.tv_sec != 0 || timer.it_value.tv_usec != 0) {
    return Alarm::kSet;
  }
  return IsPending(SIGALRM) ? Alarm::kFired : Alarm::kNone;
}

AlarmKeeper::AlarmKeeper() { sigaction(SIGALRM, nullptr, &before_); }

AlarmKeeper::~AlarmKeeper() {
  if (AlarmState() == Alarm::kSet) {
    alarm(0);
  }
  if (IsPending(SIGALRM)) {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGALRM);
    const timespec at_once = {};
    sigtimedwait(&set, nullptr, &at_once);
  }
  sigaction(SIGALRM, &before_, nullptr);
}

bool StopRequested() { return g_stop_requested != 0; }

bool WaitForEvents(int descriptor, long timeout_ms) {
  sigset_t mask;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  for (const int signal_number : kWaitedFor) {
    sigdelset(&mask, signal_number);
  }
  // With a descriptor ready, ppoll serves no signal, so busy clients could put signals off. They
  // are served here, and the wait ends, as it does for a signal during ppoll: the caller must see
  // what it did.
  if (IsAnyPending()) {
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, &mask, &blocked);
    pthread_sigmask(SIG_SETMASK, &blocked, nullptr);
    return false;
  }
  pollfd look = {descriptor, POLLIN, 0};
  const timespec timeout = Timespec(timeout_ms);
  return ppoll(&look, 1, &timeout, &mask) > 0;
}

// A command that is run by the alarm's handler begins with the stops unblocked, so they are blocked
// here.
ChildWait::ChildWait() { BlockAll(&before_); }

ChildWait::~ChildWait() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

void ChildWait::Wait(std::optional<long> timeout_ms) {
  sigset_t mask;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  for (const int signal_number : kWaitedForWithChildren) {
    sigdelset(&mask, signal_number);
  }
  const timespec timeout = Timespec(timeout_ms.value_or(0));
  ppoll(nullptr, 0, timeout_ms ? &timeout : nullptr, &mask);
}

}  // namespace kiohost
