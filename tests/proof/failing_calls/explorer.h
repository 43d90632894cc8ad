// Has each call of a scenario fail in each of its ways. At each call a copy of the process is made
// for each way: there the call fails, and the scenario goes on to its end. The copy judges what it
// did.
#ifndef KIO_TESTS_PROOF_FAILING_CALLS_EXPLORER_H
#define KIO_TESTS_PROOF_FAILING_CALLS_EXPLORER_H

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "scenarios.h"
#include "ways.h"

namespace kio::proof {

// What a scenario has led to.
struct Outcome {
  std::vector<std::string> trace;
  std::set<std::string> formats;
  std::map<std::string, std::string> store;
  std::map<std::string, std::string> files;
  std::string record;
};

// What is counted, in memory that all processes share.
struct Tally {
  std::array<int, kCallNames.size()> calls;   // of the scenario
  std::array<int, kCallNames.size()> failed;  // calls that failed, each way counted
  int unnoticed;                              // failures that changed nothing
  int wrong;
  std::uint64_t digest;       // of all outcomes, in order
  std::uint64_t last_digest;  // of the way before, of the same call; 0: this is the first
};

// Whether this call of the library fails, and how; null: it does not. `about` is what it is done
// to.
const Way* Reach(Call call, const std::string& about);

// Runs the scenario without a failure.
Outcome RunPlain(const Scenario& scenario);

// Runs it once more, with all the failures. `messages` are the formats that may be logged.
void Explore(const Scenario& scenario, const Outcome& plain, const std::set<std::string>& messages,
             Tally* tally);

}  // namespace kio::proof

#endif
