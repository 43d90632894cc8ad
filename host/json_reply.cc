#include "json_reply.h"

namespace kiohost {

Reply JsonReply(const Json& value) {
  Reply reply;
  reply.content_type = "application/json";
  reply.body = JsonText(value);
  return reply;
}

void AddApplyId(const std::string& id, Reply* reply) {
  if (!id.empty()) {
    reply->headers.emplace_back("Kio-Apply-Id", id);
  }
}

std::optional<Reply> CheckDryRun(const RequestView& request) {
  return FlagArgument(request, "dry-run")
             ? std::nullopt
             : std::optional(ErrorReply(MHD_HTTP_BAD_REQUEST, "dry-run takes 0 or 1"));
}

}  // namespace kiohost
