// The values of all variables at one moment.
#ifndef HOST_VARIABLE_VALUES_H
#define HOST_VARIABLE_VALUES_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "json.h"

namespace kiohost {

// What the library answered to a read.
struct VariableAnswer {
  unsigned int code = 0;
  std::string text;
};

// By the name without its first four characters, which the library ignores, and by the document
// path.
class VariableValues {
 public:
  struct Answers {
    VariableAnswer value;
    VariableAnswer path;
  };

  void Add(const std::string& name, const std::string& document_path, const Answers& answers);

  // Nothing when the name is not among them. It may still be one that the library knows.
  std::optional<VariableAnswer> Find(const std::string& name, bool wants_path) const;

 private:
  std::map<std::string, Answers> by_name_;
  std::map<std::string, std::string> names_by_path_;
};

// The names of the variables in the list of all variables (variable_list.h), in its order. A name
// and its path may hold "??" for an index of two digits.
struct ListedVariable {
  std::string name;
  std::string document_path;
};
std::vector<ListedVariable> ReadVariableNames(const Json& variables);

}  // namespace kiohost

#endif  // HOST_VARIABLE_VALUES_H
