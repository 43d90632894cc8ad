// The resync actions that a commit runs.
#ifndef HOST_ACTIONS_H
#define HOST_ACTIONS_H

#include <vector>

#include "events.h"

namespace kiohost {

struct NamedAction {
  unsigned int bit;
  const char* name;
};

// The actions of a mask (kioapp/platform.h), in the order in which they run.
std::vector<NamedAction> ActionsOf(unsigned int mask);

// Prints that the actions of a mask ran, in the order in which they did. A
// script that failed is an event as well. Returns the mask of the actions whose scripts failed. To
// be called after the actions, before others run.
unsigned int ReportActions(unsigned int mask, Events* events);

}  // namespace kiohost

#endif  // HOST_ACTIONS_H
