// Variables that are read from the store each time.
#ifndef KIO_VARIABLES_LIVE_VARIABLES_H
#define KIO_VARIABLES_LIVE_VARIABLES_H

#include "variables/request.h"

namespace kio::variables {

// Serves a variable that is read from the store.
unsigned int ServeLive(const Variable& variable, const SectionInstance& instance,
                       const Request& request);

}  // namespace kio::variables

#endif
