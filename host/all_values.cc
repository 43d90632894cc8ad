#include "all_values.h"

#include <strings.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "node_changes.h"
#include "secrets.h"

namespace kiohost {
namespace {

constexpr std::string_view kDigitsOfIndex = "??";

std::string TextOf(const Json& variable, const char* member) {
  const Json& text = variable[member];
  return text.is_string() ? text.get<std::string>() : std::string();
}

std::string NameOf(const Json& variable, int index) {
  std::string name = TextOf(variable, "name");
  if (const size_t at = name.find(kDigitsOfIndex); at != std::string::npos) {
    name.replace(at, kDigitsOfIndex.size(),
                 {static_cast<char>('0' + index / 10), static_cast<char>('0' + index % 10)});
  }
  return name;
}

// The node of a variable. "??" in it stands for the index, "(??+1)" for that and one.
std::string NodeOf(const Json& variable, int index) {
  std::string node = TextOf(variable, "storeNode");
  const size_t at = node.find(kDigitsOfIndex);
  if (at == std::string::npos) {
    return node;
  }
  const bool adds = at > 0 && node[at - 1] == '(';
  const size_t begin = adds ? at - 1 : at;
  const size_t end = adds ? node.find(')', at) + 1 : at + kDigitsOfIndex.size();
  const int more = adds ? std::stoi(node.substr(at + kDigitsOfIndex.size() + 1)) : 0;
  return node.replace(begin, end - begin, std::to_string(index + more));
}

class Changes {
 public:
  Changes(const std::vector<Node>& before, const std::vector<Node>& now)
      : changes_(ChangesOf(before, now)) {}

  // Whether a node has changed; of a path that counts nodes ("rule#"), whether any of these has.
  bool Has(const std::string& path) const {
    const bool counts = path.ends_with('#');
    const std::string wanted = counts ? path.substr(0, path.size() - 1) + ":" : path;
    return std::any_of(changes_.begin(), changes_.end(), [&](const NodeChange& change) {
      return (counts || change.path.size() == wanted.size()) &&
             strncasecmp(change.path.c_str(), wanted.c_str(), wanted.size()) == 0;
    });
  }

 private:
  std::vector<NodeChange> changes_;
};

Json ValueOf(const std::string& name, const std::string& value, bool secret, bool tells_secrets) {
  Json json = {{"name", name}, {"value", secret && !tells_secrets ? kMasked : value}};
  if (secret) {
    json["secret"] = true;
  }
  return json;
}

}  // namespace

Json AllValues(const ValuesSource& source, ValueHistory* history, const ValuesAsked& asked) {
  std::optional<Changes> changes;
  if (asked.since) {
    if (const ValueHistory::State before = history->Find(*asked.since)) {
      changes.emplace(*before, source.store->List());
    }
  }
  history->Note(source.settings, source.store);
  Json values = Json::array();
  for (const Json& variable : source.list->variables()) {
    const int last = variable.contains("index") ? variable["index"]["last"].get<int>() : 0;
    for (int index = 0; index <= last; ++index) {
      const std::string name = NameOf(variable, index);
      const std::string node = NodeOf(variable, index);
      const std::optional<std::string> value = source.read(name);
      if (!value) {
        break;  // there are no more of them
      }
      if (!changes || changes->Has(node.empty() ? TextOf(variable, "pathAnswer") : node)) {
        values.push_back(ValueOf(name, *value, IsSecret(node), asked.secrets));
      }
    }
  }
  return {{"settings", source.settings}, {"complete", !changes}, {"variables", std::move(values)}};
}

}  // namespace kiohost
