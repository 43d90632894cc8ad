#include "router.h"

#include <kioapp/kioapp.h>

#include <cctype>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

#include "../../../testing/memory_store.h"
#include "../../../tools/differential/store.h"
#include "../../host/temp_dir.h"

namespace kio::properties {
namespace {

std::vector<Write> g_writes;

void Note(StoreFunction function, const char* path, const char* text) {
  if (function == kXsetStr || function == kXsetInt || function == kXdel) {
    std::string folded = path;
    for (char& c : folded) {
      c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    g_writes.push_back({folded, function == kXdel ? "" : text, function == kXdel});
  }
}

}  // namespace

void BeginAnew() {
  std::memset(&rssXmlData, 0, sizeof rssXmlData);
  g_store_behaviour = {};
  g_store_behaviour.watch = Note;
  g_store_behaviour.absent_result = -1;
  daemon_log_level = 0;
  g_writes.clear();
}

Nodes AllNodes() { return differential::Store::Nodes(); }

void SetAllNodes(const Nodes& nodes) {
  ClearStore();
  for (const auto& [path, text] : nodes) {
    SetNode(path.c_str(), text.c_str());
  }
}

std::vector<Write> TakeWrites() { return std::exchange(g_writes, {}); }

std::string Dump() {
  static const TempDir directory;
  static const std::string file = directory.File("p_log.txt");
  std::snprintf(daemon_log_path, sizeof daemon_log_path, "%s", directory.path().c_str());
  std::snprintf(daemon_log_header, sizeof daemon_log_header, "p");
  // A file that is there is not taken for one that is too long.
  std::ofstream(file, std::ios::trunc).flush();
  constexpr int kActions = 6;
  daemon_log_level = kActions;
  dump_RssXmlData();
  daemon_log_level = 0;
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string Variable(const std::string& name) { return getRssVar(name.c_str()); }

}  // namespace kio::properties

namespace kio::differential {

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

// No command of the library does anything here.
extern "C" int system(const char* /*command*/) { return 0; }
