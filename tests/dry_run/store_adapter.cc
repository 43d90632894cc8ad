// The store of the makers of random devices: that of the host.
#include "store_adapter.h"

#include "../../tools/differential/store.h"

namespace {

kiohost::Store* g_store = nullptr;

}  // namespace

void BindMakers(kiohost::Store* store) { g_store = store; }

namespace kio::differential {

void Store::Clear() { static_cast<void>(g_store->Replace({})); }

void Store::Set(std::string_view path, std::string_view text) { g_store->Set(path, text); }

std::optional<std::string> Store::Text(std::string_view path) { return g_store->Get(path); }

void Store::Delete(std::string_view path) { g_store->Delete(path); }

std::map<std::string, std::string> Store::Nodes() {
  std::map<std::string, std::string> nodes;
  for (const kiohost::Node& node : g_store->List()) {
    nodes[node.path] = node.text;
  }
  return nodes;
}

}  // namespace kio::differential
