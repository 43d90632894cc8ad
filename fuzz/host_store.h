// A store of the host in memory, with a few nodes of the sample device.
#ifndef KIO_FUZZ_HOST_STORE_H
#define KIO_FUZZ_HOST_STORE_H

#include "store.h"

namespace kio::fuzz {

// The store, which is one for the whole program. Its nodes are as at first again when `changed`.
kiohost::Store* HostStore(bool changed);

}  // namespace kio::fuzz

#endif
