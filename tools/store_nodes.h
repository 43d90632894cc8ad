// Every node of the store that the library reads or writes.
#ifndef TOOLS_STORE_NODES_H
#define TOOLS_STORE_NODES_H

#include <string>
#include <vector>

#include "sections.h"

namespace kio::tools {

struct StoreNode {
  // In lower case; "{band}" stands for 2.4 and 5, "{n}" for the number of an instance.
  std::string path = {};
  std::string meaning = {};
  std::string value = {};                   // type and range
  std::string absent = {};                  // what an absent node counts as
  std::vector<std::string> reads = {};      // when the library reads it
  std::vector<std::string> writes = {};     // when the library writes or deletes it, and for whom
  bool is_own = false;                      // written by the library alone
  std::vector<std::string> elements = {};   // of a settings document
  std::vector<std::string> variables = {};  // those of the first radio for both
  // The row of the library's tables; null for a node that stands in none of them.
  const Field* field = nullptr;
  SectionInstance section = {};
};

// All nodes, sorted by path.
std::vector<StoreNode> ListStoreNodes();

// The table of the nodes, in Markdown.
std::string StoreTable(const std::vector<StoreNode>& nodes);

}  // namespace kio::tools

#endif  // TOOLS_STORE_NODES_H
