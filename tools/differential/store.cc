#include "store.h"

#include "testing/memory_store.h"
#include "transcript.h"

namespace kio::differential {
namespace {

void Watch(StoreFunction function, const char* path, const char* text) {
  switch (function) {
    case kXgetStr:
      // The library must give an empty buffer.
      Event("xget_str", {path, text[0] == '\0' ? "" : "into a text"});
      break;
    case kXsetStr:
      Event("xset_str", {path, text});
      break;
    case kXgetInt:
      Event("xget_int", {path});
      break;
    case kXsetInt:
      Event("xset_int", {path, text});
      break;
    case kXdel:
      Event("xdel", {path});
      break;
  }
}

}  // namespace

void Store::Begin(bool absent_leaves_buffer, int result) {
  g_store_behaviour.watch = Watch;
  g_store_behaviour.absent_leaves_buffer = absent_leaves_buffer ? 1 : 0;
  g_store_behaviour.result = result;
  g_store_behaviour.absent_result = result;
}

void Store::Clear() { ClearStore(); }

void Store::Set(std::string_view path, std::string_view text) {
  SetNode(std::string(path).c_str(), std::string(text).c_str());
}

std::optional<std::string> Store::Text(std::string_view path) {
  const char* const text = NodeText(std::string(path).c_str());
  return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

void Store::Delete(std::string_view path) { DeleteNode(std::string(path).c_str()); }

std::map<std::string, std::string> Store::Nodes() {
  std::map<std::string, std::string> nodes;
  VisitNodes(
      [](void* context, const char* path, const char* text) {
        (*static_cast<std::map<std::string, std::string>*>(context))[path] = text;
      },
      &nodes);
  return nodes;
}

}  // namespace kio::differential
