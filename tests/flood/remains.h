// What a host holds when nobody asks it for anything.
#ifndef TESTS_FLOOD_REMAINS_H
#define TESTS_FLOOD_REMAINS_H

#include <cstddef>

#include "host_process.h"

struct Remains {
  long memory_kib;
  size_t descriptors;
};

// What the host holds when all clients have gone.
Remains AtRest(const HostProcess& host);

// Has the hosts that are started from now on give back at once what is no longer used: what one
// then still holds is in use, and not kept for later.
void GiveBackAtOnce();

#endif  // TESTS_FLOOD_REMAINS_H
