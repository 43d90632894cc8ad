// The settings exchange over HTTP: /settings and /result.
#ifndef HOST_SETTINGS_ROUTES_H
#define HOST_SETTINGS_ROUTES_H

#include "confirmations.h"
#include "events.h"
#include "exchange.h"
#include "router.h"

namespace kiohost {

// The exchange and the events must outlive the router.
void AddSettingsRoutes(Exchange* exchange, Events* events, Confirmations* confirmations,
                       Router* router);

}  // namespace kiohost

#endif  // HOST_SETTINGS_ROUTES_H
