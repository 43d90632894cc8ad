// The resources that tell about the interface: / and /openapi.json.
#ifndef HOST_INDEX_ROUTES_H
#define HOST_INDEX_ROUTES_H

#include <string>

#include "router.h"

namespace kiohost {

// `openapi` is the file with the description of the interface.
void AddIndexRoutes(const std::string& openapi, Router* router);

}  // namespace kiohost

#endif  // HOST_INDEX_ROUTES_H
