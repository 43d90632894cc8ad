#include "login_routes.h"

#include <optional>
#include <string>

#include "route_table.h"

namespace kiohost {
namespace {

bool IsOpenToAll(const RequestView& request) {
  return (request.IsGet() && request.path() == "/device") ||
         (request.method() == MHD_HTTP_METHOD_POST && request.path() == "/login");
}

Reply Unauthorized(const char* reason) {
  Reply reply = ErrorReply(MHD_HTTP_UNAUTHORIZED, reason);
  reply.headers.emplace_back(MHD_HTTP_HEADER_WWW_AUTHENTICATE, "KioAppKey realm=\"router\"");
  return reply;
}

Reply Done(const char* what) {
  Reply reply;
  reply.body = std::string(what) + "\n";
  return reply;
}

Reply LogIn(Clients* clients, const RequestView& request) {
  long wait_seconds = 0;
  switch (clients->Login(request.peer_address(), request.body(), &wait_seconds)) {
    case Clients::Outcome::kLoggedIn:
      return Done("logged in");
    case Clients::Outcome::kWrongKey:
      return Unauthorized("not the key of this address now");
    case Clients::Outcome::kBlocked:
      return TryLater(MHD_HTTP_TOO_MANY_REQUESTS, "too many wrong keys: wait", wait_seconds);
    case Clients::Outcome::kFull:
      break;
  }
  return TryLater(MHD_HTTP_SERVICE_UNAVAILABLE, "too many clients are logged in", wait_seconds);
}

Reply LogOut(Clients* clients, const RequestView& request) {
  return Done(clients->Logout(request.peer_address()) ? "logged out" : "was not logged in");
}

}  // namespace

void AddLoginFilter(Clients* clients, Router* router) {
  router->AddFilter([clients](const RequestView& request) -> std::optional<Reply> {
    if (IsOpenToAll(request) || clients->Passes(request.peer_address())) {
      return std::nullopt;
    }
    return Unauthorized("log in first: POST /login");
  });
}

void AddLoginRoutes(Clients* clients, Router* router) {
  router->Add({.description = routes::kLogin, .answer = [clients](const RequestView& request) {
                 return LogIn(clients, request);
               }});
  router->Add({.description = routes::kLogout, .answer = [clients](const RequestView& request) {
                 return LogOut(clients, request);
               }});
}

}  // namespace kiohost
