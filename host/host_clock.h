// The time of the host. It is the system's until the host makes it its own to have it moved.
#ifndef HOST_HOST_CLOCK_H
#define HOST_HOST_CLOCK_H

#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <optional>

#include "listener.h"

namespace kiohost {

// Any thread may use it.
class HostClock {
 public:
  // Moments of the host. They only go on, whatever is done to the clock.
  using Time = std::chrono::steady_clock::time_point;

  static constexpr double kMostRate = 1000;

  Time Now() const;

  // The seconds since boot that the host, its clients and the library see. They may be set back.
  long Uptime() const;

  // The same without the setting back: for whatever is to end some seconds after it began.
  long SteadySeconds() const;

  // The moment at which `SteadySeconds` comes to a number.
  Time MomentOf(long steady_seconds) const;

  // From now on the clock may be moved. Fails when the system has no descriptor left.
  bool Own();
  bool is_own() const { return is_own_; }

  // How fast it goes: 0 is not at all, 1 is as the system's.
  double rate() const;
  void SetRate(double rate);

  // Moves the clock on to a moment. It never goes back.
  void MoveTo(Time time);

  // Has the uptime show another number, without any time passing.
  void SetUptime(long seconds);

  // The moment up to which the clock is wanted to go on. It is noted when an advance is asked for,
  // so that who waits for a moment can tell that it may come now, and done by the thread of the
  // library.
  void Want(std::chrono::nanoseconds more);
  Time wanted() const;

  // The real time until a moment: nothing when the clock stands still before it.
  std::optional<std::chrono::milliseconds> RealTimeUntil(Time time) const;
  // The same for a wait in milliseconds that ends earlier at a limit.
  long MillisecondsUntil(Time time, long limit) const;

  // Readable when the clock was moved or set since the last `TakeNews`. Negative until it is the
  // host's own.
  int news_descriptor() const { return news_.get(); }
  void TakeNews();

  // The alarm of the process, as alarm(2) sets it. Returns the seconds that were left of the one
  // before.
  unsigned int SetAlarm(unsigned int seconds);
  std::optional<Time> alarm() const;
  // Sends the signal when the alarm is due.
  void RingWhenDue();

  // Moments that somebody waits for. An advance stops at each.
  class Stop {
   public:
    Stop(HostClock* clock, Time time);
    ~Stop();
    Stop(const Stop&) = delete;
    Stop& operator=(const Stop&) = delete;

   private:
    HostClock* clock_;
    std::multimap<Time, int>::iterator place_;
  };
  // The first of them that has not come; the alarm counts as one.
  std::optional<Time> NextStop() const;

 private:
  Time NowLocked() const;
  void Tell();

  std::atomic<bool> is_own_ = false;
  mutable std::mutex mutex_;
  double rate_ = 1;
  Time system_base_;  // the system's moment at which the clock showed `own_base_`
  Time own_base_;
  Time boot_;  // the moment at which the uptime would be 0 if it had not been set
  std::chrono::seconds uptime_shift_{0};
  Time wanted_;
  std::optional<Time> alarm_;
  std::multimap<Time, int> stops_;
  FileDescriptor news_;
};

// The library knows the time by functions without a context argument.
HostClock& TheClock();

}  // namespace kiohost

#endif  // HOST_HOST_CLOCK_H
