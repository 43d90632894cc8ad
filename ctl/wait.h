// Waiting for a router that was sent something, as an app does.
#ifndef CTL_WAIT_H
#define CTL_WAIT_H

#include <chrono>
#include <string>

#include "commands.h"

namespace kioctl {

// What was sent, and what the router promised.
struct Sent {
  std::string apply_id = {};  // empty: that which the router names first
  std::string boot_id = {};   // before it; empty when that is not known
  std::chrono::seconds promised{0};
  bool only_back = false;  // whatever was changed: the router only has to be here again
};

// Waits for the promised time, watches the router go and come back, and prints what became of it.
// Throws a Failure unless that which was sent is in force.
void WaitFor(Context* context, const Sent& sent);

// The same for a router that only has to come back; gives what it says of itself then.
nlohmann::json WaitUntilBack(Context* context, std::chrono::seconds promised);

}  // namespace kioctl

#endif  // CTL_WAIT_H
