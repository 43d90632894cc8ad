// What became of the cases of a run.
#ifndef CTL_CONFORM_OUTCOME_H
#define CTL_CONFORM_OUTCOME_H

#include <string>
#include <vector>

#include "conform/case.h"

namespace kioctl::conform {

enum class Verdict { kPassed, kFailed, kDeviates, kSkipped };

struct Outcome {
  const Case* one = nullptr;
  Verdict verdict = Verdict::kPassed;
  std::string why;     // it failed, deviates or was skipped
  std::string agreed;  // the reason of its deviation, also when it has passed
  double seconds = 0;
  std::vector<std::string> transcript;  // of a case that failed or deviates

  std::string group() const;
};

struct Run {
  std::string url;
  std::string router;  // its model, name and version of documents
  std::string program;
  std::string order;  // such as "by seed 5"
  std::vector<Outcome> outcomes;
  std::string cut_short;  // why not all cases were run

  size_t Count(Verdict verdict) const;
  // The names of deviations that no longer happen.
  std::vector<std::string> Gone() const;
  // Such as "3 passed, 1 failed, 2 skipped".
  std::string Summary() const;
};

const char* WordOf(Verdict verdict);

// A line for each case in the Test Anything Protocol, version 14.
std::string TapHead(const Run& run, size_t cases);
std::string TapLines(const Outcome& outcome, size_t number);
std::string TapTail(const Run& run);

// Whole files.
std::string JunitReport(const Run& run);
std::string PageReport(const Run& run);

}  // namespace kioctl::conform

#endif  // CTL_CONFORM_OUTCOME_H
