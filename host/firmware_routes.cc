#include "firmware_routes.h"

#include <optional>
#include <string>
#include <utility>

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

}  // namespace

void FirmwareRoutes::AddTo(Router* router) {
  Route action;
  action.pattern = "/firmware/*";
  action.method = MHD_HTTP_METHOD_POST;
  action.takes_turn = true;
  action.check = CheckAction;
  action.handle = [this](const RequestView& request) { return Act(request); };
  router->Add(std::move(action));

  Route status;
  status.pattern = "/firmware";
  status.method = MHD_HTTP_METHOD_GET;
  status.handle = [this](const RequestView& /*request*/) { return LastStatus(); };
  router->Add(std::move(status));
}

Reply FirmwareRoutes::Act(const RequestView& request) {
  Firmware::Outcome outcome = firmware_->Act(static_cast<unsigned char>(request.name()[0]));
  if (!outcome.document) {
    return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR,
                      "the library could not write the status document");
  }
  Reply reply = StatusDocument(std::move(*outcome.document));
  if (outcome.announced) {
    reply.follow_up.wait_seconds = outcome.wait_seconds;
    reply.follow_up.run = [this] { firmware_->WriteImage(); };
  }
  return reply;
}

Reply FirmwareRoutes::LastStatus() {
  const std::optional<std::string>& status = firmware_->last_status();
  return status ? StatusDocument(*status)
                : ErrorReply(MHD_HTTP_NOT_FOUND, "there is no status document");
}

}  // namespace kiohost
