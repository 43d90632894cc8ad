// The values of all variables in one answer.
#ifndef HOST_ALL_VALUES_H
#define HOST_ALL_VALUES_H

#include <functional>
#include <optional>
#include <string>

#include "json.h"
#include "store.h"
#include "value_history.h"
#include "variable_list.h"

namespace kiohost {

struct ValuesAsked {
  bool secrets = false;              // as they are, and not masked
  std::optional<std::string> since;  // settings (settings_tag.h): only what has changed since them
};

// Where the values come from.
struct ValuesSource {
  // The value of a variable; nothing when there is no such one.
  std::function<std::optional<std::string>(const std::string& name)> read;
  const VariableList* list;
  Store* store;
  std::string settings;  // the name of the settings that the store holds (settings_tag.h)
};

// The values as single requests read them.
Json AllValues(const ValuesSource& source, ValueHistory* history, const ValuesAsked& asked);

}  // namespace kiohost

#endif  // HOST_ALL_VALUES_H
