// Filters against requests that a web page makes a browser of the LAN send. They know no routes, so
// a new one is guarded as well.
#ifndef HOST_WEB_FILTERS_H
#define HOST_WEB_FILTERS_H

#include <string>
#include <string_view>
#include <vector>

#include "router.h"
#include "store.h"

namespace kiohost {

// Whether the value of a Host header, or of an origin behind its "http://", names the router: by an
// address of `addresses` or a name of `names`, whatever the port.
bool NamesRouter(std::string_view host, const std::vector<std::string>& addresses,
                 const std::vector<std::string>& names);

// Whether bodies of that Content-Type are accepted.
bool IsContentTypeTaken(std::string_view content_type);

// Refuses requests for another name than the router's, requests from pages of others that change
// something, and types of content that no route takes. `names` are the router's, beside its
// addresses and "localhost".
void AddWebFilters(Store* store, std::vector<std::string> names, Router* router);

}  // namespace kiohost

#endif  // HOST_WEB_FILTERS_H
