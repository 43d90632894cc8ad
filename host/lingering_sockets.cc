#include "lingering_sockets.h"

#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace kiohost {

void LingeringSockets::Take(FileDescriptor socket, Clock::time_point now) {
  if (!socket.valid() || socket.get() >= FD_SETSIZE) {
    return;
  }
  shutdown(socket.get(), SHUT_WR);
  if (lingering_.size() >= kMost) {
    CloseOldest();
  }
  lingering_.push_back({std::move(socket), now + kTime});
}

void LingeringSockets::AddDescriptors(fd_set* read_set, int* max_fd) const {
  for (const LingeringSocket& lingering : lingering_) {
    FD_SET(lingering.socket.get(), read_set);
    *max_fd = std::max(*max_fd, lingering.socket.get());
  }
}

std::optional<LingeringSockets::Clock::time_point> LingeringSockets::Deadline() const {
  return lingering_.empty() ? std::nullopt : std::optional(lingering_.front().end);
}

void LingeringSockets::Run(const fd_set& read_set, Clock::time_point now) {
  std::erase_if(lingering_, [&read_set, now](LingeringSocket& lingering) {
    return lingering.end <= now ||
           (FD_ISSET(lingering.socket.get(), &read_set) && IsOver(&lingering));
  });
}

bool LingeringSockets::CloseOldest() {
  if (lingering_.empty()) {
    return false;
  }
  lingering_.pop_front();
  return true;
}

// Reads what has come. Returns whether the client has closed or sends too much.
bool LingeringSockets::IsOver(LingeringSocket* lingering) {
  constexpr size_t kPiece = 16384;
  char piece[kPiece];
  const ssize_t count = recv(lingering->socket.get(), piece, sizeof piece, MSG_DONTWAIT);
  if (count <= 0) {
    return count == 0 || (errno != EAGAIN && errno != EINTR);
  }
  lingering->bytes += static_cast<size_t>(count);
  return lingering->bytes > kMostBytes;
}

}  // namespace kiohost
