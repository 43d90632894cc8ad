// A router without a host: the library over a store in memory, whose writes are noted, and whose
// commands do nothing.
#ifndef TESTS_PROOF_PROPERTIES_ROUTER_H
#define TESTS_PROOF_PROPERTIES_ROUTER_H

#include <map>
#include <string>
#include <vector>

namespace kio::properties {

using Nodes = std::map<std::string, std::string>;

struct Write {
  std::string path;
  std::string text;
  bool deletes = false;
};

// Puts the library into the state of a process that has done nothing yet.
void BeginAnew();

Nodes AllNodes();
void SetAllNodes(const Nodes& nodes);

// The writes since the last call.
std::vector<Write> TakeWrites();

// What the library writes to its log at level 6 when it shows its record.
std::string Dump();

// The value of a variable; `**ERROR**` for one that cannot be read.
std::string Variable(const std::string& name);

}  // namespace kio::properties

#endif  // TESTS_PROOF_PROPERTIES_ROUTER_H
