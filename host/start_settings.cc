#include "start_settings.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "node_check.h"
#include "printable_text.h"
#include "profile.h"
#include "profile_list.h"

namespace kiohost {
namespace {

// Tells what the library could not use. Returns how much that is.
size_t TellFaults(const std::vector<ProfileNode>& nodes, const NodeTexts& texts, bool strict) {
  size_t count = 0;
  for (const ProfileNode& node : nodes) {
    const std::string fault = NodeFault(node.node, texts);
    if (!fault.empty()) {
      ++count;
      PrintError((strict ? "" : "warning: ") + node.place + ": " + fault);
    }
  }
  return count;
}

Status WriteNodes(const std::vector<ProfileNode>& nodes, Store* store) {
  StoreTransaction transaction(store);
  if (!transaction.begun().ok()) {
    return transaction.begun();
  }
  for (const ProfileNode& node : nodes) {
    store->Set(node.node.path, node.node.text);
  }
  return transaction.Commit();
}

}  // namespace

Status ApplyStartSettings(const Options& options, const std::filesystem::path& directory,
                          Store* store) {
  const bool replaces = options.factory_reset || store->IsEmpty();
  std::vector<ProfileNode> nodes;
  if (replaces) {
    std::string file;
    Status status = FindProfile(options.profile, directory, &file);
    if (status.ok()) {
      status = ReadProfile(file, &nodes);
    }
    if (!status.ok()) {
      return status;
    }
  }
  for (const Node& node : options.sets) {
    PutNode({.node = node, .place = "--set"}, &nodes);
  }
  const NodeTexts texts = [&](std::string_view path) {
    const ProfileNode* const found = FindNode(nodes, path);
    return found != nullptr ? std::optional(found->node.text)
           : replaces       ? std::nullopt
                            : store->Get(path);
  };
  const size_t faults = TellFaults(nodes, texts, options.strict);
  if (options.strict && faults > 0) {
    return {ExitCode::kProfile, "--strict: the library could not use " + std::to_string(faults) +
                                    (faults == 1 ? " node" : " nodes") +
                                    "; the store is as it was"};
  }
  if (replaces) {
    return store->Replace(PlainNodes(nodes));
  }
  return nodes.empty() ? Status() : WriteNodes(nodes, store);
}

}  // namespace kiohost
