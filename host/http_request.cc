#include "http_request.h"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

#include "framing.h"

namespace kiohost {

namespace {

MHD_Result AddLine(void* lines, MHD_ValueKind /*kind*/, const char* name, size_t name_length,
                   const char* value, size_t value_length) {
  static_cast<HeaderLines*>(lines)->emplace_back(
      std::string_view(name, name_length),
      value == nullptr ? std::string_view() : std::string_view(value, value_length));
  return MHD_YES;
}

Reply BadRequest(const std::string& reason) { return ErrorReply(MHD_HTTP_BAD_REQUEST, reason); }

}  // namespace

HttpRequest::HttpRequest(MHD_Connection* connection, const char* target)
    : connection_(connection),
      target_end_(target + std::strlen(target)),
      target_(ParseTarget(std::string_view(target, target_end_))) {}

void HttpRequest::Judge(const Router& router, const char* method, const char* version) {
  std::optional<Reply> malformed = JudgeForm(version);
  view_.emplace(connection_, method, std::move(target_));
  if (malformed) {
    is_malformed_ = true;
    Refuse(std::move(*malformed));
    return;
  }
  if (std::optional<Reply> refusal = router.ApplyFilters(*view_)) {
    Refuse(std::move(*refusal));
    return;
  }
  if (view_->target().nul_in_path) {
    Refuse(BadRequest("the path holds a NUL byte"));
    return;
  }
  if (view_->method() == MHD_HTTP_METHOD_OPTIONS) {
    Refuse(router.DescribeMethods(*view_));
    return;
  }
  Reply no_route;
  route_ = router.Find(&*view_, &no_route);
  if (route_ == nullptr) {
    Refuse(std::move(no_route));
  } else if (DeclaredLength() > route_->description.body.limit) {
    Refuse(TooLarge());
  } else if (route_->check) {
    if (std::optional<Reply> refusal = route_->check(*view_)) {
      Refuse(std::move(*refusal));
    }
  }
}

// Refuses requests that the HTTP server lets pass although they are not well-formed. This comes
// before the filters, which could misread such a request.
std::optional<Reply> HttpRequest::JudgeForm(const char* version) const {
  // Unless the version stands behind the target and a blank, the target has a NUL byte in it.
  if (target_end_ + 1 != version) {
    return BadRequest("the request line holds a NUL byte");
  }
  if (target_.too_many_arguments) {
    return BadRequest("a query has at most " + std::to_string(RequestTarget::kMostArguments) +
                      " parameters");
  }
  HeaderLines lines;
  MHD_get_connection_values_n(connection_, MHD_HEADER_KIND, AddLine, &lines);
  const std::optional<std::string> fault = FramingFault(version, lines);
  return fault ? std::optional(BadRequest(*fault)) : std::nullopt;
}

bool HttpRequest::RefusedAtOnce() const {
  if (is_malformed_) {
    return true;  // it is not clear where its body ends
  }
  // The client asks before it sends its body, or has announced more than will be read.
  const std::string expect(view_->Header(MHD_HTTP_HEADER_EXPECT).value_or(""));
  return refusal_ &&
         (strcasecmp(expect.c_str(), "100-continue") == 0 || DeclaredLength() > kMaxRefusedBody);
}

bool HttpRequest::AddBody(std::string_view piece) {
  received_ += piece.size();
  if (!refusal_ && received_ > BodyLimit()) {
    Refuse(TooLarge());
  }
  if (!refusal_) {
    body_.append(piece);
  }
  return received_ <= std::max(BodyLimit(), kMaxRefusedBody);
}

void HttpRequest::EndBody() {
  if (ended_ || refusal_ || route_->description.body.need == BodyRule::Need::kNone) {
    return;
  }
  ended_ = true;
  const std::string noun = route_->description.body.noun;
  if (body_.empty() && route_->description.body.need == BodyRule::Need::kFilled) {
    Refuse(BadRequest("the " + noun + " is missing"));
  } else if (body_.find('\0') != std::string::npos) {
    Refuse(BadRequest("the " + noun + " holds a NUL byte"));
  } else {
    view_->set_body(std::move(body_));
  }
}

Reply HttpRequest::InAcceptedForm(Reply reply) const {
  return kiohost::InAcceptedForm(std::move(reply),
                                 view_->Header(MHD_HTTP_HEADER_ACCEPT).value_or(""));
}

bool HttpRequest::Handle() {
  if (join_ == Join::kAsked && !route_->may_join(*view_)) {
    join_ = Join::kRefused;
    return false;
  }
  reply_ = route_->handle(*view_);
  return static_cast<bool>(reply_->after_reply.run);
}

void HttpRequest::KeepAfterReply() {
  if (reply_) {
    after_reply_ = std::exchange(reply_->after_reply, {});
  }
}

void HttpRequest::Refuse(Reply reply) {
  refusal_ = std::move(reply);
  body_.clear();
}

size_t HttpRequest::BodyLimit() const {
  return route_ == nullptr ? 0 : route_->description.body.limit;
}

size_t HttpRequest::DeclaredLength() const {
  const std::optional<std::string_view> text = view_->Header(MHD_HTTP_HEADER_CONTENT_LENGTH);
  if (!text) {
    return 0;
  }
  size_t length = 0;
  const char* end = text->data() + text->size();
  const auto [stop, error] = std::from_chars(text->data(), end, length);
  return error == std::errc() && stop == end ? length : std::numeric_limits<size_t>::max();
}

Reply HttpRequest::TooLarge() const {
  return ErrorReply(MHD_HTTP_CONTENT_TOO_LARGE,
                    "a document has at most " + std::to_string(BodyLimit()) + " bytes");
}

}  // namespace kiohost
