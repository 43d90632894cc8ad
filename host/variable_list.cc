#include "variable_list.h"

#include <kioapp/kioapp.h>

#include <algorithm>
#include <fstream>
#include <optional>
#include <vector>

#include "rule_text.h"

namespace kiohost {
namespace {

// The library does not look at the first characters of a name.
constexpr size_t kPrefix = 4;

const std::string& Text(const Json& variable, const char* member) {
  static const std::string empty;
  const Json& text = variable[member];
  return text.is_string() ? text.get_ref<const std::string&>() : empty;
}

// Whether a text is of a pattern, in which each '?' stands for a digit.
bool Fits(std::string_view text, std::string_view pattern) {
  return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                    [](char c, char p) { return c == p || (p == '?' && c >= '0' && c <= '9'); });
}

std::string WithoutSlash(const std::string& path) {
  return path.starts_with('/') ? path.substr(1) : path;
}

// The pattern with the digits of `text`, which is of the pattern `model`.
std::string Filled(std::string pattern, std::string_view text, std::string_view model) {
  const size_t from = model.find("??");
  const size_t to = pattern.find("??");
  return from == std::string_view::npos || to == std::string::npos || from + 2 > text.size()
             ? pattern
             : pattern.replace(to, 2, text.substr(from, 2));
}

bool Holds(const Json& condition, Store* store) {
  const bool is = condition.contains("is");
  const Json& texts = condition[is ? "is" : "not"];
  const std::optional<std::string> text =
      store->Get(condition["node"].get_ref<const std::string&>());
  return (text && std::find(texts.begin(), texts.end(), *text) != texts.end()) == is;
}

// "1, 2 and 3" as a list.
Json ItemsOf(std::string_view list) {
  Json items = Json::array();
  while (!list.empty()) {
    const std::string_view item = list.substr(0, list.find(','));
    list.remove_prefix(std::min(item.size() + 1, list.size()));
    items.push_back(item);
  }
  return items;
}

}  // namespace

Status ReadCatalogue(const std::string& file, Catalogue* catalogue) {
  std::ifstream stream(file, std::ios::binary);
  Json list = Json::parse(stream, nullptr, false);
  if (!list.is_object() || !list.contains("variables") || !list["variables"].is_array()) {
    return {ExitCode::kDirectory, "cannot read " + file};
  }
  *catalogue = std::make_shared<const Json>(std::move(list["variables"]));
  return {};
}

Json VariableList::AsJson() const {
  // All of it as of one moment.
  const StoreView view(store_);
  Json list = *variables_;
  for (Json& variable : list) {
    variable["changeableNow"] = MayBeChanged(variable);
  }
  return {{"variables", std::move(list)}};
}

Json VariableList::Explain(unsigned int code, const std::string& name) const {
  Json members = {{"code", code}};
  if (name.empty()) {
    return members;
  }
  const bool is_element = name.find('/') != std::string::npos;
  const Json* variable = is_element ? FindByElement(WithoutSlash(name)) : Find(name);
  if (is_element) {
    members["element"] = WithoutSlash(name);
  } else {
    members["variable"] = name;
  }
  if (variable == nullptr) {
    return members;
  }
  const std::string& own = Text(*variable, "name");
  if (is_element) {
    members["variable"] = own;
  } else {
    members["element"] = WithoutSlash(Filled(Text(*variable, "documentPath"), name, own));
  }
  members["rule"] = Rule(*variable);
  const bool may_be_changed = MayBeChanged(*variable);
  members["changeableNow"] = may_be_changed;
  if (Json accepts = Accepts(*variable); may_be_changed && !accepts.is_null()) {
    members["accepts"] = std::move(accepts);
  }
  return members;
}

const Json* VariableList::Find(std::string_view name) const {
  for (const Json& variable : *variables_) {
    const std::string_view own = Text(variable, "name");
    if (name.size() > kPrefix && Fits(name.substr(kPrefix), own.substr(kPrefix))) {
      return &variable;
    }
  }
  return nullptr;
}

// By its path in documents, or by the one under which it is reported, which several may share: then
// nobody knows which one is meant.
const Json* VariableList::FindByElement(const std::string& element) const {
  const Json* found = nullptr;
  int reported = 0;
  for (const Json& variable : *variables_) {
    if (Fits("/" + element, Text(variable, "documentPath"))) {
      return &variable;
    }
    if (Text(variable, "faultPath") == element) {
      found = &variable;
      ++reported;
    }
  }
  return reported == 1 ? found : nullptr;
}

std::string VariableList::TextOf(const Json& variable) const {
  return store_->Get(Text(variable, "storeNode")).value_or("");
}

bool VariableList::MayBeChanged(const Json& variable) const {
  const Json& conditions = variable["configurableWhen"];
  return variable["access"]["write"].get<bool>() &&
         std::all_of(conditions.begin(), conditions.end(),
                     [this](const Json& condition) { return Holds(condition, store_); });
}

Json VariableList::Accepts(const Json& variable) const {
  const std::string& kind = Text(variable, "kind");
  if (!variable["access"]["write"].get<bool>()) {
    return nullptr;
  }
  if (kind == "keyword") {
    return {{"words", variable["words"]}};
  }
  if (const Json* rule = Find(Text(variable, "ruleIn"))) {
    // A list of values is no rule.
    return Text(*rule, "name").ends_with("_Validate") ? AcceptedByRule(TextOf(*rule))
                                                      : Json({{"words", ItemsOf(TextOf(*rule))}});
  }
  if (variable.contains("range")) {
    return variable["range"];
  }
  return kind == "text" ? Json({{"maxLength", variable["capacity"]}}) : Json(nullptr);
}

std::string VariableList::Rule(const Json& variable) const {
  if (!variable["access"]["write"].get<bool>()) {
    return "read only";
  }
  const std::string& check = Text(variable, "check");
  const Json accepts = Accepts(variable);
  if (Text(variable, "ruleIn").empty() || accepts.is_null()) {
    return check;
  }
  if (!accepts.contains("words")) {
    return check + ": " + InWords(accepts);
  }
  return check + ": " + TextOf(*Find(Text(variable, "ruleIn")));
}

}  // namespace kiohost
