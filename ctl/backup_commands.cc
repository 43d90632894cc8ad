// Backups: fetched from the router, with the secrets sealed or left out, and restored.
#include "applied.h"
#include "commands.h"
#include "files.h"
#include "forecast.h"
#include "password.h"
#include "sealed.h"
#include "side_reader.h"

namespace kioctl {
namespace {

std::string RestoreQuery(const Options& options, bool dry_run) {
  std::string query;
  const auto add = [&query](const std::string& parameter) {
    query += (query.empty() ? "?" : "&") + parameter;
  };
  if (dry_run) {
    add("dry-run=1");
  }
  if (options.other_firmware) {
    add("other-firmware=1");
  }
  if (options.confirm_within > 0 && !dry_run) {
    add("confirm-within=" + std::to_string(options.confirm_within));
  }
  return query;
}

}  // namespace

void RunBackup(Context* context) {
  const Options& options = *context->options;
  RefuseOneFileForMany(options, options.operand);
  const std::string query = options.secrets ? "?secrets=1" : "";
  // Asked for before the secrets are fetched.
  const std::string passphrase = options.secrets ? Passphrase(true) : "";
  const std::string archive = context->router->Ask({.path = "/backup" + query}).body;
  WriteOutput(options.operand, options.secrets ? Seal(archive, passphrase) : archive);
  if (options.operand != "-") {
    context->out->Json({{"file", options.operand}, {"secrets", options.secrets}});
    context->out->Line("written: " + options.operand, Tone::kGood);
  }
}

void RunRestore(Context* context) {
  const Options& options = *context->options;
  const Output& out = *context->out;
  const std::string archive = OpenedArchive(ReadInput(options.operand));
  Request request{
      .method = "POST", .path = "/restore" + RestoreQuery(options, true), .body = archive};
  AddIfMatch(options, &request);
  const nlohmann::json forecast = ReadJson(context->router->Ask(request).body);
  if (options.dry_run) {
    ShowForecast(out, forecast);
    return;
  }
  if (!out.json() || forecast.value("result", 0) != 0) {
    ShowForecast(out, forecast);
  }
  const nlohmann::json read = nlohmann::json::parse(archive, nullptr, false);
  if (read.is_object() && !read.value("secrets", false)) {
    out.Note("passwords and keys are not in the archive, and stay as they are");
  }
  if (!options.yes && !Confirms("Restore this on " + context->router->url() + "?")) {
    throw Failure{ExitCode::kUsage, "nothing was restored: nobody has agreed",
                  "answer y on a terminal, or give --yes"};
  }
  request.path = "/restore" + RestoreQuery(options, false);
  request.changes = true;
  SendChange(context, std::move(request));
}

}  // namespace kioctl
