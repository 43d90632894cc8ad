#include "faulty_stream.h"

#include <algorithm>

namespace kiohost {

BodyStream::State FaultyStream::Look(Clock::time_point now) {
  if (drips_ && now - second_ >= std::chrono::seconds(1)) {
    second_ = now;
    left_ = amount_;
  }
  if (IsBroken()) {
    return State::kHasBytes;  // the end is to be looked for
  }
  const State state = stream_->Look(now);
  return left_ == 0 && state == State::kHasBytes ? State::kWaits : state;
}

size_t FaultyStream::Take(char* bytes, size_t size) {
  const size_t taken = stream_->Take(bytes, std::min(size, static_cast<size_t>(left_)));
  left_ -= static_cast<int64_t>(taken);
  return taken;
}

}  // namespace kiohost
