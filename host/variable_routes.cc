#include "variable_routes.h"

#include <kioapp/kioapp.h>

#include <fstream>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

#include "json_reply.h"
#include "variable_codes.h"

namespace kiohost {
namespace {

// "CODE REASON" or "CODE REASON: DETAIL".
Reply CodeReply(unsigned int status, unsigned int code, const std::string& reason,
                const std::string& detail = {}) {
  const std::string text = reason + (detail.empty() ? "" : ": " + detail);
  Reply reply = ErrorReply(status, std::to_string(code) + " " + text);
  if (status == MHD_HTTP_OK) {
    reply.refusal.reset();
  } else {
    reply.refusal->detail = text;
    reply.refusal->members["code"] = code;
  }
  return reply;
}

Reply TooLong() {
  return CodeReply(MHD_HTTP_UNPROCESSABLE_CONTENT, KIOAPP_RESULT_BAD_LENGTH,
                   "a value has at most " + std::to_string(Variables::kMaxValue) + " characters");
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
Reply ReplyTo(Variables* variables, const std::string& name, const Variables::Answer& answer) {
  if (!answer.store.ok()) {
    return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, answer.store.reason());
  }
  if (answer.code == KIOAPP_VAR_REFUSED && !name.empty() && !variables->Exists(name)) {
    return CodeReply(MHD_HTTP_NOT_FOUND, answer.code, "no such variable", answer.text);
  }
  const VariableCode* code = FindVariableCode(answer.code);
  return code != nullptr ? CodeReply(code->http_status, answer.code, code->reason, answer.text)
                         : CodeReply(MHD_HTTP_INTERNAL_SERVER_ERROR, answer.code,
                                     "the host does not know this code", answer.text);
}

// The list of all variables.
Reply SendCatalogue(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  if (!stream || !(text << stream.rdbuf())) {
    return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, "cannot read " + file);
  }
  Reply reply;
  reply.content_type = "application/json";
  reply.body = text.str();
  return reply;
}

Reply Read(Variables* variables, const RequestView& request) {
  const std::string name = VariableName(request);
  Variables::Answer answer = variables->Read(name, *FlagArgument(request, "path"));
  if (answer.code != KIOAPP_VAR_DONE) {
    return ReplyTo(variables, name, answer);
  }
  Reply reply;
  reply.body = std::move(answer.text);
  return reply;
}

Reply Write(Variables* variables, const RequestView& request) {
  if (request.body().size() > Variables::kMaxValue) {
    return TooLong();
  }
  const std::string name = VariableName(request);
  return ReplyTo(variables, name, variables->Write(name, request.body()));
}

Reply Validate(Variables* variables, const RequestView& request) {
  if (request.body().size() > Variables::kMaxValue) {
    return TooLong();
  }
  const std::string name = VariableName(request);
  return ReplyTo(variables, name, variables->Validate(name, request.body()));
}

std::optional<Reply> CheckBatch(const RequestView& request) {
  std::optional<Reply> refusal = CheckDryRun(request);
  return refusal ? refusal : CheckSeparator(request);
}

Reply Foretell(Variables* variables, char separator, const RequestView& request) {
  Forecast forecast;
  const Variables::Answer answer = variables->SetBatchDry(request.body(), separator, &forecast);
  return answer.store.ok()
             ? JsonReply(AsJson(forecast, request.peer_address(), request.local_address()))
             : ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, answer.store.reason());
}

Reply SetBatch(Variables* variables, const ChangeGuard& guard, const RequestView& request) {
  const char separator = request.Argument("separator").value_or("&").front();
  const bool dry = *FlagArgument(request, "dry-run");
  if (std::optional<Reply> refusal =
          dry ? guard.RefuseLook(request) : guard.RefuseChange(request)) {
    return *refusal;
  }
  if (dry) {
    return Foretell(variables, separator, request);
  }
  const Variables::Answer answer = variables->SetBatch(request.body(), separator);
  // The text names the variable that was refused, if one was.
  Reply reply = ReplyTo(variables, answer.text, answer);
  AddApplyId(answer.apply_id, &reply);
  reply.after_reply = variables->TakeAfterReply();
  return reply;
}

Reply Discard(Variables* variables) {
  variables->Discard();
  return ReplyTo(variables, {}, {});
}

Reply RunAction(Variables* variables, const ChangeGuard& guard, const RequestView& request) {
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
  const Variables::Answer answer = variables->RunAction(*action, request.body());
  const bool names_variable = *action == Variables::Action::kSetBatch;
  Reply reply = ReplyTo(variables, names_variable ? answer.text : std::string(), answer);
  AddApplyId(answer.apply_id, &reply);
  reply.after_reply = variables->TakeAfterReply();
  return reply;
}

// Whether a request asks for the commit while one is scheduled: the library then commits once for
// both.
bool JoinsCommit(const Variables& variables, const RequestView& request) {
  return Variables::FindAction(VariableName(request)) == Variables::Action::kCommit &&
         variables.CommitIsScheduled();
}

}  // namespace

void AddVariableRoutes(Variables* variables, const std::string& catalogue, const ChangeGuard& guard,
                       Router* router) {
  const BodyRule value = {.need = BodyRule::Need::kAnything, .noun = "value"};
  const BodyRule batch = {.need = BodyRule::Need::kAnything, .noun = "batch"};
  router->Add(
      {.pattern = "/vars",
       .method = MHD_HTTP_METHOD_GET,
       .handle = [catalogue](const RequestView& /*request*/) { return SendCatalogue(catalogue); }});
  router->Add({.pattern = "/vars",
               .method = MHD_HTTP_METHOD_POST,
               .body = batch,
               .takes_turn = true,
               .check = CheckBatch,
               .handle = [variables, guard](const RequestView& request) {
                 return SetBatch(variables, guard, request);
               }});
  router->Add(
      {.pattern = "/vars",
       .method = MHD_HTTP_METHOD_DELETE,
       .handle = [variables](const RequestView& /*request*/) { return Discard(variables); }});
  router->Add(
      {.pattern = "/vars/*",
       .method = MHD_HTTP_METHOD_GET,
       .check = CheckPathArgument,
       .handle = [variables](const RequestView& request) { return Read(variables, request); }});
  router->Add(
      {.pattern = "/vars/*",
       .method = MHD_HTTP_METHOD_PUT,
       .body = value,
       .handle = [variables](const RequestView& request) { return Write(variables, request); }});
  router->Add(
      {.pattern = "/vars/*/validate",
       .method = MHD_HTTP_METHOD_POST,
       .body = value,
       .handle = [variables](const RequestView& request) { return Validate(variables, request); }});
  router->Add(
      {.pattern = "/actions/*",
       .method = MHD_HTTP_METHOD_POST,
       .body = batch,
       .takes_turn = true,
       .may_join =
           [variables](const RequestView& request) { return JoinsCommit(*variables, request); },
       .handle = [variables, guard](
                     const RequestView& request) { return RunAction(variables, guard, request); }});
}

}  // namespace kiohost
