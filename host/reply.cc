#include "reply.h"

#include "accept.h"

namespace kiohost {

Reply ErrorReply(unsigned int status, const std::string& reason) {
  Reply reply;
  reply.status = status;
  reply.body = reason + "\n";
  reply.refusal = {.status = status, .detail = reason};
  return reply;
}

Reply TryLater(unsigned int status, const std::string& reason, int64_t seconds) {
  Reply reply = ErrorReply(status, reason);
  reply.headers.emplace_back(MHD_HTTP_HEADER_RETRY_AFTER, std::to_string(seconds));
  return reply;
}

Reply InAcceptedForm(Reply reply, std::string_view accept) {
  const std::string_view type = reply.content_type;
  if (!reply.refusal || !PrefersProblem(accept, type.substr(0, type.find(';')))) {
    return reply;
  }
  const Refusal& refusal = *reply.refusal;
  Json problem = {{"type", "about:blank"},
                  {"title", MHD_get_reason_phrase_for(refusal.status)},
                  {"status", refusal.status},
                  {"detail", refusal.detail}};
  problem.update(refusal.members);
  reply.status = refusal.status;
  reply.content_type = kProblemType;
  reply.body = JsonText(problem);
  return reply;
}

std::vector<std::pair<std::string, std::string>> AllHeaders(const Reply& reply) {
  // A browser must not guess the type of a reply, nor cache what is not meant for it.
  std::vector<std::pair<std::string, std::string>> headers = {
      {MHD_HTTP_HEADER_CONTENT_TYPE, reply.content_type},
      {"X-Content-Type-Options", "nosniff"},
      {MHD_HTTP_HEADER_CACHE_CONTROL, reply.cache_control}};
  headers.insert(headers.end(), reply.headers.begin(), reply.headers.end());
  return headers;
}

std::string RawResponse(const Reply& reply) {
  std::string text = "HTTP/1.1 " + std::to_string(reply.status) + " ";
  text += MHD_get_reason_phrase_for(reply.status);
  for (const auto& [name, value] : AllHeaders(reply)) {
    text.append("\r\n").append(name).append(": ").append(value);
  }
  text += "\r\nConnection: close\r\nContent-Length: " + std::to_string(reply.body.size());
  return text + "\r\n\r\n" + reply.body;
}

}  // namespace kiohost
