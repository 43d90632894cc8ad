#include "events.h"

#include <kioapp/platform.h>

#include <cstdio>

#include "printable_text.h"

namespace kiohost {

void Events::Add(const std::string& text) {
  events_.push_back({sys_uptime_seconds(), text});
  if (events_.size() > kMost) {
    events_.pop_front();
  }
  PrintLine(stdout, "event " + text);
}

Json Events::AsJson() const {
  Json json = Json::array();
  for (const Event& event : events_) {
    json.push_back({{"uptime", event.uptime}, {"text", event.text}});
  }
  return json;
}

}  // namespace kiohost
