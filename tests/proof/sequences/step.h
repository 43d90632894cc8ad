// One step of a sequence: what a client, the clock or the power does to a virtual router.
#ifndef TESTS_PROOF_SEQUENCES_STEP_H
#define TESTS_PROOF_SEQUENCES_STEP_H

#include <map>
#include <string>
#include <vector>

namespace kio::sequences {

// As a text it is a line: the kind, and a word NAME=VALUE for each member. Blanks and percent signs
// of a value are written as in a URL.
struct Step {
  std::string kind;
  std::map<std::string, std::string> words;

  bool Has(const std::string& name) const { return words.contains(name); }
  std::string Get(const std::string& name, const std::string& otherwise = "") const;
  long Number(const std::string& name) const;
  // The client that takes the step: 1 or 2.
  int client() const { return Get("client") == "2" ? 2 : 1; }
  std::string address() const { return "127.0.0." + Get("client", "1"); }
};

using Sequence = std::vector<Step>;

std::string TextOf(const Step& step);
std::string TextOf(const Sequence& sequence);

// Lines that are empty or begin with `#` are no steps.
Sequence ReadSequence(const std::string& text);

}  // namespace kio::sequences

#endif  // TESTS_PROOF_SEQUENCES_STEP_H
