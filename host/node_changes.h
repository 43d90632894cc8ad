// What differs between two states of the store.
#ifndef HOST_NODE_CHANGES_H
#define HOST_NODE_CHANGES_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store.h"

namespace kiohost {

struct NodeChange {
  std::string path;
  std::optional<std::string> before;  // nothing: there was no such node
  std::optional<std::string> after;   // nothing: there is none any more

  bool operator==(const NodeChange&) const = default;
};

// The changes from one list of nodes to another, in the order of the paths.
std::vector<NodeChange> ChangesOf(const std::vector<Node>& before, const std::vector<Node>& after);

// The text of a node in a list; empty when it is not there.
std::string TextIn(const std::vector<Node>& nodes, std::string_view path);

}  // namespace kiohost

#endif  // HOST_NODE_CHANGES_H
