// The host's signals.
#ifndef HOST_SIGNALS_H
#define HOST_SIGNALS_H

#include <sys/select.h>

#include <optional>

namespace kiohost {

// Installs the signal handling of the process: SIGPIPE is ignored, SIGTERM and SIGINT ask for a
// stop. These two and SIGALRM are blocked but for the waits below: work that the library defers by
// an alarm never interrupts a call into the library. Returns false when the system refuses.
bool InstallSignals();

// Whether a stop was asked for.
bool StopRequested();

// Waits until a descriptor of the sets is ready, a stop is asked for, an alarm was served, or the
// time is over (without `milliseconds`: without limit). The sets hold what is ready.
void WaitForEvents(int max_fd, fd_set* read_set, fd_set* write_set, fd_set* except_set,
                   std::optional<long> milliseconds);

}  // namespace kiohost

#endif  // HOST_SIGNALS_H
