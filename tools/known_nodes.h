// What a text of each node must be for the library to use it, as a table for the host.
#ifndef TOOLS_KNOWN_NODES_H
#define TOOLS_KNOWN_NODES_H

#include <optional>
#include <string>
#include <vector>

#include "store_nodes.h"

namespace kio::tools {

// The rows of `kKnownNodes` in host/node_check.cc. Returns null, with the reason in `error`, for a
// node whose value is described in words that this does not know.
std::optional<std::string> KnownNodes(const std::vector<StoreNode>& nodes, std::string* error);

}  // namespace kio::tools

#endif  // TOOLS_KNOWN_NODES_H
