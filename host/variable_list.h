// The list of all variables, with what is known of each: what it takes, where it is stored, and
// whether it may be changed now.
#ifndef HOST_VARIABLE_LIST_H
#define HOST_VARIABLE_LIST_H

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "json.h"
#include "status.h"
#include "store.h"

namespace kiohost {

// The descriptions of all variables, an array that everything in the host shares. One of many has
// "??" in its name for the two digits of the index.
using Catalogue = std::shared_ptr<const Json>;

// Reads the file with the list as it is made from the library's tables.
Status ReadCatalogue(const std::string& file, Catalogue* catalogue);

class VariableList {
 public:
  VariableList(Store* store, Catalogue catalogue)
      : store_(store), variables_(std::move(catalogue)) {}

  const Json& variables() const { return *variables_; }

  // The list as clients get it: each variable that can be set tells whether it may be set now.
  Json AsJson() const;

  // What programs may know of a refusal with a code of the library. `name` is what the library
  // blames: a variable, or an element by its path; empty for nothing.
  Json Explain(unsigned int code, const std::string& name) const;

 private:
  const Json* Find(std::string_view name) const;
  const Json* FindByElement(const std::string& element) const;
  std::string TextOf(const Json& variable) const;
  bool MayBeChanged(const Json& variable) const;

  // What a variable takes; null for anything.
  Json Accepts(const Json& variable) const;
  std::string Rule(const Json& variable) const;

  Store* store_;
  Catalogue variables_;
};

}  // namespace kiohost

#endif  // HOST_VARIABLE_LIST_H
