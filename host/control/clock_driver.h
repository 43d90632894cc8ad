// Moves the clock on, and has all done that falls due meanwhile.
#ifndef HOST_CONTROL_CLOCK_DRIVER_H
#define HOST_CONTROL_CLOCK_DRIVER_H

#include <functional>
#include <optional>
#include <utility>

#include "host_clock.h"

namespace kiohost {

class ClockDriver {
 public:
  struct Parts {
    // The first moment after this one at which something falls due that is no stop of the clock.
    std::function<std::optional<HostClock::Time>(HostClock::Time now)> next_due;
    // Does all that is due.
    std::function<void()> settle;
  };

  ClockDriver(HostClock* clock, Parts parts) : clock_(clock), parts_(std::move(parts)) {}

  HostClock* clock() const { return clock_; }

  // Moves the clock to the moment up to which it is wanted, from one moment at which something
  // falls due to the next. All of that is done when it returns.
  void RunToWanted();

 private:
  HostClock* clock_;
  Parts parts_;
};

}  // namespace kiohost

#endif  // HOST_CONTROL_CLOCK_DRIVER_H
