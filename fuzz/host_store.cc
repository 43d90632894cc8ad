#include "host_store.h"

#include <vector>

#include "input.h"
#include "testing/sample_device.h"

namespace kio::fuzz {
namespace {

std::vector<kiohost::Node> Nodes() {
  std::vector<kiohost::Node> nodes;
  for (int i = 0; i < kSampleNodeCount; ++i) {
    const SampleNode& node = kSampleNodes[i];
    if (node.in_use != nullptr) {
      nodes.push_back({node.path, node.in_use});
    }
  }
  return nodes;
}

}  // namespace

kiohost::Store* HostStore(bool changed) {
  static kiohost::Store store;
  static const std::vector<kiohost::Node> nodes = Nodes();
  static const bool opened = store.Open(":memory:", kiohost::Store::Mode::kCreate).ok();
  static bool is_first = true;
  if (!opened || ((changed || is_first) && !store.Replace(nodes).ok())) {
    Report("no store in memory");
  }
  is_first = false;
  return &store;
}

}  // namespace kio::fuzz
