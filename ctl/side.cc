#include "side.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

#include "catalogue.h"

namespace kioctl {
namespace {

using nlohmann::json;

constexpr std::array<const char*, 2> kBands = {"2.4", "5"};

std::string RadioNodes(const std::string& band) { return "/lan/wireless" + band + ":1/"; }

std::string RuleNodes(const std::string& band) { return RadioNodes(band) + "accesscontrol/acrule"; }

// The value of an archive at a path of documents; null when there is none.
const json* ValueAt(const json& settings, const std::string& path) {
  const json* value = &settings;
  for (size_t begin = 0; begin <= path.size();) {
    const size_t end = std::min(path.find('/', begin), path.size());
    const std::string name = path.substr(begin, end - begin);
    if (!value->is_object() || !value->contains(name)) {
      return nullptr;
    }
    value = &value->at(name);
    begin = end + 1;
  }
  return value;
}

std::string ParentOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, slash);
}

bool HasRadio(const Side& side, const std::string& band) {
  const std::string state = side.Text(RadioNodes(band) + "wlenbl");
  return state == "0" || state == "1" || state == "3";
}

// Why a device has no use for a setting, whatever the other settings are.
std::string WhyNotOfDevice(const Side& side, const std::string& path) {
  for (const char* const band : kBands) {
    if (path.starts_with(std::string("Device/Wireless") + band + "/") && !HasRadio(side, band)) {
      return "there is no such radio";
    }
  }
  // Only a profile tells these.
  for (const auto& [block, node] : {std::pair{"Device/SafetyVyr/", "/zentrolinks/safetyvyr"},
                                    std::pair{"Device/EasyRoaming", "/zentrolinks/easyroaming"}}) {
    if (path.starts_with(block) && side.kind == Side::Kind::kProfile && side.Text(node) != "1") {
      return "the device has no such feature";
    }
  }
  return {};
}

void AddRulesOfNodes(const Nodes& nodes, Side* side) {
  for (const char* const band : kBands) {
    const std::string begin = RuleNodes(band) + ":";
    // By their numbers, so that those with one address have the same order everywhere.
    std::map<int, std::pair<std::string, std::string>> rules;
    for (auto node = nodes.lower_bound(begin);
         node != nodes.end() && node->first.starts_with(begin); ++node) {
      const int number = NumberAt(node->first, begin.size());
      if (node->first.ends_with("/mac")) {
        rules[number].first = node->second;
      } else if (node->first.ends_with("/active")) {
        rules[number].second = node->second;
      }
    }
    for (const auto& [number, rule] : rules) {
      side->AddRule(band, rule.first, rule.second.empty() ? "0" : rule.second);
    }
  }
}

void AddRulesOfArchive(const json& settings, Side* side) {
  for (const char* const band : kBands) {
    const json* const rules =
        ValueAt(settings, std::string("Device/Wireless") + band + "/AccessControl/AcRule");
    if (rules == nullptr) {
      continue;
    }
    for (const json& rule : *rules) {
      side->AddRule(band, rule.value("MAC", ""), rule.value("Active", "0"));
    }
  }
}

}  // namespace

const Held* Side::Find(const std::string& key) const {
  static const Held absent;
  const auto found = held.find(key);
  if (found != held.end()) {
    return &found->second;
  }
  return kind == Kind::kProfile && key.starts_with('/') ? &absent : nullptr;
}

std::string Side::Text(const std::string& key) const {
  const auto found = held.find(key);
  return found == held.end() ? "" : found->second.text.value_or("");
}

void Side::AddRule(const std::string& band, const std::string& address, const std::string& active) {
  for (int count = 1;; ++count) {
    const std::string key = RuleNodes(band) + "|" + address + "|" + std::to_string(count);
    if (held.emplace(key, Held{.text = active}).second) {
      return;
    }
  }
}

std::optional<RuleKey> ReadRuleKey(const std::string& key) {
  for (const char* const band : kBands) {
    const std::string begin = RuleNodes(band) + "|";
    if (key.starts_with(begin)) {
      const size_t end = key.rfind('|');
      return RuleKey{band, key.substr(begin.size(), end - begin.size()), NumberAt(key, end + 1)};
    }
  }
  return std::nullopt;
}

bool HoldsRules(const Side& side, const std::string& band) {
  const std::string enabled = RadioNodes(band) + "accesscontrol/wlacenbl";
  return side.IsDocument() ? side.Text(enabled) == "1" : HasRadio(side, band);
}

namespace {

void ReplaceAll(const std::string& word, const std::string& by, std::string* text) {
  for (size_t at = text->find(word); at != std::string::npos; at = text->find(word, at)) {
    text->replace(at, word.size(), by);
    at += by.size();
  }
}

// A router tells the address of its firmware with its own address and port in it.
void FillAddress(Side* side) {
  const auto url = side->held.find("/fwupgradeinfo/fwupgradeurl");
  if (url != side->held.end() && url->second.text) {
    ReplaceAll("$lanip", side->Text("/runtime/zentrolinks/lanip"), &*url->second.text);
    ReplaceAll("$rssport", side->Text("/zentrolinks/rsshttpport"), &*url->second.text);
  }
}

}  // namespace

Side SideOfNodes(Side::Kind kind, const std::string& name, const Nodes& nodes) {
  Side side{.kind = kind, .name = name};
  for (const Setting& setting : Catalogue()) {
    if (setting.key.starts_with('/') && setting.key.find("{n}") == std::string::npos) {
      side.held[setting.key] = {};
    }
  }
  for (const auto& [path, text] : nodes) {
    if (path.find("/accesscontrol/acrule:") == std::string::npos) {
      side.held[path] = {.text = text};
    }
  }
  FillAddress(&side);
  AddRulesOfNodes(nodes, &side);
  MarkUnused(&side);
  return side;
}

Side SideOfArchive(Side::Kind kind, const std::string& name, const json& archive) {
  Side side{.kind = kind, .name = name};
  const json& settings = archive.at("settings");
  const bool has_secrets = archive.value("secrets", false);
  for (const Setting& setting : Catalogue()) {
    const json* const value = ValueAt(settings, setting.name);
    if (value != nullptr && value->is_string()) {
      side.held[setting.key] = {.text = value->get<std::string>()};
    } else if (setting.is_settable && !setting.variable.empty() &&
               ValueAt(settings, ParentOf(setting.name)) != nullptr) {
      side.held[setting.key] = {.text = {}, .is_hidden = setting.is_secret && !has_secrets};
    }
  }
  AddRulesOfArchive(settings, &side);
  const std::string documents = archive.value("documents", "");
  const size_t point = std::min(documents.find('.'), documents.size());
  for (const auto& [key, text] :
       {std::pair{"/sys/modelnumber", archive.value("model", "")},
        std::pair{"/fwupgradeinfo/currfwfilename", archive.value("firmware", "")},
        std::pair{"/zentrolinks/specversion/major", documents.substr(0, point)},
        std::pair{"/zentrolinks/specversion/minor",
                  documents.substr(std::min(point + 1, documents.size()))}}) {
    side.held[key] = {.text = text};
  }
  MarkUnused(&side);
  return side;
}

std::string WhyUnused(const Side& side, std::string path) {
  const std::vector<Element>& elements = AllKnownElements();
  std::string why = side.IsDocument() ? "" : WhyNotOfDevice(side, path);
  if (!why.empty()) {
    return why;
  }
  for (; !path.empty(); path = ParentOf(path)) {
    if (side.Text("element:" + path + "/Configurable") == "0") {
      return "Configurable is 0";
    }
    const Element* const element = FindElement(elements, path);
    const Element* const governor =
        element == nullptr ? nullptr : FindElement(elements, element->Governor());
    const Held* const held = governor == nullptr ? nullptr : side.Find(KeyOf(*governor));
    if (held == nullptr || !held->text) {
      continue;
    }
    const std::vector<std::string> wanted = element->GovernedBy();
    if (std::none_of(wanted.begin(), wanted.end(),
                     [held](const std::string& word) { return SameName(word, *held->text); })) {
      return governor->name + " is " + *held->text;
    }
  }
  return {};
}

void MarkUnused(Side* side) {
  for (auto& [key, held] : side->held) {
    if (const auto rule = ReadRuleKey(key)) {
      held.unused = WhyUnused(*side, "Device/Wireless" + rule->band + "/AccessControl/AcRule");
    } else if (const Setting* const setting = FindSetting(key)) {
      held.unused = WhyUnused(*side, setting->name);
    }
  }
}

const char* WordOf(Side::Kind kind) {
  switch (kind) {
    case Side::Kind::kRouter:
      return "router";
    case Side::Kind::kArchive:
      return "archive";
    case Side::Kind::kProfile:
      return "profile";
    case Side::Kind::kDocument:
      break;
  }
  return "document";
}

}  // namespace kioctl
