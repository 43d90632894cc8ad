// Asks the library once a second whether a radio has moved to another channel.
#ifndef HOST_CHANNEL_WATCH_H
#define HOST_CHANNEL_WATCH_H

#include <array>
#include <string>

#include "events.h"
#include "host_clock.h"
#include "store.h"

namespace kiohost {

class ChannelWatch {
 public:
  ChannelWatch(Store* store, Events* events) : store_(store), events_(events) {}

  // The time until the next check.
  long MillisecondsToWait() const;

  // Asks the library, when it is time, and notes which radios have moved.
  void CheckWhenDue();

  // The channels of the radios, as last noted.
  using Channels = std::array<std::string, 2>;
  const Channels& channels() const { return channels_; }
  void Restore(const Channels& channels) { channels_ = channels; }

 private:
  void MoveRadiosByRule();
  void NoteMoves();

  Store* store_;
  Events* events_;
  HostClock::Time next_ = TheClock().Now();
  Channels channels_;
};

}  // namespace kiohost

#endif  // HOST_CHANNEL_WATCH_H
