#include "farewells.h"

#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace kiohost {

void Farewells::Take(FileDescriptor socket, Clock::time_point now) {
  if (!socket.valid() || socket.get() >= FD_SETSIZE) {
    return;
  }
  shutdown(socket.get(), SHUT_WR);
  if (farewells_.size() >= kMost) {
    CloseOldest();
  }
  farewells_.push_back({std::move(socket), now + kTime});
}

void Farewells::AddDescriptors(fd_set* read_set, int* max_fd) const {
  for (const Farewell& farewell : farewells_) {
    FD_SET(farewell.socket.get(), read_set);
    *max_fd = std::max(*max_fd, farewell.socket.get());
  }
}

std::optional<Farewells::Clock::time_point> Farewells::Deadline() const {
  return farewells_.empty() ? std::nullopt : std::optional(farewells_.front().end);
}

void Farewells::Run(const fd_set& read_set, Clock::time_point now) {
  std::erase_if(farewells_, [&read_set, now](Farewell& farewell) {
    return farewell.end <= now || (FD_ISSET(farewell.socket.get(), &read_set) && IsOver(&farewell));
  });
}

bool Farewells::CloseOldest() {
  if (farewells_.empty()) {
    return false;
  }
  farewells_.pop_front();
  return true;
}

// Reads, and says whether the client has closed or sends too much.
bool Farewells::IsOver(Farewell* farewell) {
  constexpr size_t kPiece = 16384;
  char piece[kPiece];
  const ssize_t count = recv(farewell->socket.get(), piece, sizeof piece, MSG_DONTWAIT);
  if (count <= 0) {
    return count == 0 || (errno != EAGAIN && errno != EINTR);
  }
  farewell->bytes += static_cast<size_t>(count);
  return farewell->bytes > kMostBytes;
}

}  // namespace kiohost
