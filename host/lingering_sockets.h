// Sockets that the host is done with, kept open until the client has had time to read the last
// answer. When a socket is closed while bytes of the client are unread or still come in, the
// connection is reset and the client may lose the answer.
#ifndef HOST_LINGERING_SOCKETS_H
#define HOST_LINGERING_SOCKETS_H

#include <sys/select.h>

#include <chrono>
#include <cstddef>
#include <deque>
#include <optional>

#include "listener.h"

namespace kiohost {

class LingeringSockets {
 public:
  using Clock = std::chrono::steady_clock;

  static constexpr size_t kMost = 32;  // beyond it the oldest is closed
  static constexpr std::chrono::seconds kTime{2};
  static constexpr size_t kMostBytes = size_t{1024} * 1024;  // read of one client

  // Shuts the sending side down and keeps the socket until the client closes, its time is over or
  // it sends too much.
  void Take(FileDescriptor socket, Clock::time_point now);

  void AddDescriptors(fd_set* read_set, int* max_fd) const;
  std::optional<Clock::time_point> Deadline() const;

  // Reads what has come and closes what is over.
  void Run(const fd_set& read_set, Clock::time_point now);

  // Closes the oldest; returns whether there was one.
  bool CloseOldest();

  void Clear() { lingering_.clear(); }

 private:
  struct LingeringSocket {
    FileDescriptor socket;
    Clock::time_point end;
    size_t bytes = 0;
  };

  static bool IsOver(LingeringSocket* lingering);

  std::deque<LingeringSocket> lingering_;  // the oldest first
};

}  // namespace kiohost

#endif  // HOST_LINGERING_SOCKETS_H
