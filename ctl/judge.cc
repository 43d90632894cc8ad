#include "judge.h"

#define KIOAPP_NO_SHORT_NAMES
#include <kioapp/log.h>
#include <kioapp/record.h>
#include <kioapp/settings.h>

#include <vector>

#include "delivered.h"
#include "rule_text.h"

namespace kioctl {

using nlohmann::json;

std::string Judge::RuleOf(const Element& element) const {
  if (!element.words.empty()) {
    std::string words = "one of:";
    for (const std::string& word : element.words) {
      words += " " + (word.empty() ? "(nothing)" : word);
    }
    return words;
  }
  std::string rule = element.range;
  // A node that holds a rule or a list is replaced by what it holds.
  const size_t begin = rule.find('`');
  const size_t end = rule.find('`', begin + 1);
  if (end == std::string::npos) {
    return rule;
  }
  const std::string node = rule.substr(begin + 1, end - begin - 1);
  const std::string text = Node(node).value_or("");
  if (!node.ends_with("_validate")) {
    return rule.replace(begin, end + 1 - begin, "the device's list: " + text);
  }
  const kiohost::Json accepted = kiohost::AcceptedByRule(text);
  const std::string words = accepted.is_null() ? "any text" : kiohost::InWords(accepted);
  constexpr std::string_view kThe = "the rule in ";
  const size_t the = rule.rfind(kThe, begin);
  const size_t from = the == std::string::npos ? begin : the;
  return rule.replace(from, end + 1 - from, words);
}

LocalJudge::LocalJudge(const std::string& profile) : factory_(NodesOfProfile(profile)) {
  daemon_log_level = -1;
  daemon_log_file_size_k = 0;
}

Verdict LocalJudge::Try(const std::string& document) {
  // A refused document leaves values behind.
  ScratchStore() = factory_;
  std::vector<char> text(document.c_str(), document.c_str() + document.size() + 1);
  if (do_RssXml_Parser(text.data()) == 1) {
    return {};
  }
  return {rssXmlData.setResult, rssXmlData.setMsg};
}

std::optional<std::string> LocalJudge::Node(const std::string& path) const {
  const auto node = factory_.find(LowerCase(path));
  return node == factory_.end() ? std::nullopt : std::optional(node->second);
}

RouterJudge::RouterJudge(Router* router) : router_(router) {
  const json catalogue = ReadJson(router->Ask({.path = "/vars"}).body);
  const json values = ReadJson(router->Ask({.path = "/vars?values=1"}).body);
  std::map<std::string, std::string> nodes;
  for (const json& variable : catalogue.at("variables")) {
    if (variable.value("storeNode", json()).is_string()) {
      nodes[variable.at("name")] = variable["storeNode"];
    }
  }
  for (const json& variable : values.at("variables")) {
    const auto node = nodes.find(variable.at("name"));
    if (node != nodes.end() && !variable.value("secret", false)) {
      values_[LowerCase(node->second)] = variable.at("value");
    }
  }
}

Verdict RouterJudge::Try(const std::string& document) {
  const Reply reply = router_->Ask({.method = "POST",
                                    .path = "/settings?dry-run=1",
                                    .body = document,
                                    .headers = {"Accept: application/json"}});
  const json forecast = ReadJson(reply.body);
  return {forecast.at("result"), forecast.at("message")};
}

std::optional<std::string> RouterJudge::Node(const std::string& path) const {
  const auto node = values_.find(LowerCase(path));
  return node == values_.end() ? std::nullopt : std::optional(node->second);
}

}  // namespace kioctl
