#include "node_changes.h"

#include <strings.h>

#include <algorithm>
#include <map>

namespace kiohost {
namespace {

struct ByPath {
  bool operator()(const std::string& a, const std::string& b) const {
    return strcasecmp(a.c_str(), b.c_str()) < 0;
  }
};

}  // namespace

std::vector<NodeChange> ChangesOf(const std::vector<Node>& before, const std::vector<Node>& after) {
  std::map<std::string, NodeChange, ByPath> changes;
  for (const Node& node : before) {
    changes[node.path] = {node.path, node.text, std::nullopt};
  }
  for (const Node& node : after) {
    NodeChange& change = changes[node.path];
    change.path = node.path;
    change.after = node.text;
  }
  std::vector<NodeChange> real;
  for (auto& [path, change] : changes) {
    if (change.before != change.after) {
      real.push_back(std::move(change));
    }
  }
  return real;
}

std::string TextIn(const std::vector<Node>& nodes, std::string_view path) {
  const std::string wanted(path);
  const auto found = std::find_if(nodes.begin(), nodes.end(), [&wanted](const Node& node) {
    return strcasecmp(node.path.c_str(), wanted.c_str()) == 0;
  });
  return found == nodes.end() ? std::string() : found->text;
}

}  // namespace kiohost
