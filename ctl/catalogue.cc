#include "catalogue.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <string_view>

#include "embedded.h"
#include "scratch_store.h"
#include "secrets.h"

namespace kioctl {
namespace {

using nlohmann::json;

constexpr std::string_view kNumber = "{n}";

Setting::Kind KindOfType(const std::string& type, bool has_words) {
  return has_words           ? Setting::Kind::kWord
         : type == "integer" ? Setting::Kind::kNumber
                             : Setting::Kind::kText;
}

Setting SettingOf(const Element& element) {
  Setting setting;
  setting.key = KeyOf(element);
  setting.name = element.path;
  setting.variable = element.variable;
  setting.meaning = element.meaning;
  setting.kind = KindOfType(element.type, !element.words.empty());
  setting.is_secret = element.IsSecret();
  setting.is_for_show = element.name == "WirelessBSSID";
  // A survey is asked for, and Configurable tells whether the rest is read.
  setting.is_settable = !setting.is_for_show && element.name != "Survey" &&
                        element.name != "Configurable" && element.parent != "specVersion";
  return setting;
}

// A variable that no document has.
Setting PropertyOf(const json& variable) {
  Setting setting;
  setting.key = LowerCase(variable.at("storeNode"));
  setting.name = variable.at("documentPath").get<std::string>().substr(1);
  setting.variable = variable.at("name");
  setting.kind = KindOfType(variable.at("kind"), false);
  setting.is_secret = kiohost::IsSecret(setting.key) || setting.key.ends_with("/accesskey");
  setting.is_settable = false;
  return setting;
}

std::vector<Setting> MakeCatalogue() {
  std::vector<Setting> settings;
  std::map<std::string, size_t> known;
  const auto add = [&](Setting setting) {
    if (known.emplace(setting.key, settings.size()).second) {
      settings.push_back(std::move(setting));
    }
  };
  for (const Element& element : AllKnownElements()) {
    if (!element.is_block) {
      add(SettingOf(element));
    }
  }
  const json variables = json::parse(kVariablesJson).at("variables");
  for (const json& variable : variables) {
    if (variable.at("storeNode").is_string() && !variable.contains("index")) {
      add(PropertyOf(variable));
    }
  }
  return settings;
}

// A node of a rule with "{n}" in the place of its number, which is given.
std::string WithoutNumber(std::string node, std::string* number) {
  constexpr std::string_view kRule = "/acrule:";
  const size_t begin = node.find(kRule);
  if (begin != std::string::npos) {
    const size_t digits = begin + kRule.size();
    const size_t end = std::min(node.find('/', digits), node.size());
    *number = node.substr(digits, end - digits);
    node.replace(digits, end - digits, kNumber);
  }
  return node;
}

}  // namespace

const std::vector<Element>& AllKnownElements() {
  static const std::vector<Element> elements = [] {
    std::vector<Element> all = ElementsOf("settings 1.1");
    for (const Element& element : ElementsOf("settings 1.0")) {
      if (FindElement(all, element.path) == nullptr) {
        all.push_back(element);
      }
    }
    return all;
  }();
  return elements;
}

std::string KeyOf(const Element& element) {
  return element.node.empty() ? "element:" + element.path : LowerCase(element.node);
}

const std::vector<Setting>& Catalogue() {
  static const std::vector<Setting> settings = MakeCatalogue();
  return settings;
}

const Setting* FindSetting(const std::string& key) {
  static const std::map<std::string, const Setting*> by_key = [] {
    std::map<std::string, const Setting*> map;
    for (const Setting& setting : Catalogue()) {
      map[LowerCase(setting.key)] = &setting;
    }
    return map;
  }();
  const auto found = by_key.find(LowerCase(key));
  return found == by_key.end() ? nullptr : found->second;
}

std::string NameOfNode(const std::string& node) {
  std::string number;
  const Setting* const setting = FindSetting(WithoutNumber(LowerCase(node), &number));
  if (setting == nullptr) {
    return node;
  }
  std::string name = setting->name;
  constexpr std::string_view kRule = "/AcRule";
  const size_t rule = number.empty() ? std::string::npos : name.find(kRule);
  return rule == std::string::npos ? name : name.insert(rule + kRule.size(), ":" + number);
}

bool IsPassing(const std::string& node) {
  const std::string lower = LowerCase(node);
  return lower.ends_with("/channelusing") || lower.ends_with("/connstatus") ||
         lower == "/sys/factorydefault" || lower.starts_with("/wirelesssitesurvey/") ||
         lower.starts_with("/runtime/") || lower.starts_with("/fwupgradeinfo/newfw");
}

}  // namespace kioctl
