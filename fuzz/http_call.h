// Requests as they come from a connection, without one: they are taken apart in the way of the HTTP
// server, and go through the host's own judgement, filters and routes.
#ifndef KIO_FUZZ_HTTP_CALL_H
#define KIO_FUZZ_HTTP_CALL_H

#include <string_view>

#include "router.h"

namespace kio::fuzz {

// Has a router answer the bytes of a request: a line with method, target and version, header lines,
// an empty line, and the body. Ends the program when the answer is not well-formed.
void CallRouter(const kiohost::Router& router, std::string_view bytes);

}  // namespace kio::fuzz

#endif
