// The resync actions that a commit runs.
#ifndef HOST_ACTIONS_H
#define HOST_ACTIONS_H

#include "events.h"

namespace kiohost {

// Prints that the actions of a mask (kioapp/platform.h) ran, in the order in which they did. A
// script that failed is an event as well. Returns the mask of the actions whose scripts failed. To
// be called after the actions, before others run.
unsigned int ReportActions(unsigned int mask, Events* events);

}  // namespace kiohost

#endif  // HOST_ACTIONS_H
