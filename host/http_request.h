// What the HTTP server knows of one request while it arrives, waits and is answered.
#ifndef HOST_HTTP_REQUEST_H
#define HOST_HTTP_REQUEST_H

#include <microhttpd.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "fault_points.h"
#include "reply.h"
#include "request_view.h"
#include "router.h"

namespace kiohost {

// A request and the body read so far.
class HttpRequest {
 public:
  // This much of a refused body is read and dropped, so that the client comes to read the answer.
  // Beyond it the connection is cut.
  static constexpr size_t kMaxRefusedBody = size_t{1024} * 1024;

  // `target` is the target of the request line as it was sent.
  HttpRequest(MHD_Connection* connection, const char* target);

  // Judges the request by its head. `version` points into the request line.
  void Judge(const Router& router, const char* method, const char* version);
  bool judged() const { return view_.has_value(); }

  MHD_Connection* connection() const { return connection_; }
  std::chrono::steady_clock::time_point begun() const { return begun_; }

  // For a request that was judged. The route is null when the request is refused.
  const RequestView& view() const { return *view_; }
  const Route* route() const { return route_; }

  // The answer that the head alone decides, a refusal above all; nothing when the request is to be
  // run.
  const std::optional<Reply>& refusal() const { return refusal_; }

  // Whether the refusal must be sent without reading the body. The connection then ends.
  bool RefusedAtOnce() const;

  // Adds a piece of the body. Returns false when the connection is to be cut.
  bool AddBody(std::string_view piece);

  // Judges the whole body. It is called again after the request has waited, and then does nothing.
  void EndBody();

  // Whether the request could be read in two ways.
  bool is_malformed() const { return is_malformed_; }

  // The bytes of the body, of which a refused one is not kept.
  size_t received() const { return received_; }
  // The length that the head declares, 0 without one. A text that is no number counts as too long.
  size_t DeclaredLength() const;

  // What fault rules do with the answer. It is taken once.
  bool has_met_faults() const { return has_met_faults_; }
  void set_wire_fault(FaultPoints::Wire fault) {
    wire_fault_ = fault;
    has_met_faults_ = true;
  }
  FaultPoints::Wire TakeWireFault() { return std::exchange(wire_fault_, {}); }

  // A reply in the form that the client prefers.
  Reply InAcceptedForm(Reply reply) const;

  // Whether the request is dropped when its client has gone: it waits for its turn.
  bool IsDroppedWithoutClient() const {
    return route_ != nullptr && route_->takes_turn && !in_library_ && !reply_;
  }

  // Whether the thread of the library has the request. No other may change or end it then.
  void set_in_library(bool in_library) { in_library_ = in_library; }

  // Whether the request is to run beside the one whose turn it is, if the route allows that.
  enum class Join { kNotAsked, kAsked, kRefused };
  Join join() const { return join_; }
  void set_join(Join join) { join_ = join; }

  // Runs the request, in the thread of the library. Returns whether it leaves work behind.
  bool Handle();

  // The reply of the library's thread, or of the sockets' after a wait.
  const std::optional<Reply>& reply() const { return reply_; }
  void set_reply(Reply reply) { reply_ = std::move(reply); }
  // Keeps the work after the reply, so that it is done whatever becomes of the client.
  void KeepAfterReply();

  AfterReply TakeAfterReply() { return std::exchange(after_reply_, {}); }

 private:
  void Refuse(Reply reply);
  size_t BodyLimit() const;
  Reply TooLarge() const;

  std::optional<Reply> JudgeForm(const char* version) const;

  MHD_Connection* connection_;
  std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
  const char* target_end_;
  RequestTarget target_;
  std::optional<RequestView> view_;
  const Route* route_ = nullptr;
  bool is_malformed_ = false;
  std::optional<Reply> refusal_;
  std::string body_;
  size_t received_ = 0;
  bool ended_ = false;
  bool has_met_faults_ = false;
  FaultPoints::Wire wire_fault_;
  bool in_library_ = false;
  Join join_ = Join::kNotAsked;
  std::optional<Reply> reply_;
  AfterReply after_reply_;
};

}  // namespace kiohost

#endif  // HOST_HTTP_REQUEST_H
