#include "control/fault_routes.h"

#include <charconv>
#include <cstdint>
#include <string>

#include "control/control_table.h"
#include "control/json_body.h"
#include "json_reply.h"

namespace kiohost {
namespace {

Reply Add(Faults* faults, const RequestView& request) {
  const Json body = Json::parse(request.body(), nullptr, false);
  if (!body.is_object()) {
    return BadRequestReply("the body is no JSON object");
  }
  std::string fault;
  const Json rule = faults->Add(body, &fault);
  return rule.is_null() ? BadRequestReply(fault) : JsonReply(rule);
}

// The number of a rule; 0, which no rule has, for what is none.
uint64_t IdOf(const RequestView& request) {
  const std::string& text = request.name();
  uint64_t id = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), id);
  return error == std::errc() && stop == text.data() + text.size() ? id : 0;
}

Reply About(const Json& rule, const RequestView& request) {
  return rule.is_null() ? ErrorReply(MHD_HTTP_NOT_FOUND, "there is no fault rule " + request.name())
                        : JsonReply(rule);
}

}  // namespace

// All of it is done in the thread of the sockets: a rule may be what keeps the library.
void AddFaultRoutes(Faults* faults, Router* router) {
  router->Add(
      {.description = control_routes::kFaults, .answer = [faults](const RequestView& /*request*/) {
         return JsonReply({{"faults", faults->List()}});
       }});
  router->Add({.description = control_routes::kAddFault,
               .answer = [faults](const RequestView& request) { return Add(faults, request); }});
  router->Add({.description = control_routes::kDeleteFaults,
               .answer = [faults](const RequestView& /*request*/) {
                 return JsonReply({{"deleted", faults->RemoveAll()}});
               }});
  router->Add({.description = control_routes::kFault, .answer = [faults](const auto& request) {
                 return About(faults->Find(IdOf(request)), request);
               }});
  router->Add(
      {.description = control_routes::kDeleteFault, .answer = [faults](const RequestView& request) {
         return About(faults->Remove(IdOf(request)), request);
       }});
}

}  // namespace kiohost
