// Logging in and out over HTTP: /login and /logout.
#ifndef HOST_LOGIN_ROUTES_H
#define HOST_LOGIN_ROUTES_H

#include "clients.h"
#include "router.h"

namespace kiohost {

// Lets nobody pass who is not logged in, but for GET /device and POST /login. The gate knows no
// other routes: one that is added later is guarded like the others.
void AddLoginGate(Clients* clients, Router* router);

// The gate and the routes use the clients for as long as they are.
void AddLoginRoutes(Clients* clients, Router* router);

}  // namespace kiohost

#endif  // HOST_LOGIN_ROUTES_H
