// The connections of the HTTP server: those that come, and those that are closed.
#include <fcntl.h>
#include <sys/socket.h>

#include <algorithm>
#include <string>
#include <utility>

#include "http_response.h"
#include "http_server.h"
#include "peer_address.h"

namespace kiohost {
namespace {

Reply TooSlow(const char* what) {
  return ErrorReply(MHD_HTTP_REQUEST_TIMEOUT, std::string("the ") + what + " came too slowly");
}

// Sends a reply on the socket itself. What the client does not take at once is lost.
void Say(int socket, const Reply& reply) {
  const std::string text = RawResponse(reply);
  [[maybe_unused]] const ssize_t sent =
      send(socket, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
}

}  // namespace

void HttpServer::CutSlowConnections(fd_set* cut, Clock::time_point now) {
  for (const auto& connection : connections_) {
    if (connection->timeout().phase() == ClientTimeout::Phase::kAnswer) {
      connection->NoteProgress(now);
    }
    if (ServeStream(connection.get(), now) && connection->timeout().Deadline() > now) {
      continue;
    }
    ResumeIfSuspended(connection->handle());
    if (connection->timeout().phase() == ClientTimeout::Phase::kHead) {
      connection->set_closing_reply(TooSlow("head of the request"));
    } else if (connection->timeout().phase() == ClientTimeout::Phase::kBody) {
      connection->set_closing_reply(TooSlow("body of the request"));
    }
    connection->Abandon();
    FD_SET(connection->socket(), cut);
  }
}

void HttpServer::Accept(Clock::time_point now) {
  // Not more at once: what these have sent is read first. Then it is known which of them have gone
  // and make room.
  constexpr int kAtOnce = 8;
  for (int i = 0; i < kAtOnce; ++i) {
    int error = 0;
    std::optional<Acceptor::Incoming> incoming = acceptor_.Next(&error);
    if (incoming) {
      Admit(std::move(*incoming), now);
      continue;
    }
    if (error != 0 && !lingering_.CloseOldest() && !CloseUselessConnection(nullptr)) {
      acceptor_.Pause(error, now);
    }
    return;
  }
}

void HttpServer::Admit(Acceptor::Incoming incoming, Clock::time_point now) {
  if (faulty_wire_ != nullptr &&
      FaultyWire::Refuses(incoming.socket.get(), AddressText(incoming.generic()))) {
    return;
  }
  if (!MakeRoom(AddressText(incoming.generic()))) {
    const Reply reply = TryLater(MHD_HTTP_SERVICE_UNAVAILABLE,
                                 "there are too many connections, of this address or in all",
                                 ClientTimeout::kHeadTime.count());
    Say(incoming.socket.get(), reply);
    lingering_.Take(std::move(incoming.socket), now);
    return;
  }
  MHD_add_connection(daemon_.get(), incoming.socket.Release(), incoming.generic(), incoming.length);
}

bool HttpServer::MakeRoom(const std::string& address) {
  while (CountOf(address) >= kMostOfAnAddress) {
    if (!CloseUselessConnection(&address)) {
      return false;
    }
  }
  while (connections_.size() >= kMostConnections) {
    if (!CloseUselessConnection(nullptr)) {
      return false;
    }
  }
  return true;
}

size_t HttpServer::CountOf(const std::string& address) const {
  return static_cast<size_t>(
      std::count_if(connections_.begin(), connections_.end(),
                    [&address](const auto& owned) { return owned->address() == address; }));
}

// Closes the connection that has been useless for the longest time, of one address if it is given.
bool HttpServer::CloseUselessConnection(const std::string* address) {
  Connection* found = nullptr;
  for (const auto& owned : connections_) {
    const bool is_older = found == nullptr || owned->timeout().since() < found->timeout().since();
    if ((address == nullptr || owned->address() == *address) && is_older && owned->IsUseless()) {
      found = owned.get();
    }
  }
  if (found != nullptr) {
    found->Abandon();
    Close(found);
  }
  return found != nullptr;
}

void HttpServer::Close(Connection* connection) {
  ResumeIfSuspended(connection->handle());
  fd_set none;
  FD_ZERO(&none);
  fd_set cut = none;
  FD_SET(connection->socket(), &cut);
  MHD_run_from_select(daemon_.get(), &none, &none, &cut);
}

// Sends what is still to be sent on a connection that the server is about to close.
void HttpServer::Part(Connection* connection) {
  if (std::unique_ptr<HttpRequest> request = connection->TakeRequest()) {
    Finish(std::move(request));
  }
  if (stopping_ || connection->IsClientGone()) {
    return;
  }
  const std::optional<Reply> closing_reply = connection->ClosingReply();
  if (closing_reply) {
    Say(connection->socket(), *closing_reply);
  }
  if (closing_reply || !connection->is_abandoned()) {
    lingering_.Take(FileDescriptor(fcntl(connection->socket(), F_DUPFD_CLOEXEC, 0)), Clock::now());
  }
}

}  // namespace kiohost
