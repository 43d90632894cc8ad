#include "start_settings.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <vector>

#include "node_check.h"
#include "printable_text.h"
#include "profile.h"
#include "text.h"

namespace kiohost {
namespace {

constexpr char kDefaultProfile[] = "dual-band-router";
constexpr char kEnding[] = ".profile";

// The names of the delivered profiles, in order.
std::vector<std::string> ProfileNames(const std::filesystem::path& directory) {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
    if (entry.path().extension() == kEnding) {
      names.push_back(entry.path().stem());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

// What the first line of a profile says.
std::string Description(const std::filesystem::path& file) {
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  return line.starts_with('#') ? std::string(Trim(line.substr(1))) : "";
}

// The file of a profile, which is told by its name or by the file itself.
Status FindProfile(const std::string& name, const std::filesystem::path& directory,
                   std::string* file) {
  *file = directory / ((name.empty() ? kDefaultProfile : name) + kEnding);
  const std::vector<std::string> names = ProfileNames(directory);
  if (name.empty() || std::find(names.begin(), names.end(), name) != names.end()) {
    return {};
  }
  std::error_code error;
  if (std::filesystem::exists(name, error) || name.find('/') != std::string::npos) {
    *file = name;
    return {};
  }
  return {ExitCode::kProfile, "cannot read the profile " + name +
                                  ": there is neither such a file nor a delivered profile of that "
                                  "name (--profiles lists them)"};
}

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

std::string ProfileList(const std::filesystem::path& directory) {
  std::string list;
  const std::vector<std::string> names = ProfileNames(directory);
  size_t width = 0;
  for (const std::string& name : names) {
    width = std::max(width, name.size());
  }
  for (const std::string& name : names) {
    list += name + std::string(width - name.size() + 2, ' ') +
            Description(directory / (name + kEnding)) +
            (name == kDefaultProfile ? " (default)\n" : "\n");
  }
  return list;
}

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
