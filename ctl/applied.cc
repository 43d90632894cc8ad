#include "applied.h"

#include "interrupt.h"
#include "wait.h"

namespace kioctl {

void AddIfMatch(const Options& options, Request* request) {
  if (!options.if_match.empty()) {
    request->headers.push_back("If-Match: \"" + options.if_match + "\"");
  }
}

void SendChange(Context* context, Request request) {
  AddIfMatch(*context->options, &request);
  const std::string boot_id = context->router->Device().value("bootId", "");
  StopIfInterrupted();
  const Reply reply = context->router->Ask(request);
  ReportChange(context, reply, ReadResult(reply.body), boot_id);
}

void ReportChange(Context* context, const Reply& reply, const ResultDocument& result,
                  const std::string& boot_id) {
  if (result.code != 0) {
    throw RefusalOf(result);
  }
  const Options& options = *context->options;
  const Output& out = *context->out;
  const std::string id = reply.Header("kio-apply-id");
  const std::string seconds = std::to_string(result.wait_seconds);
  const std::string accepted = "accepted as " + id + ", the router is busy for " + seconds + " s";
  if (options.wait) {
    out.Note(accepted);
    WaitFor(context, {id, boot_id, std::chrono::seconds(result.wait_seconds)});
    return;
  }
  nlohmann::json answer = ToJson(result);
  answer["applyId"] = id;
  answer["bootId"] = boot_id;
  out.Json(answer);
  out.Line(accepted, Tone::kGood);
  if (!out.json()) {
    out.Note("next: kioctl wait --apply " + id + " --boot " + boot_id + " --for " + seconds);
    if (options.confirm_within > 0) {
      out.Note("it goes back in " + std::to_string(options.confirm_within) +
               " s unless you type: kioctl confirm");
    }
  }
  StopIfInterrupted();
}

}  // namespace kioctl
