#include "variable_routes.h"

#include <kioapp/kioapp.h>

#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "all_values.h"
#include "entity_tag.h"
#include "json_reply.h"
#include "route_table.h"
#include "settings_tag.h"
#include "variable_codes.h"

namespace kiohost {
namespace {

// "CODE REASON" or "CODE REASON: DETAIL".
std::string CodeLine(unsigned int code, const std::string& reason, const std::string& detail) {
  return std::to_string(code) + " " + reason + (detail.empty() ? "" : ": " + detail);
}

Reply Done(const std::string& detail) {
  Reply reply;
  reply.body = CodeLine(KIOAPP_VAR_DONE, FindVariableCode(KIOAPP_VAR_DONE)->reason, detail) + "\n";
  return reply;
}

Reply CodeReply(unsigned int status, unsigned int code, const std::string& reason,
                const std::string& detail = {}) {
  Reply reply = ErrorReply(status, CodeLine(code, reason, detail));
  reply.refusal->detail = reason + (detail.empty() ? "" : ": " + detail);
  reply.refusal->members["code"] = code;
  return reply;
}

Reply TooLong(const VariableList& list, const std::string& name) {
  Reply reply =
      CodeReply(MHD_HTTP_UNPROCESSABLE_CONTENT, KIOAPP_RESULT_BAD_LENGTH,
                "a value has at most " + std::to_string(Variables::kMaxValue) + " characters");
  reply.refusal->members = list.Explain(KIOAPP_RESULT_BAD_LENGTH, name);
  return reply;
}

// A path may be written without its first slash: no variable has a slash in its name.
std::string VariableName(const RequestView& request) {
  const std::string& name = request.name();
  return name.find('/') == std::string::npos || name.starts_with('/') ? name : "/" + name;
}

std::optional<Reply> CheckPathArgument(const RequestView& request) {
  return FlagArgument(request, "path")
             ? std::nullopt
             : std::optional(ErrorReply(MHD_HTTP_BAD_REQUEST, "path takes 0 or 1"));
}

std::optional<Reply> CheckSeparator(const RequestView& request) {
  const std::string_view separator = request.Argument("separator").value_or("&");
  return separator.size() == 1 && separator.front() != '\0'
             ? std::nullopt
             : std::optional(ErrorReply(MHD_HTTP_BAD_REQUEST, "separator takes one character"));
}

// The reply to an answer of the library. `name` is the variable that it is about; empty for none.
Reply ReplyTo(const VariableRoom& room, const std::string& name, const Variables::Answer& answer) {
  if (!answer.store.ok()) {
    return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, answer.store.reason());
  }
  if (answer.code == KIOAPP_VAR_DONE) {
    return Done(answer.text);
  }
  if (answer.code == KIOAPP_VAR_REFUSED && !name.empty() && !room.variables->Exists(name)) {
    Reply reply = CodeReply(MHD_HTTP_NOT_FOUND, answer.code, "no such variable", answer.text);
    reply.refusal->members["variable"] = name;
    return reply;
  }
  const VariableCode* code = FindVariableCode(answer.code);
  if (code == nullptr) {
    return CodeReply(MHD_HTTP_INTERNAL_SERVER_ERROR, answer.code,
                     "the host does not know this code", answer.text);
  }
  Reply reply = CodeReply(code->http_status, answer.code, code->reason, answer.text);
  reply.refusal->members =
      room.list->Explain(answer.code, answer.text.empty() ? name : answer.text);
  return reply;
}

std::optional<Reply> CheckList(const RequestView& request) {
  const std::optional<bool> values = FlagArgument(request, "values");
  const std::optional<bool> secrets = FlagArgument(request, "secrets");
  if (!values || !secrets) {
    return ErrorReply(MHD_HTTP_BAD_REQUEST, "values and secrets take 0 or 1");
  }
  if (!*values && (*secrets || request.Argument("changed-since"))) {
    return ErrorReply(MHD_HTTP_BAD_REQUEST, "secrets and changed-since go with values=1 only");
  }
  return std::nullopt;
}

ValuesAsked Asked(const RequestView& request) {
  ValuesAsked asked;
  asked.secrets = *FlagArgument(request, "secrets");
  if (const std::optional<std::string_view> since = request.Argument("changed-since")) {
    asked.since = std::string(*since);
  }
  return asked;
}

Reply SendValues(const VariableRoom& room, const RequestView& request) {
  const auto read = [&room](const std::string& name) {
    Variables::Answer answer = room.variables->Read(name, false);
    return answer.code == KIOAPP_VAR_DONE ? std::optional(std::move(answer.text)) : std::nullopt;
  };
  return JsonReply(AllValues({read, room.list, room.store, SettingsTag(room.applies->Last())},
                             room.history, Asked(request)));
}

std::optional<std::string> ValueIn(const VariableValues& values, const std::string& name,
                                   bool wants_path) {
  std::optional<VariableAnswer> found = values.Find(name, wants_path);
  return found && found->code == KIOAPP_VAR_DONE ? std::optional(std::move(found->text))
                                                 : std::nullopt;
}

// The values while the library is at work. When the store holds other settings already, only the
// library can tell the values that go with them.
std::optional<Reply> SendPublishedValues(const VariableReader& reader, ValueHistory* history,
                                         const RequestView& request) {
  const std::shared_ptr<const PublishedVariables> published = reader.published->variables.Get();
  if (published == nullptr) {
    return std::nullopt;
  }
  // The name of the settings and the nodes as of one moment.
  const StoreView view(reader.store);
  const std::string settings = SettingsTag(reader.applies->Last());
  if (settings != published->settings) {
    return std::nullopt;
  }
  const auto read = [&published](const std::string& name) {
    return ValueIn(published->values, name, false);
  };
  return JsonReply(AllValues({read, reader.list, reader.store, settings}, history, Asked(request)));
}

// The list of all variables, or their values.
std::optional<Reply> AnswerList(const VariableRoom& room, const RequestView& request) {
  const VariableList& list = *room.reader.list;
  return *FlagArgument(request, "values")
             ? SendPublishedValues(room.reader, room.history, request)
             : std::optional(WithEntityTag(JsonReply(list.AsJson()), request));
}

// What was applied is a state that a client may ask the changes since.
void NoteApply(const VariableRoom& room, const Variables::Answer& answer, Reply* reply) {
  AddApplyId(answer.apply_id, reply);
  room.history->NoteApply(answer.apply_id, room.store);
}

Reply ValueReply(std::string value) {
  Reply reply;
  reply.body = std::move(value);
  return reply;
}

Reply Read(const VariableRoom& room, const RequestView& request) {
  const std::string name = VariableName(request);
  Variables::Answer answer = room.variables->Read(name, *FlagArgument(request, "path"));
  return answer.code == KIOAPP_VAR_DONE ? ValueReply(std::move(answer.text))
                                        : ReplyTo(room, name, answer);
}

// The value of a variable while the library is at work.
std::optional<Reply> ReadPublished(const VariableReader& reader, const RequestView& request) {
  const std::shared_ptr<const PublishedVariables> published = reader.published->variables.Get();
  if (published == nullptr) {
    return std::nullopt;
  }
  std::optional<std::string> value =
      ValueIn(published->values, VariableName(request), *FlagArgument(request, "path"));
  return value ? std::optional(ValueReply(std::move(*value))) : std::nullopt;
}

Reply Write(const VariableRoom& room, const RequestView& request) {
  if (request.body().size() > Variables::kMaxValue) {
    return TooLong(*room.list, VariableName(request));
  }
  const std::string name = VariableName(request);
  return ReplyTo(room, name, room.variables->Write(name, request.body()));
}

Reply Validate(const VariableRoom& room, const RequestView& request) {
  if (request.body().size() > Variables::kMaxValue) {
    return TooLong(*room.list, VariableName(request));
  }
  const std::string name = VariableName(request);
  return ReplyTo(room, name, room.variables->Validate(name, request.body()));
}

std::optional<Reply> CheckBatch(const RequestView& request) {
  std::optional<Reply> refusal = CheckDryRun(request);
  return refusal ? refusal : CheckSeparator(request);
}

Reply Foretell(const VariableRoom& room, char separator, const RequestView& request) {
  Forecast forecast;
  const Variables::Answer answer =
      room.variables->SetBatchDry(request.body(), separator, &forecast);
  return answer.store.ok()
             ? JsonReply(AsJson(forecast, request.peer_address(), request.local_address()))
             : ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, answer.store.reason());
}

Reply SetBatch(const VariableRoom& room, const ChangeGuard& guard, const RequestView& request) {
  const char separator = request.Argument("separator").value_or("&").front();
  const bool dry = *FlagArgument(request, "dry-run");
  if (std::optional<Reply> refusal =
          dry ? guard.RefuseLook(request) : guard.RefuseChange(request)) {
    return *refusal;
  }
  if (dry) {
    return Foretell(room, separator, request);
  }
  const Variables::Answer answer = room.variables->SetBatch(request.body(), separator);
  // The text names the variable that was refused, if one was.
  Reply reply = ReplyTo(room, answer.text, answer);
  NoteApply(room, answer, &reply);
  reply.after_reply = room.variables->TakeAfterReply();
  return reply;
}

Reply Discard(const VariableRoom& room) {
  room.variables->Discard();
  return ReplyTo(room, {}, {});
}

Reply RunAction(const VariableRoom& room, const ChangeGuard& guard, const RequestView& request) {
  const std::optional<Variables::Action> action = Variables::FindAction(VariableName(request));
  if (!action) {
    return CodeReply(MHD_HTTP_NOT_FOUND, KIOAPP_VAR_REFUSED, "no such action");
  }
  const bool looks =
      *action == Variables::Action::kVerifyAll || *action == Variables::Action::kSurveySites;
  if (std::optional<Reply> refusal =
          looks ? guard.RefuseLook(request) : guard.RefuseChange(request)) {
    return *refusal;
  }
  const Variables::Answer answer = room.variables->RunAction(*action, request.body());
  const bool names_variable = *action == Variables::Action::kSetBatch;
  Reply reply = ReplyTo(room, names_variable ? answer.text : std::string(), answer);
  NoteApply(room, answer, &reply);
  reply.after_reply = room.variables->TakeAfterReply();
  return reply;
}

// Whether a request asks for the commit while one is scheduled: the library then commits once for
// both.
bool JoinsCommit(const Variables& variables, const RequestView& request) {
  return Variables::FindAction(VariableName(request)) == Variables::Action::kCommit &&
         variables.CommitIsScheduled();
}

}  // namespace

void AddVariableRoutes(const VariableRoom& room, const ChangeGuard& guard, Router* router) {
  router->Add({.description = routes::kVariables,
               .check = CheckList,
               .answer = [room](const RequestView& request) { return AnswerList(room, request); },
               .handle = [room](const RequestView& request) { return SendValues(room, request); }});
  router->Add({.description = routes::kSetBatch,
               .takes_turn = true,
               .runs_commands = true,
               .check = CheckBatch,
               .handle = [room, guard](const RequestView& request) {
                 return SetBatch(room, guard, request);
               }});
  router->Add({.description = routes::kDiscard,
               .handle = [room](const RequestView& /*request*/) { return Discard(room); }});
  router->Add(
      {.description = routes::kVariable,
       .check = CheckPathArgument,
       .answer = [room](const RequestView& request) { return ReadPublished(room.reader, request); },
       .handle = [room](const RequestView& request) { return Read(room, request); }});
  router->Add({.description = routes::kSetVariable,
               .handle = [room](const RequestView& request) { return Write(room, request); }});
  router->Add({.description = routes::kValidate,
               .handle = [room](const RequestView& request) { return Validate(room, request); }});
  router->Add(
      {.description = routes::kAction,
       .takes_turn = true,
       .runs_commands = true,
       .may_join =
           [room](const RequestView& request) { return JoinsCommit(*room.variables, request); },
       .handle = [room,
                  guard](const RequestView& request) { return RunAction(room, guard, request); }});
}

}  // namespace kiohost
