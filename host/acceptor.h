// Takes the connections that come to a listening socket.
#ifndef HOST_ACCEPTOR_H
#define HOST_ACCEPTOR_H

#include <sys/select.h>
#include <sys/socket.h>

#include <chrono>
#include <optional>
#include <utility>

#include "listener.h"

namespace kiohost {

class Acceptor {
 public:
  using Clock = std::chrono::steady_clock;

  // A connection that cannot be taken stays in line. Without a pause the host would do nothing but
  // try again.
  static constexpr std::chrono::milliseconds kPause{250};

  struct Incoming {
    FileDescriptor socket;
    sockaddr_storage address = {};
    socklen_t length = sizeof address;

    const sockaddr* generic() const { return reinterpret_cast<const sockaddr*>(&address); }
  };

  // Takes the socket to accept from. Without one, no connections come.
  void Listen(FileDescriptor listener) { listener_ = std::move(listener); }
  bool listens() const { return listener_.valid(); }

  void AddDescriptor(fd_set* read_set, int* max_fd) const;

  // The end of a pause.
  std::optional<Clock::time_point> Deadline() const { return paused_until_; }

  // Whether a connection may be there to take.
  bool IsReady(const fd_set& read_set, Clock::time_point now);

  // The next connection. When there is nothing to return, `error` says why: 0 means that no
  // connection waits.
  std::optional<Incoming> Next(int* error);

  // Takes nothing for a moment, because of `error`.
  void Pause(int error, Clock::time_point now);

 private:
  FileDescriptor listener_;
  std::optional<Clock::time_point> paused_until_;
  bool is_pause_known_ = false;  // it was printed, and nothing could be taken since
};

}  // namespace kiohost

#endif  // HOST_ACCEPTOR_H
