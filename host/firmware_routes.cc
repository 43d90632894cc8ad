#include "firmware_routes.h"

#include <optional>
#include <string>
#include <utility>

#include "route_table.h"

namespace kiohost {
namespace {

Reply StatusDocument(std::string document) {
  Reply reply;
  reply.content_type = "application/xml";
  reply.body = std::move(document);
  return reply;
}

std::optional<Reply> CheckAction(const RequestView& request) {
  if (request.name().size() == 1) {
    return std::nullopt;
  }
  return ErrorReply(MHD_HTTP_BAD_REQUEST, "an action is one character");
}

Reply TakeStep(Firmware* firmware, const ChangeGuard& guard, const RequestView& request) {
  if (request.name()[0] == KIOAPP_FW_UPGRADE) {
    if (std::optional<Reply> refusal = guard.RefuseChange(request)) {
      return *refusal;
    }
  }
  Firmware::Outcome outcome = firmware->Act(static_cast<unsigned char>(request.name()[0]));
  if (!outcome.document) {
    return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR,
                      "the library could not write the status document");
  }
  Reply reply = StatusDocument(std::move(*outcome.document));
  if (outcome.announced) {
    reply.after_reply.wait_seconds = outcome.wait_seconds;
    reply.after_reply.run = [firmware] { firmware->WriteImage(); };
  }
  return reply;
}

Reply LastStatus(const PublishedState& published) {
  const std::optional<std::string> status = published.firmware.Get();
  return status ? StatusDocument(*status)
                : ErrorReply(MHD_HTTP_NOT_FOUND, "there is no status document");
}

}  // namespace

void AddFirmwareRoutes(Firmware* firmware, const ChangeGuard& guard,
                       const PublishedState* published, Router* router) {
  router->Add({.description = routes::kFirmwareStep,
               .takes_turn = true,
               .runs_commands = true,
               .check = CheckAction,
               .handle = [firmware, guard](const RequestView& request) {
                 return TakeStep(firmware, guard, request);
               }});
  router->Add(
      {.description = routes::kFirmware,
       .answer = [published](const RequestView& /*request*/) { return LastStatus(*published); }});
}

}  // namespace kiohost
