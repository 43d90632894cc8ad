// The resource by which settings are confirmed or taken back.
#ifndef HOST_CONFIRM_ROUTES_H
#define HOST_CONFIRM_ROUTES_H

#include <optional>

#include "change_guard.h"
#include "confirmations.h"
#include "events.h"
#include "reply.h"
#include "router.h"

namespace kiohost {

// The seconds within which a request wants to confirm: 0 when it says nothing, nothing when they
// are not valid.
std::optional<int> ConfirmWithin(const RequestView& request);
Reply BadConfirmWithin();

// Takes the settings back that wait for their confirmation. The work that is left runs the actions.
Status GoBack(Exchange* exchange, Events* events, const char* why, AfterReply* work);

void AddConfirmRoutes(Confirmations* confirmations, Events* events, Router* router);

}  // namespace kiohost

#endif  // HOST_CONFIRM_ROUTES_H
