// One of the two that are compared: what a router, an archive, a profile or a document says of each
// setting.
#ifndef CTL_SIDE_H
#define CTL_SIDE_H

#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "scratch_store.h"

namespace kioctl {

// What a side says of a setting.
struct Held {
  std::optional<std::string> text;  // absent: it could be there, and is not
  bool is_hidden = false;           // a secret that is not told
  std::string unused = {};          // why nothing reads it: "ConnType is DHCP"
};

struct Side {
  enum class Kind { kRouter, kArchive, kProfile, kDocument };

  Kind kind = Kind::kRouter;
  std::string name;  // as it was named
  // By the keys of settings. Rules of the access control stand there by their address.
  std::map<std::string, Held> held = {};

  bool IsDocument() const { return kind == Kind::kDocument; }

  // What it says of a setting; null when it cannot hold it.
  const Held* Find(const std::string& key) const;
  // The text of a setting, empty without one.
  std::string Text(const std::string& key) const;

  // Adds a rule. The place of a rule among the others does not count.
  void AddRule(const std::string& band, const std::string& address, const std::string& active);
};

// A rule by the key that AddRule gives it.
struct RuleKey {
  std::string band;
  std::string address;
  int count = 1;  // of several with this address
};
std::optional<RuleKey> ReadRuleKey(const std::string& key);

// Whether a side holds the list of rules of a radio, so that a rule that is not there is none.
bool HoldsRules(const Side& side, const std::string& band);

Side SideOfNodes(Side::Kind kind, const std::string& name, const Nodes& nodes);
// An archive as GET /backup gives it.
Side SideOfArchive(Side::Kind kind, const std::string& name, const nlohmann::json& archive);
// A settings document. Throws a Failure when it is none.
Side SideOfDocument(const std::string& name, const std::string& document);

// Why nothing reads an element, as the other settings of the side are; empty when it is read.
std::string WhyUnused(const Side& side, std::string path);

// Tells that of all settings.
void MarkUnused(Side* side);

// The word for a kind.
const char* WordOf(Side::Kind kind);

}  // namespace kioctl

#endif  // CTL_SIDE_H
