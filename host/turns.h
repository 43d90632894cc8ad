// Whose turn it is to run an exchange.
//
// An exchange ends when its answer was sent and its commit has run; only then may the next one
// begin. Otherwise the library would move the first one's pending actions out of the way of the
// second one's, and the first commit would not run them.
#ifndef HOST_TURNS_H
#define HOST_TURNS_H

#include <algorithm>
#include <deque>

namespace kiohost {

// First come, first served. `Visitor` is a pointer type.
template <typename Visitor>
class Turns {
 public:
  // True when it is the visitor's turn; otherwise the visitor now waits in line.
  bool Take(Visitor visitor) {
    if (current_ == nullptr && waiting_.empty()) {
      current_ = visitor;
    }
    if (current_ != visitor && !IsWaiting(visitor)) {
      waiting_.push_back(visitor);
    }
    return current_ == visitor;
  }

  // Ends the visitor's turn or its waiting. Returns the visitor whose turn begins by that, or null.
  Visitor Leave(Visitor visitor) {
    waiting_.erase(std::remove(waiting_.begin(), waiting_.end(), visitor), waiting_.end());
    if (current_ != visitor) {
      return nullptr;
    }
    current_ = nullptr;
    if (!waiting_.empty()) {
      current_ = waiting_.front();
      waiting_.pop_front();
    }
    return current_;
  }

  const std::deque<Visitor>& waiting() const { return waiting_; }

 private:
  bool IsWaiting(Visitor visitor) const {
    return std::find(waiting_.begin(), waiting_.end(), visitor) != waiting_.end();
  }

  Visitor current_ = nullptr;
  std::deque<Visitor> waiting_;
};

}  // namespace kiohost

#endif  // HOST_TURNS_H
