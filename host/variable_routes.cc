#include "variable_routes.h"

#include <kioapp/kioapp.h>

#include <fstream>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

namespace kiohost {
namespace {

const char* Reason(unsigned int code) {
  switch (code) {
    case KIOAPP_VAR_DONE:
      return "done";
    case KIOAPP_VAR_NOT_CONFIGURABLE:
      return "the section is not configurable";
    case KIOAPP_VAR_REFUSED:
      return "not a value that this takes";
    case KIOAPP_RESULT_INVALID_VALUE:
      return "a value is invalid or cannot be changed";
    case KIOAPP_VAR_UNKNOWN_WORD:
      return "the length is out of range, or not one of the words";
    case KIOAPP_RESULT_BAD_CHARACTER:
      return "a character is not allowed";
    case KIOAPP_RESULT_ABOVE_MAXIMUM:
      return "a number is above its maximum";
    case KIOAPP_RESULT_BELOW_MINIMUM:
      return "a number is below its minimum";
    default:
      return "refused";
  }
}

// The status of a code; that of KIOAPP_VAR_REFUSED when there is such a variable.
unsigned int StatusOf(unsigned int code) {
  switch (code) {
    case KIOAPP_VAR_DONE:
      return MHD_HTTP_OK;
    case KIOAPP_VAR_NOT_CONFIGURABLE:
      return MHD_HTTP_FORBIDDEN;
    default:
      return MHD_HTTP_UNPROCESSABLE_CONTENT;
  }
}

// "CODE REASON" or "CODE REASON: DETAIL".
Reply CodeReply(unsigned int status, unsigned int code, const std::string& reason,
                const std::string& detail = {}) {
  return ErrorReply(status,
                    std::to_string(code) + " " + reason + (detail.empty() ? "" : ": " + detail));
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

}  // namespace

void VariableRoutes::AddTo(Router* router) {
  const BodyRule value = {.need = BodyRule::Need::kAnything, .noun = "value"};
  const BodyRule batch = {.need = BodyRule::Need::kAnything, .noun = "batch"};
  const auto add = [router](Route route, auto handle) {
    route.handle = handle;
    router->Add(std::move(route));
  };
  add({.pattern = "/vars", .method = MHD_HTTP_METHOD_GET},
      [this](const RequestView& /*request*/) { return ServeCatalogue(); });
  add({.pattern = "/vars",
       .method = MHD_HTTP_METHOD_POST,
       .body = batch,
       .takes_turn = true,
       .check = CheckSeparator},
      [this](const RequestView& request) { return SetBatch(request); });
  add({.pattern = "/vars", .method = MHD_HTTP_METHOD_DELETE},
      [this](const RequestView& /*request*/) { return Discard(); });
  add({.pattern = "/vars/*", .method = MHD_HTTP_METHOD_GET, .check = CheckPathArgument},
      [this](const RequestView& request) { return Read(request); });
  add({.pattern = "/vars/*", .method = MHD_HTTP_METHOD_PUT, .body = value},
      [this](const RequestView& request) { return Write(request); });
  add({.pattern = "/vars/*/validate", .method = MHD_HTTP_METHOD_POST, .body = value},
      [this](const RequestView& request) { return Validate(request); });
  // The library serves two requests for the commit by one, which the second puts off.
  const auto joins_commit = [this](const RequestView& request) {
    return Variables::FindAction(VariableName(request)) == "CommitRssVars" &&
           variables_->CommitIsTicking();
  };
  add({.pattern = "/actions/*",
       .method = MHD_HTTP_METHOD_POST,
       .body = batch,
       .takes_turn = true,
       .may_join = joins_commit},
      [this](const RequestView& request) { return RunAction(request); });
}

Reply VariableRoutes::ServeCatalogue() {
  std::ifstream stream(catalogue_, std::ios::binary);
  std::ostringstream text;
  if (!stream || !(text << stream.rdbuf())) {
    return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, "cannot read " + catalogue_);
  }
  Reply reply;
  reply.content_type = "application/json";
  reply.body = text.str();
  return reply;
}

Reply VariableRoutes::Read(const RequestView& request) {
  const std::string name = VariableName(request);
  Variables::Answer answer = variables_->Read(name, *FlagArgument(request, "path"));
  if (answer.code != KIOAPP_VAR_DONE) {
    return AnswerFor(name, answer);
  }
  Reply reply;
  reply.body = std::move(answer.text);
  return reply;
}

Reply VariableRoutes::Write(const RequestView& request) {
  if (request.body().size() > Variables::kMaxValue) {
    return TooLong();
  }
  const std::string name = VariableName(request);
  return AnswerFor(name, variables_->Write(name, request.body()));
}

Reply VariableRoutes::Validate(const RequestView& request) {
  if (request.body().size() > Variables::kMaxValue) {
    return TooLong();
  }
  const std::string name = VariableName(request);
  return AnswerFor(name, variables_->Validate(name, request.body()));
}

Reply VariableRoutes::SetBatch(const RequestView& request) {
  const char separator = request.Argument("separator").value_or("&").front();
  const Variables::Answer answer = variables_->SetBatch(request.body(), separator);
  // The name, when it is one, of the variable that was refused.
  Reply reply = AnswerFor(answer.text, answer);
  reply.follow_up = variables_->TakeFollowUp();
  return reply;
}

Reply VariableRoutes::RunAction(const RequestView& request) {
  const std::string action = Variables::FindAction(VariableName(request));
  if (action.empty()) {
    return CodeReply(MHD_HTTP_NOT_FOUND, KIOAPP_VAR_REFUSED, "no such action");
  }
  const Variables::Answer answer = variables_->RunAction(action, request.body());
  // A batch names the variable that was refused.
  Reply reply = AnswerFor(action == "SetRssVars" ? answer.text : std::string(), answer);
  reply.follow_up = variables_->TakeFollowUp();
  return reply;
}

Reply VariableRoutes::Discard() {
  variables_->Discard();
  return CodeReply(MHD_HTTP_OK, KIOAPP_VAR_DONE, Reason(KIOAPP_VAR_DONE));
}

Reply VariableRoutes::AnswerFor(const std::string& name, const Variables::Answer& answer) {
  if (!answer.store.ok()) {
    return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, answer.store.reason());
  }
  if (answer.code == KIOAPP_VAR_REFUSED && !name.empty() && !variables_->Exists(name)) {
    return CodeReply(MHD_HTTP_NOT_FOUND, answer.code, "no such variable", answer.text);
  }
  return CodeReply(StatusOf(answer.code), answer.code, Reason(answer.code), answer.text);
}

}  // namespace kiohost
