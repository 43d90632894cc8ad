// Variables one by one and in batches, and the actions on what was set.
#include <algorithm>
#include <cctype>

#include "applied.h"
#include "commands.h"
#include "files.h"
#include "forecast.h"
#include "password.h"
#include "status.h"
#include "wait.h"

namespace kioctl {
namespace {

std::string PathOf(const std::string& name) { return "/vars/" + Escape(name); }

bool IsSecret(const std::string& name) {
  // The rule for a secret is none.
  constexpr const char* kSecrets[] = {"DevicePwd", "LoginPassword", "EncryptionKey"};
  return std::any_of(std::begin(kSecrets), std::end(kSecrets),
                     [&name](const char* secret) { return name.ends_with(secret); });
}

// The value on the command line, or from elsewhere.
std::string ValueOf(const Options& options) {
  const bool is_secret = IsSecret(options.operand);
  if (options.value && *options.value != "-") {
    if (is_secret) {
      throw Failure{
          ExitCode::kUsage, "a password or key is not given on the command line",
          "leave it out to be asked for it, or give - to have it read from standard input"};
    }
    return *options.value;
  }
  if (options.value) {
    std::string value = ReadInput("-");
    if (value.ends_with('\n')) {
      value.pop_back();
    }
    return value;
  }
  if (const auto value = is_secret ? Prompt(options.operand + ": ") : std::nullopt) {
    return *value;
  }
  throw Failure{ExitCode::kUsage, "there is no value for " + options.operand,
                "give it behind the name, or - to have it read from standard input"};
}

// An answer of one line: code, blank, reason.
void ShowDone(const Context& context, const std::string& done) {
  context.out->Json({{"code", 0}, {"variable", context.options->operand}});
  context.out->Line(done);
}

}  // namespace

void RunGet(Context* context) {
  const Options& options = *context->options;
  const std::string query = options.node_path ? "?path=1" : "";
  const Reply reply = context->router->Ask({.path = PathOf(options.operand) + query});
  context->out->Json(
      {{"name", options.operand}, {options.node_path ? "path" : "value", reply.body}});
  context->out->Line(Printable(reply.body));
}

void RunSet(Context* context) {
  const Options& options = *context->options;
  context->router->Ask({.method = "PUT",
                        .path = PathOf(options.operand),
                        .body = ValueOf(options),
                        .changes = true});
  ShowDone(*context, "set");
  if (!context->out->json()) {
    context->out->Note("next: kioctl apply, then kioctl commit; kioctl forget drops what was set");
  }
}

void RunValidate(Context* context) {
  const Options& options = *context->options;
  context->router->Ask(
      {.method = "POST", .path = PathOf(options.operand) + "/validate", .body = ValueOf(options)});
  ShowDone(*context, "valid");
}

void RunForget(Context* context) {
  context->router->Ask({.method = "DELETE", .path = "/vars", .changes = true});
  context->out->Json({{"code", 0}});
  context->out->Line("what was set and not applied is forgotten");
}

void RunBatch(Context* context) {
  const Options& options = *context->options;
  std::string query = options.dry_run ? "?dry-run=1" : "";
  if (!options.separator.empty()) {
    query += (query.empty() ? "?" : "&") + ("separator=" + Escape(options.separator));
  }
  Request request{.method = "POST",
                  .path = "/vars" + query,
                  .body = ReadInput(options.operand),
                  .changes = !options.dry_run};
  AddIfMatch(options, &request);
  const Reply reply = context->router->Try(request);
  if (reply.status != kOk) {
    Failure failure = Refusal(reply);
    if (failure.details.contains("variable") && !options.dry_run) {
      failure.next += "; those before it are set: kioctl forget drops them";
    }
    throw failure;
  }
  if (options.dry_run) {
    ShowForecast(*context->out, ReadJson(reply.body));
    return;
  }
  const std::string id = reply.Header("kio-apply-id");
  context->out->Json({{"code", 0}, {"applyId", id}});
  context->out->Line(id.empty() ? "set" : "applied as " + id, Tone::kGood);
  if (id.empty() && !context->out->json()) {
    context->out->Note("next: kioctl apply, then kioctl commit");
  }
}

void RunApply(Context* context) {
  Request request{.method = "POST", .path = "/actions/ApplyAllRssVars", .changes = true};
  AddIfMatch(*context->options, &request);
  const std::string id = context->router->Ask(request).Header("kio-apply-id");
  context->out->Json({{"code", 0}, {"applyId", id}});
  context->out->Line("applied as " + id, Tone::kGood);
  if (!context->out->json()) {
    context->out->Note("next: kioctl commit brings it into force");
  }
}

void RunCommit(Context* context) {
  Router& router = *context->router;
  const nlohmann::json device = router.Device();
  const nlohmann::json last = device.value("lastApply", nlohmann::json());
  const std::string id = last.is_object() ? last.value("id", "") : "";
  Request request{.method = "POST", .path = "/actions/CommitRssVars", .changes = true};
  AddIfMatch(*context->options, &request);
  router.Ask(request);
  if (context->options->wait) {
    // The actions begin two seconds after the answer.
    WaitFor(context,
            {id, device.value("bootId", ""), std::chrono::seconds(context->options->promised)});
    return;
  }
  context->out->Json({{"code", 0}, {"applyId", id}});
  context->out->Line("the commit runs", Tone::kGood);
  if (!context->out->json() && !id.empty()) {
    context->out->Note("next: kioctl wait --apply " + id);
  }
}

}  // namespace kioctl
