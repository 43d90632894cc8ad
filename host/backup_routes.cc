#include "backup_routes.h"

#include <optional>
#include <string>
#include <utility>

#include "confirm_routes.h"
#include "json_reply.h"
#include "route_table.h"

namespace kiohost {
namespace {

std::optional<Reply> CheckFlag(const RequestView& request, const char* name) {
  return FlagArgument(request, name)
             ? std::nullopt
             : std::optional(ErrorReply(MHD_HTTP_BAD_REQUEST, std::string(name) + " takes 0 or 1"));
}

std::optional<Reply> CheckRestore(const RequestView& request) {
  if (!ConfirmWithin(request)) {
    return BadConfirmWithin();
  }
  std::optional<Reply> refusal = CheckFlag(request, "dry-run");
  return refusal ? refusal : CheckFlag(request, "other-firmware");
}

Reply SendArchive(Backup* reader, const RequestView& request) {
  Reply reply = JsonReply(reader->Make(*FlagArgument(request, "secrets")));
  reply.headers.emplace_back(MHD_HTTP_HEADER_CONTENT_DISPOSITION,
                             "attachment; filename=\"settings.json\"");
  return reply;
}

Reply Restore(Backup* backup, const SettingsRoom& settings, const RequestView& request) {
  std::string document;
  const Status status =
      backup->Read(request.body(), *FlagArgument(request, "other-firmware"), &document);
  if (status.code() == ExitCode::kUsage) {
    return ErrorReply(MHD_HTTP_UNPROCESSABLE_CONTENT, status.reason());
  }
  if (!status.ok()) {
    return ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, status.reason());
  }
  return RunDocument(settings, std::move(document), CommitKind::kSettings, request);
}

}  // namespace

void AddBackupRoutes(Backup* backup, Backup* reader, const SettingsRoom& settings, Router* router) {
  router->Add(
      {.description = routes::kBackup,
       .check = [](const RequestView& request) { return CheckFlag(request, "secrets"); },
       .answer = [reader](const RequestView& request) { return SendArchive(reader, request); }});
  router->Add({.description = routes::kRestore,
               .takes_turn = true,
               .check = CheckRestore,
               .handle = [backup, settings](const RequestView& request) {
                 return Restore(backup, settings, request);
               }});
}

}  // namespace kiohost
