// Actions: variables that do something with the record.
#ifndef KIO_VARIABLES_ACTIONS_H
#define KIO_VARIABLES_ACTIONS_H

#include "variables/request.h"

namespace kio::variables {

// Runs an action; KIOAPP_VAR_REFUSED when there is none of that name.
unsigned int RunAction(TextView name, const Request& request);

}  // namespace kio::variables

#endif
