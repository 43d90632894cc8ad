// The variables over HTTP: /vars and /actions.
#ifndef HOST_VARIABLE_ROUTES_H
#define HOST_VARIABLE_ROUTES_H

#include "apply_log.h"
#include "change_guard.h"
#include "published.h"
#include "router.h"
#include "store.h"
#include "value_history.h"
#include "variable_list.h"
#include "variables.h"

namespace kiohost {

// What reads are answered with in the thread of the sockets. All of it must outlive the router.
struct VariableReader {
  const VariableList* list;
  Store* store;
  ApplyLog* applies;
  const PublishedState* published;
};

// What requests for variables are answered with. All of it must outlive the router.
struct VariableRoom {
  Variables* variables;
  const VariableList* list;
  Store* store;
  ApplyLog* applies;
  ValueHistory* history;
  VariableReader reader;
};

void AddVariableRoutes(const VariableRoom& room, const ChangeGuard& guard, Router* router);

}  // namespace kiohost

#endif  // HOST_VARIABLE_ROUTES_H
