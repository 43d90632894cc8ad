// What holds of every device and every document.
#ifndef TESTS_PROOF_PROPERTIES_PROPERTIES_H
#define TESTS_PROOF_PROPERTIES_PROPERTIES_H

#include <cstdint>
#include <map>
#include <string>

#include "../../../tools/differential/document.h"
#include "router.h"

namespace kio::properties {

// A random device and a document for it.
struct Case {
  Nodes device;
  differential::Element document;
  std::string text;  // of the document
  bool cloning = false;
  bool plain = false;  // the document is well formed, and nothing was spoilt in it
};

Case Draw(std::uint64_t seed);
// The text anew, of a document that has changed.
void Rewrite(std::uint64_t seed, Case* drawn);

// How often each property was looked at, and each exception was taken.
using Tally = std::map<std::string, long>;

// What is wrong with the library on this case; empty for nothing.
std::string Violation(std::uint64_t seed, const Case& drawn, Tally* tally);

// The properties one by one, on the device of the case.
std::string AppliedTwice(const Case& drawn, Tally* tally);
std::string DumpVariablesAndStoreAgree(Tally* tally);
std::string RefusalWritesNothing(const Case& drawn, Tally* tally);
std::string ValidIsTaken(std::uint64_t seed, Tally* tally);
std::string VariablesDoTheSame(const Case& drawn, Tally* tally);
std::string StoredAsSent(const Case& drawn, Tally* tally);

}  // namespace kio::properties

#endif  // TESTS_PROOF_PROPERTIES_PROPERTIES_H
