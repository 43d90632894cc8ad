#include "confirm_routes.h"

#include <kioapp/platform.h>

#include <charconv>
#include <string>
#include <string_view>

#include "actions.h"
#include "commit_report.h"
#include "route_table.h"

namespace kiohost {
namespace {

constexpr int kLeastSeconds = 5;
constexpr int kMostSeconds = 3600;

// What the app is told to wait for the actions of a mask; as the library does, without the saving.
int WaitSeconds(unsigned int mask) {
  int seconds = 0;
  for (const NamedAction& action : ActionsOf(mask & ~unsigned{KIOAPP_SYNC_SAVE_TO_FLASH})) {
    seconds += get_ExternalCall_UseSec(static_cast<int>(action.bit));
  }
  return seconds;
}

Json AboutApply(Exchange* exchange) {
  const std::optional<Apply> last = exchange->applies()->Last();
  return {{"apply", last ? Json(last->id) : Json(nullptr)}};
}

Reply NothingPending() {
  return ErrorReply(MHD_HTTP_NOT_FOUND, "no settings wait for their confirmation");
}

Reply Confirm(Confirmations* confirmations, Events* events, const RequestView& request) {
  Exchange* exchange = confirmations->exchange();
  if (!exchange->pending()) {
    return NothingPending();
  }
  if (std::optional<Reply> refusal = ChangeGuard(exchange).RefuseLook(request)) {
    return *refusal;
  }
  if (!confirmations->HasComeSince(request)) {
    return ErrorReply(MHD_HTTP_FORBIDDEN, confirmations->demand());
  }
  const Status status = exchange->Confirm();
  if (!status.ok()) {
    return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, status.reason());
  }
  events->Add({EventKind::kConfirmed, AboutApply(exchange), "the settings were confirmed"});
  Reply reply;
  reply.body = "confirmed\n";
  return reply;
}

Reply TakeBack(Exchange* exchange, Events* events) {
  if (!exchange->pending()) {
    return NothingPending();
  }
  Reply reply;
  const Status status = GoBack(exchange, events, "on request", &reply.after_reply);
  if (!status.ok()) {
    return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, status.reason());
  }
  reply.body = "going back; wait " + std::to_string(reply.after_reply.wait_seconds) + " s\n";
  return reply;
}

}  // namespace

std::optional<int> ConfirmWithin(const RequestView& request) {
  const std::optional<std::string_view> text = request.Argument("confirm-within");
  if (!text) {
    return 0;
  }
  int seconds = 0;
  const char* const end = text->data() + text->size();
  const auto [stop, error] = std::from_chars(text->data(), end, seconds);
  return error == std::errc() && stop == end && seconds >= kLeastSeconds && seconds <= kMostSeconds
             ? std::optional(seconds)
             : std::nullopt;
}

Reply BadConfirmWithin() {
  return ErrorReply(MHD_HTTP_BAD_REQUEST, "confirm-within takes " + std::to_string(kLeastSeconds) +
                                              " to " + std::to_string(kMostSeconds) + " seconds");
}

Status GoBack(Exchange* exchange, Events* events, const char* why, AfterReply* work) {
  const unsigned int actions = exchange->pending()->actions;
  Status status = exchange->GoBack();
  if (status.ok()) {
    events->Add({EventKind::kGoneBack, AboutApply(exchange),
                 std::string("the settings went back to those before, ") + why});
    work->wait_seconds = WaitSeconds(actions);
    work->run = [exchange, events, actions] {
      CommitReport report(exchange, events, actions);
      Exchange::RunActions(actions);
      report.Finish();
    };
  }
  return status;
}

void AddConfirmRoutes(Confirmations* confirmations, Events* events, Router* router) {
  // Both wait for the commit of the settings in question.
  router->Add({.description = routes::kConfirm,
               .takes_turn = true,
               .handle = [confirmations, events](const RequestView& request) {
                 return Confirm(confirmations, events, request);
               }});
  router->Add({.description = routes::kTakeBack,
               .takes_turn = true,
               .handle = [confirmations, events](const RequestView& /*request*/) {
                 return TakeBack(confirmations->exchange(), events);
               }});
}

}  // namespace kiohost
