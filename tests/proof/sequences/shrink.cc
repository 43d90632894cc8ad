#include "shrink.h"

#include <algorithm>
#include <set>

namespace kio::sequences {
namespace {

// Without these a step is none.
const std::set<std::string> kNeeded = {"client", "action", "key", "value", "how", "seconds"};

class Shrinker {
 public:
  Shrinker(Sequence sequence, const std::function<bool(const Sequence&)>& fails, int tries)
      : sequence_(std::move(sequence)), fails_(fails), tries_(tries) {}

  // Whether something was left out.
  bool LeaveOutSteps() {
    bool shorter = false;
    for (size_t size = std::max<size_t>(sequence_.size() / 2, 1); size > 0; size /= 2) {
      for (size_t end = sequence_.size(); end > 0;) {
        const size_t begin = end > size ? end - size : 0;
        Sequence candidate = sequence_;
        candidate.erase(candidate.begin() + static_cast<long>(begin),
                        candidate.begin() + static_cast<long>(end));
        shorter = Try(candidate) || shorter;
        end = begin;
      }
    }
    return shorter;
  }

  bool LeaveOutWords() {
    bool shorter = false;
    for (size_t i = 0; i < sequence_.size(); ++i) {
      const Step step = sequence_[i];
      for (const auto& [name, value] : step.words) {
        Sequence candidate = sequence_;
        candidate[i].words.erase(name);
        shorter = (!kNeeded.contains(name) && Try(candidate)) || shorter;
      }
    }
    return shorter;
  }

  const Sequence& sequence() const { return sequence_; }

 private:
  bool Try(const Sequence& candidate) {
    if (tries_-- <= 0 || candidate.empty() || !fails_(candidate)) {
      return false;
    }
    sequence_ = candidate;
    return true;
  }

  Sequence sequence_;
  const std::function<bool(const Sequence&)>& fails_;
  int tries_;
};

}  // namespace

Sequence Shrink(Sequence sequence, const std::function<bool(const Sequence&)>& fails, int tries) {
  Shrinker shrinker(std::move(sequence), fails, tries);
  while (shrinker.LeaveOutSteps() || shrinker.LeaveOutWords()) {
  }
  return shrinker.sequence();
}

}  // namespace kio::sequences
