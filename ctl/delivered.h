// The delivered profiles of the virtual router, which stand in the program, and those of files.
#ifndef CTL_DELIVERED_H
#define CTL_DELIVERED_H

#include <string>

#include "scratch_store.h"

namespace kioctl {

// Whether a delivered profile has this name.
bool IsDelivered(const std::string& name);

// The nodes of a profile by the name of a delivered one, or else by its file; those of the default
// one for an empty name. Throws a Failure that names the broken line.
Nodes NodesOfProfile(const std::string& name);

// The same of a text that was read from a file, whose includes stand beside it.
Nodes NodesOfProfileText(const std::string& file, const std::string& text);

}  // namespace kioctl

#endif  // CTL_DELIVERED_H
