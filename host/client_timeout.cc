#include "client_timeout.h"

#include <algorithm>

namespace kiohost {

void ClientTimeout::Enter(Phase phase, Clock::time_point now) {
  phase_ = phase;
  since_ = now;
  last_ = now;
  bytes_ = 0;
}

void ClientTimeout::Add(int64_t bytes, Clock::time_point now) {
  if (bytes > 0) {
    bytes_ += bytes;
    last_ = now;
  }
}

ClientTimeout::Clock::time_point ClientTimeout::Deadline() const {
  switch (phase_) {
    case Phase::kIdle:
      return since_ + kIdleTime;
    case Phase::kHead:
      return since_ + kHeadTime;
    case Phase::kWaits:
      return Clock::time_point::max();
    case Phase::kStream:
      return last_ + kSilence;
    case Phase::kBody:
    case Phase::kAnswer:
      break;
  }
  const std::chrono::seconds allowed = kGrace + std::chrono::seconds(bytes_ / kBytesPerSecond);
  return std::min<Clock::time_point>(since_ + allowed, last_ + kSilence);
}

}  // namespace kiohost
