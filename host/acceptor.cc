#include "acceptor.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include "printable_text.h"

namespace kiohost {

void Acceptor::AddDescriptor(fd_set* read_set, int* max_fd) const {
  if (listener_.valid() && !paused_until_) {
    FD_SET(listener_.get(), read_set);
    *max_fd = std::max(*max_fd, listener_.get());
  }
}

bool Acceptor::IsReady(const fd_set& read_set, Clock::time_point now) {
  if (paused_until_ && *paused_until_ <= now) {
    paused_until_.reset();  // the next wait asks for the socket again
  }
  return listener_.valid() && FD_ISSET(listener_.get(), &read_set);
}

std::optional<Acceptor::Incoming> Acceptor::Next(int* error) {
  Incoming incoming;
  // The resync scripts must not inherit the socket: they may outlive the connection.
  const int socket = accept4(listener_.get(), reinterpret_cast<sockaddr*>(&incoming.address),
                             &incoming.length, SOCK_CLOEXEC | SOCK_NONBLOCK);
  if (socket < 0) {
    // A connection that broke before it was taken does not count.
    const bool is_none = errno == EAGAIN || errno == EINTR || errno == ECONNABORTED;
    *error = is_none ? 0 : errno;
    return std::nullopt;
  }
  incoming.socket = FileDescriptor(socket);
  is_pause_known_ = false;
  return incoming;
}

void Acceptor::Pause(int error, Clock::time_point now) {
  paused_until_ = now + kPause;
  if (!is_pause_known_) {
    PrintError(std::string("no connection can be taken for now: ") + std::strerror(error));
  }
  is_pause_known_ = true;
}

}  // namespace kiohost
