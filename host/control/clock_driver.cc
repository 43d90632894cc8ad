#include "control/clock_driver.h"

#include <algorithm>

#include "signals.h"

namespace kiohost {

void ClockDriver::RunToWanted() {
  parts_.settle();
  // A clock that goes by itself may be past the moment by now.
  const HostClock::Time end = clock_->wanted();
  for (HostClock::Time now = clock_->Now(); now < end && !StopRequested(); now = clock_->Now()) {
    HostClock::Time next = end;
    for (const auto& due : {parts_.next_due(now), clock_->NextStop()}) {
      next = std::min(next, due.value_or(end));
    }
    clock_->MoveTo(next);
    parts_.settle();
  }
}

}  // namespace kiohost
