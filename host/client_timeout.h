// How long a client may take. Without a limit, a client that sends or reads a byte now and then
// would keep its connection for as long as it likes.
#ifndef HOST_CLIENT_TIMEOUT_H
#define HOST_CLIENT_TIMEOUT_H

#include <chrono>
#include <cstdint>

namespace kiohost {

class ClientTimeout {
 public:
  using Clock = std::chrono::steady_clock;

  static constexpr std::chrono::seconds kIdleTime{10};  // without a request
  static constexpr std::chrono::seconds kHeadTime{10};  // from the first byte of a head to its end
  // Of a body or an answer: without a byte, and in all. To the latter is added the time that the
  // bytes so far take at the slowest rate. A stream has no limit in all.
  static constexpr std::chrono::seconds kSilence{10};
  static constexpr std::chrono::seconds kGrace{10};
  static constexpr int64_t kBytesPerSecond = 1024;

  enum class Phase {
    kIdle,    // no byte of a request came since the connection began, or since the last answer
    kHead,    // the first byte of a head has come
    kBody,    // the head has come
    kWaits,   // the request waits for its turn, or the client for news, for as long as it takes
    kAnswer,  // the answer is being sent
    kStream,  // news are being sent, as they come
  };

  explicit ClientTimeout(Clock::time_point now) { Enter(Phase::kIdle, now); }

  void Enter(Phase phase, Clock::time_point now);
  Phase phase() const { return phase_; }
  Clock::time_point since() const { return since_; }

  // Counts bytes of the body, the answer or the stream that have been transferred.
  void Add(int64_t bytes, Clock::time_point now);

  // When the client has taken too long; never for one that waits.
  Clock::time_point Deadline() const;

 private:
  Phase phase_ = Phase::kIdle;
  Clock::time_point since_;
  Clock::time_point last_;  // when bytes were last transferred
  int64_t bytes_ = 0;
};

}  // namespace kiohost

#endif  // HOST_CLIENT_TIMEOUT_H
