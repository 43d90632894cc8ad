// Logging in and out over HTTP: /login and /logout.
#ifndef HOST_LOGIN_ROUTES_H
#define HOST_LOGIN_ROUTES_H

#include "clients.h"
#include "router.h"

namespace kiohost {

// Refuses every request of a client that is not logged in, but for GET /device and POST /login. The
// filter knows no other routes, so a new one is guarded as well.
void AddLoginFilter(Clients* clients, Router* router);

// The clients must outlive the router, here and above.
void AddLoginRoutes(Clients* clients, Router* router);

}  // namespace kiohost

#endif  // HOST_LOGIN_ROUTES_H
