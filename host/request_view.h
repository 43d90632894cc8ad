// A request as those see it who judge and answer it.
#ifndef HOST_REQUEST_VIEW_H
#define HOST_REQUEST_VIEW_H

#include <microhttpd.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kiohost {

class RequestView {
 public:
  // `path` is the target without its query, percent-decoded.
  RequestView(MHD_Connection* connection, std::string_view method, std::string_view path)
      : connection_(connection), method_(method), path_(path) {}

  const std::string& method() const { return method_; }
  const std::string& path() const { return path_; }

  // What stands in the path where the pattern of the route has its '*'.
  const std::string& name() const { return name_; }

  // The first header or query parameter of that name; a parameter without a value is empty.
  std::optional<std::string_view> Header(const char* name) const;
  std::optional<std::string_view> Argument(const char* name) const;

  // The numeric addresses at the two ends of the connection (peer_address.h), from the socket and
  // never from a header; empty when they are not known.
  std::string peer_address() const;
  std::string local_address() const;

  // The body; empty until it was read to its end.
  const std::string& body() const { return body_; }

  void set_name(std::string_view name) { name_ = name; }
  void set_body(std::string body) { body_ = std::move(body); }

 private:
  std::optional<std::string_view> Lookup(MHD_ValueKind kind, const char* name) const;

  MHD_Connection* connection_;
  std::string method_;
  std::string path_;
  std::string name_;
  std::string body_;
};

// A parameter that says yes or no by 1 or 0; nothing when it says anything else. No when absent.
std::optional<bool> FlagArgument(const RequestView& request, const char* name);

}  // namespace kiohost

#endif  // HOST_REQUEST_VIEW_H
