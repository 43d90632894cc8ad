#include "events.h"

#include <cstdio>

#include "printable_text.h"
#include "uptime.h"

namespace kiohost {

void Events::Add(const std::string& text) {
  {
    const std::lock_guard lock(mutex_);
    events_.push_back({UptimeSeconds(), text});
    if (events_.size() > kMost) {
      events_.pop_front();
    }
  }
  PrintLine(stdout, "event " + text);
}

Json Events::AsJson() const {
  const std::lock_guard lock(mutex_);
  Json json = Json::array();
  for (const Event& event : events_) {
    json.push_back({{"uptime", event.uptime}, {"text", event.text}});
  }
  return json;
}

}  // namespace kiohost
