// The store on the control port: /store.
#ifndef HOST_CONTROL_STORE_ROUTES_H
#define HOST_CONTROL_STORE_ROUTES_H

#include <functional>

#include "router.h"
#include "store.h"

namespace kiohost {

// `reader` is the store, for the thread of the control port. `changed` is called after each change.
void AddStoreRoutes(Store* store, Store* reader, const std::function<void()>& changed,
                    Router* router);

}  // namespace kiohost

#endif  // HOST_CONTROL_STORE_ROUTES_H
