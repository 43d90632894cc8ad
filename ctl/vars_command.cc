// The table of all variables.
#include <fnmatch.h>

#include "commands.h"

namespace kioctl {
namespace {

using nlohmann::json;

// A pattern such as *Wl2*; a word without * or ? is looked for anywhere.
bool Fits(const std::string& pattern, const std::string& text) {
  const bool is_word = pattern.find_first_of("*?[") == std::string::npos;
  const std::string whole = is_word ? "*" + pattern + "*" : pattern;
  return fnmatch(whole.c_str(), text.c_str(), FNM_CASEFOLD) == 0;
}

void RefuseNothing(const json& kept, const std::string& pattern) {
  if (kept.empty()) {
    throw Failure{ExitCode::kRefused, "no variable fits " + pattern,
                  "list all names: kioctl vars --catalogue"};
  }
}

json Filtered(const json& all, const std::string& pattern) {
  json kept = json::array();
  for (const json& variable : all.value("variables", json::array())) {
    if (Fits(pattern, variable.value("name", "")) ||
        Fits(pattern, variable.value("documentPath", ""))) {
      kept.push_back(variable);
    }
  }
  return kept;
}

std::string RuleOf(const json& variable) {
  std::string rule = variable.value("check", json()).is_string() ? variable["check"] : "";
  if (variable.contains("words")) {
    for (const json& word : variable["words"]) {
      rule += (rule.empty() ? "" : " ") + word.get<std::string>();
    }
  }
  if (variable.contains("range")) {
    rule += (rule.empty() ? "" : ", ") + variable["range"]["minimum"].dump() + " to " +
            variable["range"]["maximum"].dump();
  }
  return rule;
}

void ShowCatalogue(const Output& out, const json& variables) {
  std::vector<Row> rows;
  for (const json& variable : variables) {
    const json access = variable.value("access", json::object());
    const std::string change = !access.value("write", false)            ? "never"
                               : variable.value("changeableNow", false) ? "now"
                                                                        : "not now";
    rows.push_back({variable.value("name", ""), variable.value("documentPath", ""),
                    variable.value("kind", ""), change, RuleOf(variable)});
  }
  out.Table({"NAME", "ELEMENT", "KIND", "CHANGE", "RULE"}, rows);
}

}  // namespace

void RunVars(Context* context) {
  const Options& options = *context->options;
  const Output& out = *context->out;
  const std::string pattern = options.operand.empty() ? "*" : options.operand;
  if (options.catalogue) {
    const json all = ReadJson(context->router->Ask({.path = "/vars"}).body);
    const json kept = Filtered(all, pattern);
    RefuseNothing(kept, pattern);
    out.Json({{"variables", kept}});
    ShowCatalogue(out, kept);
    return;
  }
  std::string query = "?values=1";
  query += options.secrets ? "&secrets=1" : "";
  query += options.changed_since.empty() ? "" : "&changed-since=" + Escape(options.changed_since);
  json all = ReadJson(context->router->Ask({.path = "/vars" + query}).body);
  all["variables"] = Filtered(all, pattern);
  if (options.changed_since.empty()) {
    RefuseNothing(all["variables"], pattern);
  }
  out.Json(all);
  std::vector<Row> rows;
  for (const json& variable : all["variables"]) {
    rows.push_back({variable.value("name", ""), variable.value("value", "")});
  }
  out.Table({"NAME", "VALUE"}, rows);
}

}  // namespace kioctl
