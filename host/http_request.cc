#include "http_request.h"

#include <strings.h>

#include <charconv>
#include <cstring>
#include <limits>

namespace kiohost {
namespace {

struct Route {
  std::string_view url;
  const char* method;
  Resource resource;
};

constexpr Route kRoutes[] = {
    {"/settings", "POST", Resource::kSettings},
    {"/result", "GET", Resource::kResult},
    {"/device", "GET", Resource::kDevice},
};

const char* Header(MHD_Connection* connection, const char* name) {
  return MHD_lookup_connection_value(connection, MHD_HEADER_KIND, name);
}

// The length that the head declares, 0 without one. What is no number counts as too long.
size_t DeclaredLength(MHD_Connection* connection) {
  const char* text = Header(connection, MHD_HTTP_HEADER_CONTENT_LENGTH);
  if (text == nullptr) {
    return 0;
  }
  size_t length = 0;
  const auto [end, error] = std::from_chars(text, text + std::strlen(text), length);
  return error == std::errc() && *end == '\0' ? length : std::numeric_limits<size_t>::max();
}

Reply TooLarge() {
  return ErrorReply(MHD_HTTP_CONTENT_TOO_LARGE,
                    "a document has at most " + std::to_string(HttpRequest::kMaxBody) + " bytes");
}

}  // namespace

Reply ErrorReply(unsigned int status, const std::string& reason) {
  Reply reply;
  reply.status = status;
  reply.body = reason + "\n";
  return reply;
}

HttpRequest::HttpRequest(MHD_Connection* connection, std::string_view method, std::string_view url)
    : connection_(connection) {
  for (const Route& route : kRoutes) {
    if (route.url != url) {
      continue;
    }
    resource_ = route.resource;
    if (method != route.method) {
      Reply reply = ErrorReply(MHD_HTTP_METHOD_NOT_ALLOWED,
                               std::string(url) + " takes " + route.method + " only");
      reply.allow = route.method;
      Refuse(std::move(reply));
    } else if (DeclaredLength(connection) > kMaxBody) {
      Refuse(TooLarge());
    } else if (resource_ == Resource::kSettings) {
      ReadMode();
    }
    return;
  }
  Refuse(ErrorReply(MHD_HTTP_NOT_FOUND, "there is only /settings, /result and /device"));
}

void HttpRequest::ReadMode() {
  const std::optional<bool> cloning = Flag("cloning");
  const std::optional<bool> full = Flag("full");
  if (!cloning || !full) {
    Refuse(ErrorReply(MHD_HTTP_BAD_REQUEST, "cloning and full take 0 or 1"));
  } else if (*full && !*cloning) {
    Refuse(ErrorReply(MHD_HTTP_BAD_REQUEST, "full=1 goes with cloning=1 only"));
  } else if (*cloning) {
    kind_ = *full ? CommitKind::kFullCloning : CommitKind::kCloning;
  }
}

std::optional<bool> HttpRequest::Flag(const char* name) {
  const char* value = nullptr;
  size_t length = 0;
  if (MHD_lookup_connection_value_n(connection_, MHD_GET_ARGUMENT_KIND, name, std::strlen(name),
                                    &value, &length) != MHD_YES) {
    return false;
  }
  const std::string_view text =
      value == nullptr ? std::string_view() : std::string_view(value, length);
  if (text != "0" && text != "1") {
    return std::nullopt;
  }
  return text == "1";
}

bool HttpRequest::RefusedAtOnce() const {
  // A client that asks before it sends its body, or that has announced more than will be read.
  const char* expect = Header(connection_, MHD_HTTP_HEADER_EXPECT);
  return refusal_ && ((expect != nullptr && strcasecmp(expect, "100-continue") == 0) ||
                      DeclaredLength(connection_) > kMaxRefusedBody);
}

bool HttpRequest::AddBody(std::string_view piece) {
  received_ += piece.size();
  if (!refusal_ && received_ > kMaxBody) {
    Refuse(TooLarge());
    body_.clear();
  }
  if (!refusal_) {
    body_.append(piece);
  }
  return received_ <= kMaxRefusedBody;
}

void HttpRequest::EndBody() {
  if (refusal_ || resource_ != Resource::kSettings) {
    return;
  }
  if (body_.empty()) {
    Refuse(ErrorReply(MHD_HTTP_BAD_REQUEST, "the settings document is missing"));
  } else if (body_.find('\0') != std::string::npos) {
    Refuse(ErrorReply(MHD_HTTP_BAD_REQUEST, "the settings document holds a NUL byte"));
  }
}

}  // namespace kiohost
