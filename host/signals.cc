#include "signals.h"

#include <sys/time.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <iterator>

namespace kiohost {
namespace {

volatile std::sig_atomic_t g_stop_requested = 0;

extern "C" void RequestStop(int /*signal*/) { g_stop_requested = 1; }

bool Handle(int signal_number, void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  return sigaction(signal_number, &action, nullptr) == 0;
}

bool IsPending(int signal_number) {
  sigset_t pending;
  return sigpending(&pending) == 0 && sigismember(&pending, signal_number) == 1;
}

// SIGALRM, so that deferred work does not interrupt the library; SIGTERM and SIGINT, so that none
// falls between a look at the flag and the wait.
constexpr int kWaitedFor[] = {SIGALRM, SIGTERM, SIGINT};

bool IsAnyPending() { return std::any_of(std::begin(kWaitedFor), std::end(kWaitedFor), IsPending); }

}  // namespace

bool InstallSignals() {
  sigset_t waited_for;
  sigemptyset(&waited_for);
  for (const int signal_number : kWaitedFor) {
    sigaddset(&waited_for, signal_number);
  }
  return sigprocmask(SIG_BLOCK, &waited_for, nullptr) == 0 && Handle(SIGPIPE, SIG_IGN) &&
         Handle(SIGTERM, RequestStop) && Handle(SIGINT, RequestStop);
}

Alarm AlarmState() {
  // In this order: an alarm that rings in between is seen as pending.
  itimerval timer = {};
  getitimer(ITIMER_REAL, &timer);
  if (timer.it_value.tv_sec != 0 || timer.it_value.tv_usec != 0) {
    return Alarm::kTicking;
  }
  return IsPending(SIGALRM) ? Alarm::kRung : Alarm::kNone;
}

bool StopRequested() { return g_stop_requested != 0; }

void WaitForEvents(int max_fd, fd_set* read_set, fd_set* write_set, fd_set* except_set,
                   std::optional<long> milliseconds) {
  constexpr long kMillisecondsPerSecond = 1000;
  constexpr long kNanosecondsPerMillisecond = 1000000;
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
  timespec timeout = {};
  if (milliseconds) {
    timeout.tv_sec = *milliseconds / kMillisecondsPerSecond;
    timeout.tv_nsec = *milliseconds % kMillisecondsPerSecond * kNanosecondsPerMillisecond;
  }
  if (served || pselect(max_fd + 1, read_set, write_set, except_set,
                        milliseconds ? &timeout : nullptr, &mask) < 0) {
    // A signal ended the wait; the sets are as they were asked for, not as they are.
    FD_ZERO(read_set);
    FD_ZERO(write_set);
    FD_ZERO(except_set);
  }
}

}  // namespace kiohost
