// Read-only request passed to filters and routes.
#ifndef HOST_REQUEST_VIEW_H
#define HOST_REQUEST_VIEW_H

#include <microhttpd.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "request_target.h"

namespace kiohost {

class RequestView {
 public:
  RequestView(MHD_Connection* connection, std::string_view method, RequestTarget target)
      : connection_(connection), method_(method), target_(std::move(target)) {}

  const std::string& method() const { return method_; }
  const std::string& path() const { return target_.path; }
  const RequestTarget& target() const { return target_; }

  // HEAD counts as GET: it is GET without the body of the answer.
  bool IsGet() const { return method_ == MHD_HTTP_METHOD_GET || method_ == MHD_HTTP_METHOD_HEAD; }

  // The host and port that the request is meant for: those of a target in absolute form, or else
  // the Host header; empty when there is neither.
  std::string_view host() const;

  // The part of the path that the '*' in the pattern of the route stands for.
  const std::string& name() const { return name_; }

  // The first header or query parameter of that name, whose case does not count; a parameter
  // without a value is empty.
  std::optional<std::string_view> Header(const char* name) const;
  std::optional<std::string_view> Argument(const char* name) const;

  // The numeric addresses at the two ends of the connection (peer_address.h), from the socket and
  // never from a header; empty when they are not known.
  std::string peer_address() const;
  std::string local_address() const;

  // The number of the connection (connection.h).
  unsigned long connection_number() const;

  // The body; empty until it was read to its end.
  const std::string& body() const { return body_; }

  void set_name(std::string_view name) { name_ = name; }
  void set_body(std::string body) { body_ = std::move(body); }

 private:
  MHD_Connection* connection_;
  std::string method_;
  RequestTarget target_;
  std::string name_;
  std::string body_;
};

// A parameter that is 1 or 0: true or false. Nothing for any other text, false when it is absent.
std::optional<bool> FlagArgument(const RequestView& request, const char* name);

}  // namespace kiohost

#endif  // HOST_REQUEST_VIEW_H
