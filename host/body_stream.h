// The body of an answer that goes on for as long as there is something to tell.
#ifndef HOST_BODY_STREAM_H
#define HOST_BODY_STREAM_H

#include <chrono>
#include <cstddef>

namespace kiohost {

// Belongs to the thread of the sockets.
class BodyStream {
 public:
  using Clock = std::chrono::steady_clock;

  enum class State {
    kWaits,     // nothing is to be sent now
    kHasBytes,  // something is
    kOver,      // all was sent, and nothing will follow
    kLost,      // the client has read too slowly: what it should get next is gone
  };

  virtual ~BodyStream() = default;

  // Looks what is to be done now. Called again and again.
  virtual State Look(Clock::time_point now) = 0;

  // Takes bytes to be sent, at most `size`. Returns how many; none when nothing is to be sent.
  virtual size_t Take(char* bytes, size_t size) = 0;

  // Whether all was taken, and nothing will follow.
  virtual bool IsOver() const = 0;

  // Whether it breaks off: the connection is to be closed when what was taken was sent.
  virtual bool IsBroken() const { return false; }

  // Has the stream end with what there is now.
  virtual void End() = 0;
};

}  // namespace kiohost

#endif  // HOST_BODY_STREAM_H
