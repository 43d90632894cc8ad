// Running scenarios and printing what the library did.
#ifndef KIO_DIFFERENTIAL_RUN_H
#define KIO_DIFFERENTIAL_RUN_H

#include <cstdint>
#include <cstdio>
#include <set>

namespace kio::differential {

struct Plan {
  std::uint64_t seed = 1;
  int scenarios = 1000;
  // When it is not empty, only these scenarios are printed, with all their events.
  std::set<int> shown;
};

// Runs the plan, each group of scenarios in a process of its own, and writes a line with a digest
// for each scenario, or the events of those that are shown. Returns the number of scenarios in
// which the library ended the process.
int Run(const Plan& plan, FILE* output);

}  // namespace kio::differential

#endif
