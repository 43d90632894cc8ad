// Names of variables, each with values that it may have.
#ifndef KIO_DIFFERENTIAL_VARIABLE_NAMES_H
#define KIO_DIFFERENTIAL_VARIABLE_NAMES_H

#include <string>

#include "random.h"
#include "texts.h"

namespace kio::differential {

struct Named {
  std::string name;
  Maker make;  // null for an action that takes a batch
};

// Any variable or action.
Named PickVariable(Random& random);

// A variable that a batch may set.
Named PickSettable(Random& random);

// A name as it should not be.
std::string OddName(Random& random, const std::string& name);

}  // namespace kio::differential

#endif
