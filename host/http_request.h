// What the HTTP server knows of one request while it arrives, waits and is answered.
#ifndef HOST_HTTP_REQUEST_H
#define HOST_HTTP_REQUEST_H

#include <microhttpd.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "reply.h"
#include "request_view.h"
#include "router.h"

namespace kiohost {

// A request and the body read so far.
class HttpRequest {
 public:
  // The rest of a refused body is read and dropped, so that the client gets round to reading the
  // answer; beyond this the connection is cut.
  static constexpr size_t kMaxRefusedBody = size_t{1024} * 1024;

  // `target` is the target of the request line as it was sent.
  HttpRequest(MHD_Connection* connection, std::string_view target);

  // Judges the request by its head.
  void Judge(const Router& router, std::string_view method, std::string_view path);
  bool judged() const { return view_.has_value(); }

  MHD_Connection* connection() const { return connection_; }

  // Those of a judged request; the route is null when the request is refused.
  const RequestView& view() const { return *view_; }
  const Route* route() const { return route_; }

  // Why the request is refused; nothing as long as it is not.
  const std::optional<Reply>& refusal() const { return refusal_; }

  // Whether the refusal must be sent without reading the body.
  bool RefusedAtOnce() const;

  // Adds a piece of the body. Returns false when the connection is to be cut.
  bool AddBody(std::string_view piece);

  // Judges the whole body. Calls after the first, when the request has waited, do nothing.
  void EndBody();

  void set_follow_up(FollowUp follow_up) { follow_up_ = std::move(follow_up); }
  FollowUp TakeFollowUp() { return std::exchange(follow_up_, {}); }

 private:
  void Refuse(Reply reply);
  size_t BodyLimit() const;
  size_t DeclaredLength() const;
  Reply TooLarge() const;

  MHD_Connection* connection_;
  bool nul_in_path_;
  std::optional<RequestView> view_;
  const Route* route_ = nullptr;
  std::optional<Reply> refusal_;
  std::string body_;
  size_t received_ = 0;
  bool ended_ = false;
  FollowUp follow_up_;
};

}  // namespace kiohost

#endif  // HOST_HTTP_REQUEST_H
