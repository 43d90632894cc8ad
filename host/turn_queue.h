// The queue for exchanges: one runs at a time.
//
// An exchange ends when its answer was sent and its commit has run; only then may the next one
// begin. Otherwise the library would replace the pending actions of the first by those of the
// second, and the first commit would not run them.
#ifndef HOST_TURN_QUEUE_H
#define HOST_TURN_QUEUE_H

#include <algorithm>
#include <deque>

namespace kiohost {

// First come, first served. `Request` is a pointer type.
template <typename Request>
class TurnQueue {
 public:
  // True when it is the request's turn; otherwise the request now waits for it.
  bool Take(Request request) {
    if (current_ == nullptr && waiting_.empty()) {
      current_ = request;
    }
    if (current_ != request && !IsWaiting(request)) {
      waiting_.push_back(request);
    }
    return current_ == request;
  }

  // Ends the request's turn or its waiting. Returns the request whose turn begins by that, or null.
  Request Leave(Request request) {
    waiting_.erase(std::remove(waiting_.begin(), waiting_.end(), request), waiting_.end());
    if (current_ != request) {
      return nullptr;
    }
    current_ = nullptr;
    if (!waiting_.empty()) {
      current_ = waiting_.front();
      waiting_.pop_front();
    }
    return current_;
  }

  // Whether it is somebody's turn.
  bool IsTaken() const { return current_ != nullptr; }

  const std::deque<Request>& waiting() const { return waiting_; }

  // Whether it is the turn of another request.
  bool IsOthers(Request request) const { return current_ != nullptr && current_ != request; }

 private:
  bool IsWaiting(Request request) const {
    return std::find(waiting_.begin(), waiting_.end(), request) != waiting_.end();
  }

  Request current_ = nullptr;
  std::deque<Request> waiting_;
};

}  // namespace kiohost

#endif  // HOST_TURN_QUEUE_H
