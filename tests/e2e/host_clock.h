// A host whose clock the test moves.
#ifndef TESTS_E2E_HOST_CLOCK_H
#define TESTS_E2E_HOST_CLOCK_H

#include <chrono>
#include <string>
#include <vector>

#include "clock_state.h"
#include "host_process.h"
#include "preload.h"
#include "shared_struct.h"

class HostClock {
 public:
  explicit HostClock(HostProcess* host)
      : host_(host), file_(host->dir().File("clock")), state_(file_) {
    constexpr long kSomeTime = 1000000;
    state_->wanted = kSomeTime;
    state_->shown = kSomeTime;
  }

  bool Start(const std::vector<std::string>& arguments = {}) {
    const Preload held_clock(KIO_HELD_CLOCK, "KIO_TEST_CLOCK", file_);
    return host_->Start(arguments);
  }

  // What it shows.
  std::chrono::milliseconds Time() const { return std::chrono::milliseconds(state_->shown); }

  // Waits until the host has nothing left to do before its clock goes on. Returns false when there
  // is no end to it within some seconds.
  bool Settle() {
    // A wait that began before the test sent something may end after it.
    constexpr int kBegunBefore = 1;
    const int before = state_->idle_waits;
    return WaitFor([this, before] { return state_->idle_waits - before > kBegunBefore; });
  }

  // Moves the clock, once the host has settled, and has the host settle again.
  bool Advance(std::chrono::milliseconds time) {
    if (!Settle()) {
      return false;
    }
    state_->wanted = state_->wanted + static_cast<long>(time.count());
    return WaitFor([this] { return state_->shown == state_->wanted; }) && Settle();
  }

 private:
  HostProcess* host_;
  std::string file_;
  SharedStruct<ClockState> state_;
};

#endif  // TESTS_E2E_HOST_CLOCK_H
