// The settings exchange over HTTP: /settings and /result.
#ifndef HOST_SETTINGS_ROUTES_H
#define HOST_SETTINGS_ROUTES_H

#include "events.h"
#include "exchange.h"
#include "reply.h"
#include "request_view.h"
#include "router.h"

namespace kiohost {

class SettingsRoutes {
 public:
  SettingsRoutes(Exchange* exchange, Events* events) : exchange_(exchange), events_(events) {}

  // The routes use this object for as long as they are.
  void AddTo(Router* router);

 private:
  Reply RunExchange(const RequestView& request);
  Reply LastResult();

  Exchange* exchange_;
  Events* events_;
};

}  // namespace kiohost

#endif  // HOST_SETTINGS_ROUTES_H
