// The values of all variables in one answer.
#ifndef HOST_ALL_VALUES_H
#define HOST_ALL_VALUES_H

#include <optional>
#include <string>

#include "json.h"
#include "store.h"
#include "value_history.h"
#include "variable_list.h"
#include "variables.h"

namespace kiohost {

struct ValuesAsked {
  bool secrets = false;              // as they are, and not masked
  std::optional<std::string> since;  // settings (settings_tag.h): only what has changed since them
};

// The values as single requests read them. `tag` names the settings as they are now.
Json AllValues(Variables* variables, const VariableList& list, Store* store, ValueHistory* history,
               const std::string& tag, const ValuesAsked& asked);

}  // namespace kiohost

#endif  // HOST_ALL_VALUES_H
