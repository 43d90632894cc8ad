// Names of variables, each with a maker of values for it.
#ifndef KIO_DIFFERENTIAL_VARIABLE_NAMES_H
#define KIO_DIFFERENTIAL_VARIABLE_NAMES_H

#include <string>

#include "random.h"
#include "texts.h"

namespace kio::differential {

struct NamedMaker {
  std::string name;
  Maker make;  // null for an action that takes a batch
};

// Any variable or action.
NamedMaker PickVariable(Random& random);

// A variable that a batch may set.
NamedMaker PickSettable(Random& random);

// The name, changed or replaced by an odd text.
std::string OddName(Random& random, const std::string& name);

}  // namespace kio::differential

#endif
