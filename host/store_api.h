// Joins the five store functions that the library calls (kioapp/store.h) to a store.
#ifndef HOST_STORE_API_H
#define HOST_STORE_API_H

#include "store.h"

namespace kiohost {

// Makes `store` the one that the library reads and writes. It must stay alive until another is
// bound; without one (null) every node is absent and every write is lost.
void BindStore(Store* store);

}  // namespace kiohost

#endif  // HOST_STORE_API_H
