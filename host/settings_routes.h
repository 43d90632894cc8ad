// The settings exchange over HTTP: /settings and /result.
#ifndef HOST_SETTINGS_ROUTES_H
#define HOST_SETTINGS_ROUTES_H

#include "exchange.h"
#include "reply.h"
#include "request_view.h"
#include "router.h"

namespace kiohost {

class SettingsRoutes {
 public:
  explicit SettingsRoutes(Exchange* exchange) : exchange_(exchange) {}

  // The routes use this object for as long as they are.
  void AddTo(Router* router);

 private:
  Reply RunExchange(const RequestView& request);
  Reply LastResult();

  Exchange* exchange_;
};

}  // namespace kiohost

#endif  // HOST_SETTINGS_ROUTES_H
