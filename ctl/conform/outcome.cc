#include "conform/outcome.h"

#include <algorithm>

namespace kioctl::conform {

std::string Outcome::group() const {
  const std::string name = one->name;
  return name.substr(0, name.find('.'));
}

size_t Run::Count(Verdict verdict) const {
  return static_cast<size_t>(
      std::count_if(outcomes.begin(), outcomes.end(),
                    [verdict](const Outcome& one) { return one.verdict == verdict; }));
}

std::vector<std::string> Run::Gone() const {
  std::vector<std::string> gone;
  for (const Outcome& outcome : outcomes) {
    if (outcome.verdict == Verdict::kPassed && !outcome.agreed.empty()) {
      gone.emplace_back(outcome.one->name);
    }
  }
  return gone;
}

std::string Run::Summary() const {
  std::string summary = std::to_string(Count(Verdict::kPassed)) + " passed";
  for (const auto& [verdict, words] :
       {std::pair{Verdict::kFailed, " failed"}, std::pair{Verdict::kDeviates, " deviate as agreed"},
        std::pair{Verdict::kSkipped, " skipped"}}) {
    if (const size_t count = Count(verdict); count > 0) {
      summary += ", " + std::to_string(count) + words;
    }
  }
  return summary;
}

const char* WordOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::kPassed:
      return "passed";
    case Verdict::kFailed:
      return "failed";
    case Verdict::kDeviates:
      return "deviates";
    case Verdict::kSkipped:
      return "skipped";
  }
  return "unknown";
}

}  // namespace kioctl::conform
