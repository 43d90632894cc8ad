// Answers in the form of the HTTP server library.
#ifndef HOST_HTTP_RESPONSE_H
#define HOST_HTTP_RESPONSE_H

#include <microhttpd.h>

#include "client_timeout.h"
#include "connection.h"
#include "reply.h"

namespace kiohost {

// A response to the request of a connection; null when there is no memory. The stream of a reply
// becomes the connection's.
MHD_Response* MakeResponse(Connection* connection, const Reply& reply);

// Sends on what the stream of a connection has. Returns false when the connection is to be cut:
// because its client has gone, or reads too slowly.
bool ServeStream(Connection* connection, ClientTimeout::Clock::time_point now);

// Returns whether the connection was suspended.
bool ResumeIfSuspended(MHD_Connection* handle);

}  // namespace kiohost

#endif  // HOST_HTTP_RESPONSE_H
