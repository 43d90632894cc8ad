// The settings exchange over HTTP: /settings and /result.
#ifndef HOST_SETTINGS_ROUTES_H
#define HOST_SETTINGS_ROUTES_H

#include <string>

#include "confirmations.h"
#include "events.h"
#include "exchange.h"
#include "published.h"
#include "reply.h"
#include "request_view.h"
#include "router.h"
#include "store.h"
#include "value_history.h"
#include "variable_list.h"

namespace kiohost {

// What settings documents are run with. All of it must outlive the router.
struct SettingsRoom {
  Exchange* exchange;
  Events* events;
  Confirmations* confirmations;
  const VariableList* variables;
  ValueHistory* history;
  Store* store;
};

// Runs a settings document, or tells what it would do, as the parameters of the request say.
Reply RunDocument(const SettingsRoom& room, std::string document, CommitKind kind,
                  const RequestView& request);

void AddSettingsRoutes(const SettingsRoom& room, const PublishedState* published, Router* router);

}  // namespace kiohost

#endif  // HOST_SETTINGS_ROUTES_H
