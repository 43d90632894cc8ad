// A connection to a client, and the request on it.
#ifndef HOST_CONNECTION_H
#define HOST_CONNECTION_H

#include <microhttpd.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "body_stream.h"
#include "client_timeout.h"
#include "http_request.h"
#include "reply.h"

namespace kiohost {

// A request belongs to its connection and ends with it: the HTTP server tells the beginning of each
// request, but not always the end.
class Connection {
 public:
  Connection(MHD_Connection* handle, ClientTimeout::Clock::time_point now);

  // The connection of a handle that the HTTP server knows.
  static Connection* Of(MHD_Connection* handle);

  MHD_Connection* handle() const { return handle_; }
  unsigned long number() const { return number_; }

  // How many there have been. Their numbers begin with 1.
  static unsigned long Count();

  int socket() const { return socket_; }
  const std::string& address() const { return address_; }
  ClientTimeout& timeout() { return timeout_; }
  const ClientTimeout& timeout() const { return timeout_; }

  // Begins a request whose line has the given target.
  void Begin(const char* target, ClientTimeout::Clock::time_point now);
  HttpRequest* request() const { return request_.get(); }
  std::unique_ptr<HttpRequest> TakeRequest() { return std::move(request_); }

  // The answer to the request begins, and has been sent to its end.
  void BeginAnswer(ClientTimeout::Clock::time_point now);
  void EndAnswer(ClientTimeout::Clock::time_point now);

  // The body of the answer that goes on, null when it has another one. It ends with the answer.
  BodyStream* stream() const { return stream_.get(); }
  void set_stream(std::shared_ptr<BodyStream> stream) { stream_ = std::move(stream); }

  // Notes whether the client reads the stream. Its silence counts only when it has something to
  // read; a stream that is over is an answer like any other.
  void NoteStream(ClientTimeout::Clock::time_point now, bool is_over);

  // Counts what the client has read of the answer.
  void NoteProgress(ClientTimeout::Clock::time_point now);

  // Whether the client has closed its side, or the connection is broken.
  bool IsClientGone() const;

  // Whether it can be closed without loss: it has no byte of a request, or one that will not be run
  // because its client has gone.
  bool IsUseless() const;

  // Notes that the host closes the connection for another reason than an answer.
  void Abandon() { is_abandoned_ = true; }
  bool is_abandoned() const { return is_abandoned_; }

  // The reply that is sent without the HTTP server when the connection is closed; nothing when the
  // client was answered, or has sent nothing.
  std::optional<Reply> ClosingReply() const;
  void set_closing_reply(Reply reply);

 private:
  // Bytes since the connection began: those on the way to the client, those that have reached it,
  // and both. For comparisons only: the system may count a step of the connection as a byte.
  int64_t BytesOnTheWay() const;
  int64_t BytesRead() const;
  int64_t BytesSent() const;

  MHD_Connection* handle_;
  unsigned long number_;
  int socket_;
  std::string address_;
  ClientTimeout timeout_;
  std::unique_ptr<HttpRequest> request_;
  std::shared_ptr<BodyStream> stream_;
  std::optional<Reply> closing_reply_;
  bool is_abandoned_ = false;
  int64_t sent_before_;  // bytes sent before the request
  int64_t read_ = 0;     // bytes read when they were last counted
};

}  // namespace kiohost

#endif  // HOST_CONNECTION_H
