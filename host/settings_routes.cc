#include "settings_routes.h"

#include <kioapp/kioapp.h>

#include <cstdio>
#include <optional>
#include <string>
#include <utility>

#include "change_guard.h"
#include "commit_report.h"
#include "confirm_routes.h"
#include "json_reply.h"
#include "route_table.h"
#include "variable_codes.h"

namespace kiohost {
namespace {

// The mode that a request asks for; nothing, and the reason, when it is not valid.
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
  if (std::optional<Reply> refusal = CheckDryRun(request)) {
    return refusal;
  }
  if (!ConfirmWithin(request)) {
    return BadConfirmWithin();
  }
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

// What a program is told of a document that the library has refused.
Refusal RefusalOf(const VariableList& variables, const Exchange::Outcome& outcome) {
  const auto code = static_cast<unsigned int>(outcome.code);
  const char* const reason = ResultReason(code);
  return {MHD_HTTP_UNPROCESSABLE_CONTENT,
          reason + (outcome.message.empty() ? "" : ": " + outcome.message),
          variables.Explain(code, outcome.message)};
}

// The answer to a document that the library gave no result for.
std::optional<Reply> FailureOf(const Exchange::Outcome& outcome) {
  switch (outcome.kind) {
    case Exchange::Outcome::Kind::kNoRoot:
      return ErrorReply(MHD_HTTP_BAD_REQUEST, "the settings document has no root element");
    case Exchange::Outcome::Kind::kFailed:
      return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, outcome.text);
    case Exchange::Outcome::Kind::kAnswered:
      break;
  }
  return std::nullopt;
}

Reply Foretell(Exchange* exchange, std::string document, CommitKind kind,
               const RequestView& request) {
  Forecast forecast;
  const Exchange::Outcome outcome = exchange->RunDry(std::move(document), kind, &forecast);
  if (std::optional<Reply> failure = FailureOf(outcome)) {
    return *failure;
  }
  return JsonReply(AsJson(forecast, request.peer_address(), request.local_address()));
}

Reply RunBody(const SettingsRoom& room, const RequestView& request) {
  std::string reason;
  const std::optional<CommitKind> kind = ReadMode(request, &reason);
  return kind ? RunDocument(room, request.body(), *kind, request)
              : ErrorReply(MHD_HTTP_BAD_REQUEST, reason);
}

Reply LastResult(const PublishedState& published) {
  const std::optional<std::string> result = published.result.Get();
  return result ? ResultDocument(*result)
                : ErrorReply(MHD_HTTP_NOT_FOUND, "there is no result document");
}

}  // namespace

Reply RunDocument(const SettingsRoom& room, std::string document, CommitKind kind,
                  const RequestView& request) {
  Exchange* const exchange = room.exchange;
  const ChangeGuard guard(exchange);
  const bool dry = *FlagArgument(request, "dry-run");
  if (std::optional<Reply> refusal =
          dry ? guard.RefuseLook(request) : guard.RefuseChange(request)) {
    return *refusal;
  }
  if (dry) {
    return Foretell(exchange, std::move(document), kind, request);
  }
  const int confirm_within = *ConfirmWithin(request);
  Exchange::Outcome outcome = exchange->Run(std::move(document), kind, confirm_within);
  if (std::optional<Reply> failure = FailureOf(outcome)) {
    return *failure;
  }
  Reply reply = ResultDocument(std::move(outcome.text));
  if (outcome.code != KIOAPP_RESULT_APPLIED) {
    reply.refusal = RefusalOf(*room.variables, outcome);
    room.events->Add({EventKind::kRefused, {{"code", outcome.code}, {"fault", outcome.message}}});
  }
  if (outcome.commit != CommitKind::kNone) {
    AddApplyId(outcome.apply_id, &reply);
    room.history->NoteApply(outcome.apply_id, room.store);
    room.events->Add(
        {EventKind::kApplied, {{"apply", outcome.apply_id}, {"wait", outcome.wait_seconds}}});
    if (confirm_within != 0) {
      room.confirmations->NoteApply();
      room.events->Add(
          {EventKind::kConfirmArmed, {{"apply", outcome.apply_id}, {"seconds", confirm_within}}});
    }
    reply.after_reply.wait_seconds = outcome.wait_seconds;
    reply.after_reply.runs_commands = PendingActions(outcome.commit) != 0;
    reply.after_reply.run = [exchange, events = room.events, commit = outcome.commit] {
      CommitReport report(exchange, events, PendingActions(commit));
      exchange->Commit(commit);
      report.Finish();
    };
  }
  return reply;
}

void AddSettingsRoutes(const SettingsRoom& room, const PublishedState* published, Router* router) {
  router->Add({.description = routes::kSettings,
               .takes_turn = true,
               .check = CheckMode,
               .handle = [room](const RequestView& request) { return RunBody(room, request); }});
  router->Add(
      {.description = routes::kResult,
       .answer = [published](const RequestView& /*request*/) { return LastResult(*published); }});
}

}  // namespace kiohost
