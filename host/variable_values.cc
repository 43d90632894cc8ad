#include "variable_values.h"

namespace kiohost {
namespace {

constexpr size_t kIgnored = 4;

}  // namespace

void VariableValues::Add(const std::string& name, const std::string& document_path,
                         const Answers& answers) {
  const std::string plain = name.substr(kIgnored);
  names_by_path_[document_path] = plain;
  by_name_[plain] = answers;
}

std::optional<VariableAnswer> VariableValues::Find(const std::string& name, bool wants_path) const {
  std::string plain = name.size() < kIgnored ? "" : name.substr(kIgnored);
  if (name.starts_with('/')) {
    const auto by_path = names_by_path_.find(name);
    plain = by_path == names_by_path_.end() ? "" : by_path->second;
  }
  const auto found = by_name_.find(plain);
  if (found == by_name_.end()) {
    return std::nullopt;
  }
  return wants_path ? found->second.path : found->second.value;
}

std::vector<ListedVariable> ReadVariableNames(const Json& variables) {
  std::vector<ListedVariable> names;
  for (const Json& row : variables) {
    names.push_back({row.value("name", ""), row.value("documentPath", "")});
  }
  return names;
}

}  // namespace kiohost
