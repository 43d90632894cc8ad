#include "connection.h"

#include <linux/sockios.h>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <atomic>
#include <utility>

#include "peer_address.h"

namespace kiohost {
namespace {

int SocketOf(MHD_Connection* handle) {
  return MHD_get_connection_info(handle, MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd;
}

std::string AddressOf(MHD_Connection* handle) {
  return AddressText(
      MHD_get_connection_info(handle, MHD_CONNECTION_INFO_CLIENT_ADDRESS)->client_addr);
}

std::atomic<unsigned long> g_connections = 0;

}  // namespace

unsigned long Connection::Count() { return g_connections; }

Connection::Connection(MHD_Connection* handle, ClientTimeout::Clock::time_point now)
    : handle_(handle),
      number_(++g_connections),
      socket_(SocketOf(handle)),
      address_(AddressOf(handle)),
      timeout_(now),
      sent_before_(BytesSent()) {}

Connection* Connection::Of(MHD_Connection* handle) {
  return static_cast<Connection*>(
      MHD_get_connection_info(handle, MHD_CONNECTION_INFO_SOCKET_CONTEXT)->socket_context);
}

void Connection::Begin(const char* target, ClientTimeout::Clock::time_point now) {
  // The phase may be another one: the line may have come together with the request before it.
  if (timeout_.phase() == ClientTimeout::Phase::kIdle) {
    timeout_.Enter(ClientTimeout::Phase::kHead, now);
  }
  request_ = std::make_unique<HttpRequest>(handle_, target);
}

void Connection::BeginAnswer(ClientTimeout::Clock::time_point now) {
  timeout_.Enter(ClientTimeout::Phase::kAnswer, now);
  read_ = BytesRead();
}

void Connection::EndAnswer(ClientTimeout::Clock::time_point now) {
  timeout_.Enter(ClientTimeout::Phase::kIdle, now);
  stream_.reset();
  sent_before_ = BytesSent();
}

void Connection::NoteStream(ClientTimeout::Clock::time_point now, bool is_over) {
  const ClientTimeout::Phase phase = timeout_.phase();
  if (is_over) {
    if (phase != ClientTimeout::Phase::kAnswer) {
      BeginAnswer(now);
    }
  } else if (BytesOnTheWay() == 0) {
    timeout_.Enter(ClientTimeout::Phase::kWaits, now);
  } else if (phase != ClientTimeout::Phase::kStream) {
    timeout_.Enter(ClientTimeout::Phase::kStream, now);
    read_ = BytesRead();
  } else {
    NoteProgress(now);
  }
}

void Connection::NoteProgress(ClientTimeout::Clock::time_point now) {
  const int64_t read = BytesRead();
  timeout_.Add(read - std::exchange(read_, read), now);
}

bool Connection::IsClientGone() const {
  pollfd look = {socket_, POLLRDHUP, 0};
  return poll(&look, 1, 0) == 1;
}

bool Connection::IsUseless() const {
  if (timeout_.phase() == ClientTimeout::Phase::kIdle) {
    char byte = 0;
    return recv(socket_, &byte, 1, MSG_PEEK | MSG_DONTWAIT) <= 0;
  }
  return request_ != nullptr && request_->IsDroppedWithoutClient() && IsClientGone();
}

void Connection::set_closing_reply(Reply reply) {
  // The headers are there when the head was judged.
  const bool knows_form = request_ != nullptr && request_->judged();
  closing_reply_ = knows_form ? request_->InAcceptedForm(std::move(reply)) : std::move(reply);
}

std::optional<Reply> Connection::ClosingReply() const {
  if (closing_reply_) {
    return closing_reply_;
  }
  const bool is_unanswered = timeout_.phase() == ClientTimeout::Phase::kHead ||
                             timeout_.phase() == ClientTimeout::Phase::kBody;
  // The HTTP server may have sent an error of its own.
  if (!is_unanswered || BytesSent() != sent_before_) {
    return std::nullopt;
  }
  return ErrorReply(MHD_HTTP_BAD_REQUEST, "this is no HTTP/1 request");
}

int64_t Connection::BytesRead() const {
  tcp_info info = {};
  socklen_t length = sizeof info;
  return getsockopt(socket_, IPPROTO_TCP, TCP_INFO, &info, &length) == 0
             ? static_cast<int64_t>(info.tcpi_bytes_acked)
             : 0;
}

int64_t Connection::BytesOnTheWay() const {
  int on_the_way = 0;
  ioctl(socket_, SIOCOUTQ, &on_the_way);
  return on_the_way;
}

int64_t Connection::BytesSent() const { return BytesRead() + BytesOnTheWay(); }

}  // namespace kiohost
