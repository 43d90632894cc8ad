#include "http_request.h"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <limits>

namespace kiohost {

HttpRequest::HttpRequest(MHD_Connection* connection, std::string_view target)
    : connection_(connection),
      nul_in_path_(target.substr(0, target.find('?')).find("%00") != std::string_view::npos) {}

void HttpRequest::Judge(const Router& router, std::string_view method, std::string_view path) {
  view_.emplace(connection_, method, path);
  if (std::optional<Reply> refusal = router.JudgeAtGates(*view_)) {
    Refuse(std::move(*refusal));
    return;
  }
  if (nul_in_path_) {
    // The server gives the path up to there; it may be that of something else.
    Refuse(ErrorReply(MHD_HTTP_BAD_REQUEST, "the path holds a NUL byte"));
    return;
  }
  Reply no_route;
  route_ = router.Find(&*view_, &no_route);
  if (route_ == nullptr) {
    Refuse(std::move(no_route));
  } else if (DeclaredLength() > route_->body.limit) {
    Refuse(TooLarge());
  } else if (route_->check) {
    if (std::optional<Reply> refusal = route_->check(*view_)) {
      Refuse(std::move(*refusal));
    }
  }
}

bool HttpRequest::RefusedAtOnce() const {
  // A client that asks before it sends its body, or that has announced more than will be read.
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
  if (ended_ || refusal_ || route_->body.need == BodyRule::Need::kNone) {
    return;
  }
  ended_ = true;
  const std::string noun = route_->body.noun;
  if (body_.empty() && route_->body.need == BodyRule::Need::kFilled) {
    Refuse(ErrorReply(MHD_HTTP_BAD_REQUEST, "the " + noun + " is missing"));
  } else if (body_.find('\0') != std::string::npos) {
    Refuse(ErrorReply(MHD_HTTP_BAD_REQUEST, "the " + noun + " holds a NUL byte"));
  } else {
    view_->set_body(std::move(body_));
  }
}

void HttpRequest::Refuse(Reply reply) {
  refusal_ = std::move(reply);
  body_.clear();
}

size_t HttpRequest::BodyLimit() const { return route_ == nullptr ? 0 : route_->body.limit; }

// The length that the head declares, 0 without one. What is no number counts as too long.
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
