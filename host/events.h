// The latest events of the device, for a person to read.
#ifndef HOST_EVENTS_H
#define HOST_EVENTS_H

#include <deque>
#include <mutex>
#include <string>

#include "json.h"

namespace kiohost {

// Any thread may add and read events.
class Events {
 public:
  // Adds an event, and prints it in its printable form.
  void Add(const std::string& text);

  // The events, the oldest first.
  Json AsJson() const;

 private:
  struct Event {
    long uptime;
    std::string text;
  };

  static constexpr size_t kMost = 50;  // older ones are forgotten

  mutable std::mutex mutex_;
  std::deque<Event> events_;
};

}  // namespace kiohost

#endif  // HOST_EVENTS_H
