// Settings documents: sending one, confirming it, its result.
#include "applied.h"
#include "commands.h"
#include "files.h"
#include "forecast.h"
#include "status.h"

namespace kioctl {
namespace {

std::string QueryOf(const Options& options) {
  std::string query;
  const auto add = [&query](const std::string& parameter) {
    query += (query.empty() ? "?" : "&") + parameter;
  };
  if (options.dry_run) {
    add("dry-run=1");
  }
  if (options.confirm_within > 0) {
    add("confirm-within=" + std::to_string(options.confirm_within));
  }
  if (options.cloning) {
    add("cloning=1");
  }
  if (options.full) {
    add("full=1");
  }
  return query;
}

}  // namespace

void RunSend(Context* context) {
  const Options& options = *context->options;
  Request request{.method = "POST",
                  .path = "/settings" + QueryOf(options),
                  .body = ReadInput(options.operand),
                  .changes = !options.dry_run};
  if (options.dry_run) {
    ShowForecast(*context->out, ReadJson(context->router->Ask(request).body));
    return;
  }
  SendChange(context, std::move(request));
}

void RunConfirm(Context* context) {
  const Options& options = *context->options;
  Router& router = *context->router;
  Request request{.method = options.take_back ? "DELETE" : "POST",
                  .path = "/settings/confirm",
                  .changes = true};
  AddIfMatch(options, &request);
  Reply reply = router.Try(request);
  if (reply.status == kForbidden && !options.take_back) {
    // It takes a login from after the change.
    router.LogIn();
    reply = router.Try(request);
  }
  ThrowUnlessDone(reply);
  context->out->Json({{options.take_back ? "takenBack" : "confirmed", true}});
  context->out->Line(options.take_back ? "taken back: the settings go back" : "confirmed",
                     Tone::kGood);
}

void RunResult(Context* context) {
  const ResultDocument result = ReadResult(context->router->Ask({.path = "/result"}).body);
  context->out->Json(ToJson(result));
  context->out->Table({"MEMBER", "VALUE"}, {{"result", std::to_string(result.code)},
                                            {"meaning", MeaningOf(result.code)},
                                            {"message", result.message},
                                            {"wait", std::to_string(result.wait_seconds)}});
}

}  // namespace kioctl
