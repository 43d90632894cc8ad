#include "compare.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <set>

#include "catalogue.h"

namespace kioctl {
namespace {

using Part = SettingDifference::Part;

constexpr char kNumberOfRule[] = "{n}";

bool IsSame(const Setting& setting, const std::optional<std::string>& one,
            const std::optional<std::string>& other) {
  // Most nodes that are not there count as empty.
  const std::string a = one.value_or("");
  const std::string b = other.value_or("");
  if (a == b) {
    return true;
  }
  constexpr int kDecimal = 10;
  switch (setting.kind) {
    case Setting::Kind::kNumber:
      return !a.empty() && !b.empty() &&
             std::strtol(a.c_str(), nullptr, kDecimal) == std::strtol(b.c_str(), nullptr, kDecimal);
    case Setting::Kind::kWord:
      return strcasecmp(a.c_str(), b.c_str()) == 0;
    case Setting::Kind::kText:
      break;
  }
  return false;
}

// Why a side cannot hold a setting.
std::string WhyNot(const Side& side, const Setting& setting) {
  if (!side.IsDocument()) {
    std::string why = WhyUnused(side, setting.name);
    if (!why.empty()) {
      return why;
    }
    return setting.key.starts_with('/') ? "not in a backup" : "no router stores it";
  }
  return "not in the document";
}

Part PartOf(const Held* held, const Side& side, const Setting& setting) {
  if (held == nullptr) {
    return {std::nullopt, WhyNot(side, setting)};
  }
  Part part{held->text};
  if (setting.is_secret) {
    // An absent one is no secret.
    part.note = held->is_hidden ? "not told" : held->text.value_or("").empty() ? "none" : "hidden";
    part.text.reset();
  } else if (!held->text) {
    part.note = "none";
  }
  if (!held->unused.empty()) {
    part.note = "not used: " + held->unused;
  }
  return part;
}

class Comparison {
 public:
  Comparison(const Side& a, const Side& b) : a_(a), b_(b) {}

  std::vector<SettingDifference> Run() {
    for (const Setting& setting : Catalogue()) {
      if (setting.key.find(kNumberOfRule) != std::string::npos) {
        AddRules(setting);
      } else {
        Add(setting, a_.Find(setting.key), b_.Find(setting.key));
      }
    }
    AddOtherNodes();
    return std::move(differences_);
  }

 private:
  void Add(const Setting& setting, const Held* a, const Held* b) {
    if (IsPassing(setting.key) || (a == nullptr && b == nullptr) ||
        (setting.is_for_show && a_.IsDocument() != b_.IsDocument())) {
      return;
    }
    if (const auto kind = KindOf(setting, a, b)) {
      differences_.push_back({.kind = *kind,
                              .name = setting.name,
                              .variable = setting.variable,
                              .node = setting.key.starts_with('/') ? setting.key : "",
                              .meaning = setting.meaning,
                              .a = PartOf(a, a_, setting),
                              .b = PartOf(b, b_, setting)});
    }
  }

  std::optional<SettingDifference::Kind> KindOf(const Setting& setting, const Held* a,
                                                const Held* b) const {
    if (a == nullptr || b == nullptr) {
      const Held& held = a == nullptr ? *b : *a;
      const bool says_something =
          held.unused.empty() && (held.is_hidden || !held.text.value_or("").empty());
      return setting.is_settable && says_something
                 ? std::optional(SettingDifference::Kind::kOneSide)
                 : std::nullopt;
    }
    const bool is_unused = !a->unused.empty() && !b->unused.empty();
    const bool is_of_one = a->unused.empty() != b->unused.empty();
    if (a->is_hidden || b->is_hidden) {
      return is_unused   ? std::nullopt
             : is_of_one ? std::optional(SettingDifference::Kind::kOneSide)
                         : std::optional(SettingDifference::Kind::kNotCompared);
    }
    // What a document holds and no device reads says nothing.
    if (IsSame(setting, a->text, b->text) || (is_unused && (a_.IsDocument() || b_.IsDocument()))) {
      return std::nullopt;
    }
    return is_of_one           ? SettingDifference::Kind::kOneSide
           : setting.is_secret ? SettingDifference::Kind::kSecret
                               : SettingDifference::Kind::kDiffers;
  }

  // The rules of a radio by their addresses; `setting` is that of their switches.
  void AddRules(const Setting& setting) {
    constexpr char kActive[] = "/active";
    if (!setting.key.ends_with(kActive)) {
      return;
    }
    std::set<std::string> keys;
    for (const Side* const side : {&a_, &b_}) {
      for (const auto& [key, held] : side->held) {
        const auto rule = ReadRuleKey(key);
        if (rule && setting.name.starts_with("Device/Wireless" + rule->band + "/")) {
          keys.insert(key);
        }
      }
    }
    for (const std::string& key : keys) {
      const RuleKey rule = *ReadRuleKey(key);
      Setting of_rule = setting;
      const std::string count = rule.count > 1 ? ", " + std::to_string(rule.count) : "";
      const size_t slash = of_rule.name.rfind('/');
      of_rule.name.insert(slash, "[" + rule.address + count + "]");
      Held none_a;
      Held none_b;
      Add(of_rule, RuleOf(a_, key, rule.band, &none_a), RuleOf(b_, key, rule.band, &none_b));
    }
  }

  // Null when the side holds no rules at all.
  static const Held* RuleOf(const Side& side, const std::string& key, const std::string& band,
                            Held* none) {
    const auto found = side.held.find(key);
    if (found != side.held.end()) {
      return &found->second;
    }
    if (!HoldsRules(side, band)) {
      return nullptr;
    }
    none->unused = WhyUnused(side, "Device/Wireless" + band + "/AccessControl/AcRule");
    return none;
  }

  // What two profiles say of nodes that no app sees.
  void AddOtherNodes() {
    if (a_.kind != Side::Kind::kProfile || b_.kind != Side::Kind::kProfile) {
      return;
    }
    std::set<std::string> keys;
    for (const Side* const side : {&a_, &b_}) {
      for (const auto& [key, held] : side->held) {
        if (FindSetting(key) == nullptr && !ReadRuleKey(key)) {
          keys.insert(key);
        }
      }
    }
    for (const std::string& key : keys) {
      Setting node;
      node.key = key;
      node.name = key;
      node.is_settable = false;
      Add(node, a_.Find(key), b_.Find(key));
    }
  }

  const Side& a_;
  const Side& b_;
  std::vector<SettingDifference> differences_;
};

}  // namespace

std::vector<SettingDifference> Compare(const Side& a, const Side& b) {
  return Comparison(a, b).Run();
}

const char* WordOf(SettingDifference::Kind kind) {
  switch (kind) {
    case SettingDifference::Kind::kDiffers:
      return "differs";
    case SettingDifference::Kind::kSecret:
      return "secret-differs";
    case SettingDifference::Kind::kOneSide:
      return "one-side";
    case SettingDifference::Kind::kNotCompared:
      break;
  }
  return "not-compared";
}

}  // namespace kioctl
