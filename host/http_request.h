// What the HTTP server knows of one request while it arrives, waits and is answered.
#ifndef HOST_HTTP_REQUEST_H
#define HOST_HTTP_REQUEST_H

#include <microhttpd.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "exchange.h"

namespace kiohost {

struct Reply {
  unsigned int status = MHD_HTTP_OK;
  const char* content_type = "text/plain; charset=utf-8";
  std::string body;
  const char* allow = nullptr;  // the methods of the resource, with status 405
};

// A reply of one line that says what is wrong.
Reply ErrorReply(unsigned int status, const std::string& reason);

enum class Resource { kSettings, kResult, kDevice };

// A request and the body read so far.
class HttpRequest {
 public:
  static constexpr size_t kMaxBody = size_t{64} * 1024;
  // The rest of a refused body is read and dropped, so that the client gets round to reading the
  // answer; beyond this the connection is cut.
  static constexpr size_t kMaxRefusedBody = size_t{1024} * 1024;

  // Judges the request by its head.
  HttpRequest(MHD_Connection* connection, std::string_view method, std::string_view url);

  MHD_Connection* connection() const { return connection_; }
  Resource resource() const { return resource_; }
  CommitKind kind() const { return kind_; }

  // Why the request is refused; nothing as long as it is not.
  const std::optional<Reply>& refusal() const { return refusal_; }

  // Whether the refusal must be sent without reading the body.
  bool RefusedAtOnce() const;

  // Adds a piece of the body. Returns false when the connection is to be cut.
  bool AddBody(std::string_view piece);

  // Judges the whole body.
  void EndBody();

  // The whole body, once.
  std::string TakeBody() { return std::move(body_); }

  void set_commit_due(CommitKind kind, int wait_seconds) {
    due_kind_ = kind;
    due_wait_seconds_ = wait_seconds;
  }
  CommitKind due_kind() const { return due_kind_; }
  int due_wait_seconds() const { return due_wait_seconds_; }

 private:
  void Refuse(Reply reply) { refusal_ = std::move(reply); }
  void ReadMode();
  std::optional<bool> Flag(const char* name);

  MHD_Connection* connection_;
  Resource resource_ = Resource::kSettings;
  CommitKind kind_ = CommitKind::kSettings;
  std::optional<Reply> refusal_;
  std::string body_;
  size_t received_ = 0;
  CommitKind due_kind_ = CommitKind::kNone;
  int due_wait_seconds_ = 0;
};

}  // namespace kiohost

#endif  // HOST_HTTP_REQUEST_H
