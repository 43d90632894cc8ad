#include "settings_routes.h"

#include <cstdio>
#include <optional>
#include <string>
#include <utility>

#include "actions.h"

namespace kiohost {
namespace {

// The mode that a request asks for, or nothing and why it cannot be had.
std::optional<CommitKind> ReadMode(const RequestView& request, std::string* reason) {
  const std::optional<bool> cloning = FlagArgument(request, "cloning");
  const std::optional<bool> full = FlagArgument(request, "full");
  if (!cloning || !full) {
    *reason = "cloning and full take 0 or 1";
    return std::nullopt;
  }
  if (*full && !*cloning) {
    *reason = "full=1 goes with cloning=1 only";
    return std::nullopt;
  }
  if (!*cloning) {
    return CommitKind::kSettings;
  }
  return *full ? CommitKind::kFullCloning : CommitKind::kCloning;
}

std::optional<Reply> CheckMode(const RequestView& request) {
  std::string reason;
  if (ReadMode(request, &reason)) {
    return std::nullopt;
  }
  return ErrorReply(MHD_HTTP_BAD_REQUEST, reason);
}

Reply ResultDocument(std::string document) {
  Reply reply;
  reply.content_type = "application/xml";
  reply.body = std::move(document);
  return reply;
}

}  // namespace

void SettingsRoutes::AddTo(Router* router) {
  Route settings;
  settings.pattern = "/settings";
  settings.method = MHD_HTTP_METHOD_POST;
  settings.body = {.need = BodyRule::Need::kFilled, .noun = "settings document"};
  settings.takes_turn = true;
  settings.check = CheckMode;
  settings.handle = [this](const RequestView& request) { return RunExchange(request); };
  router->Add(std::move(settings));

  Route result;
  result.pattern = "/result";
  result.method = MHD_HTTP_METHOD_GET;
  result.handle = [this](const RequestView& /*request*/) { return LastResult(); };
  router->Add(std::move(result));
}

Reply SettingsRoutes::RunExchange(const RequestView& request) {
  std::string reason;
  const std::optional<CommitKind> kind = ReadMode(request, &reason);
  if (!kind) {
    return ErrorReply(MHD_HTTP_BAD_REQUEST, reason);
  }
  Exchange::Outcome outcome = exchange_->Run(request.body(), *kind);
  switch (outcome.kind) {
    case Exchange::Outcome::Kind::kNoRoot:
      return ErrorReply(MHD_HTTP_BAD_REQUEST, "the settings document has no root element");
    case Exchange::Outcome::Kind::kFailed:
      return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, outcome.text);
    case Exchange::Outcome::Kind::kAnswered:
      break;
  }
  Reply reply = ResultDocument(std::move(outcome.text));
  if (outcome.commit != CommitKind::kNone) {
    reply.follow_up.wait_seconds = outcome.wait_seconds;
    reply.follow_up.run = [this, commit = outcome.commit] {
      const unsigned int mask = exchange_->Commit(commit);
      exchange_->FinishCommit(mask & ~ReportActions(mask, events_));
    };
  }
  return reply;
}

Reply SettingsRoutes::LastResult() {
  const std::optional<std::string>& result = exchange_->last_result();
  return result ? ResultDocument(*result)
                : ErrorReply(MHD_HTTP_NOT_FOUND, "there is no result document");
}

}  // namespace kiohost
