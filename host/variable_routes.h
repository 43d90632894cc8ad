// The variables over HTTP: /vars and /actions.
#ifndef HOST_VARIABLE_ROUTES_H
#define HOST_VARIABLE_ROUTES_H

#include <string>

#include "change_guard.h"
#include "router.h"
#include "variables.h"

namespace kiohost {

// `catalogue` is the file with the list of all variables. The variables must outlive the router.
void AddVariableRoutes(Variables* variables, const std::string& catalogue, const ChangeGuard& guard,
                       Router* router);

}  // namespace kiohost

#endif  // HOST_VARIABLE_ROUTES_H
