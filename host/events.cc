#include "events.h"

#include <kioapp/platform.h>

#include <cstdio>

#include "json.h"
#include "printable_text.h"

namespace kiohost {

void Events::Add(const std::string& text) {
  events_.push_back({sys_uptime_seconds(), text});
  if (events_.size() > kMost) {
    events_.pop_front();
  }
  PrintLine(stdout, "event " + text);
}

std::string Events::Json() const {
  std::string json = "[";
  for (const Event& event : events_) {
    json += json.size() > 1 ? ", " : "";
    json += "{\"uptime\": " + std::to_string(event.uptime) +
            ", \"text\": " + JsonString(event.text) + "}";
  }
  return json + "]";
}

}  // namespace kiohost
