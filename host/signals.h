// The host's signals.
#ifndef HOST_SIGNALS_H
#define HOST_SIGNALS_H

#include <csignal>
#include <optional>

namespace kiohost {

// Installs the signal handling of the process: SIGPIPE is ignored; SIGTERM, SIGINT and SIGHUP ask
// for a stop, SIGHUP unless it was ignored before. These, SIGALRM and SIGCHLD are blocked except in
// the waits below: work that the library defers by an alarm never interrupts a call into the
// library. The threads that are started later have them blocked, and only the thread of the library
// waits so. Returns false when the system refuses.
bool InstallSignals();

// Whether a stop was asked for.
bool StopRequested();

// The alarm of the process (alarm(2)), of which there is one.
enum class Alarm {
  kNone,   // not set, or served
  kSet,    // set
  kFired,  // to be served by the next wait
};
Alarm AlarmState();

// Keeps the alarm as it is when none is set: at the end of its scope, an alarm that was set
// meanwhile is taken back, also when it has fired, and its handler is the one from before.
class AlarmKeeper {
 public:
  AlarmKeeper();
  ~AlarmKeeper();
  AlarmKeeper(const AlarmKeeper&) = delete;
  AlarmKeeper& operator=(const AlarmKeeper&) = delete;

 private:
  struct sigaction before_ = {};
};

// Waits until the descriptor (none when negative) can be read, a stop is asked for, an alarm was
// served, or the time is over. Returns whether the descriptor can be read. A signal is served even
// when the wait is over at once.
bool WaitForEvents(int descriptor, long timeout_ms);

// Waits for child processes, also within calls of the library, so it serves no alarm. As long as
// the object lives, the end of a child and a stop are served in `Wait` only, so that none is missed
// between a look and a wait.
class ChildWait {
 public:
  ChildWait();
  ~ChildWait();
  ChildWait(const ChildWait&) = delete;
  ChildWait& operator=(const ChildWait&) = delete;

  // Returns when a child has ended, a stop is asked for, or the time is over (without
  // `timeout_ms`: without limit). It may return earlier.
  void Wait(std::optional<long> timeout_ms);

 private:
  sigset_t before_ = {};
};

}  // namespace kiohost

#endif  // HOST_SIGNALS_H
