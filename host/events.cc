#include "events.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "printable_text.h"
#include "uptime.h"

namespace kiohost {
namespace {

bool IsForPeople(const Events::Happened& happened) { return !happened.event.text.empty(); }

}  // namespace

const char* KindWord(EventKind kind) {
  switch (kind) {
    case EventKind::kApplied:
      return "applied";
    case EventKind::kRefused:
      return "refused";
    case EventKind::kCommitted:
      return "committed";
    case EventKind::kActionStarted:
      return "action-started";
    case EventKind::kActionEnded:
      return "action-ended";
    case EventKind::kChannel:
      return "channel";
    case EventKind::kFirmware:
      return "firmware";
    case EventKind::kLogin:
      return "login";
    case EventKind::kLogout:
      return "logout";
    case EventKind::kLapse:
      return "lapse";
    case EventKind::kConfirmArmed:
      return "confirm-armed";
    case EventKind::kConfirmed:
      return "confirmed";
    case EventKind::kGoneBack:
      break;
  }
  return "gone-back";
}

void Events::Add(Event event) {
  const std::string text = event.text;
  {
    const std::lock_guard lock(mutex_);
    events_.push_back({++last_, UptimeSeconds(), std::move(event)});
    ForgetOld();
  }
  if (!text.empty()) {
    PrintLine(stdout, "event " + text);
  }
  if (listener_) {
    listener_();
  }
}

void Events::ForgetOld() {
  // Those from the one on that is looked at.
  size_t left = events_.size();
  auto left_for_people =
      static_cast<size_t>(std::count_if(events_.begin(), events_.end(), IsForPeople));
  std::erase_if(events_, [&left, &left_for_people](const Happened& happened) {
    const bool is_for_people = IsForPeople(happened);
    const bool is_kept = left <= kMost || (is_for_people && left_for_people <= kMostForPeople);
    --left;
    left_for_people -= is_for_people ? 1 : 0;
    return !is_kept;
  });
}

Events::State Events::Save() const {
  const std::lock_guard lock(mutex_);
  return events_;
}

void Events::Restore(State state) {
  const std::lock_guard lock(mutex_);
  // Numbers that were told are not told again: the last of these gets the last number.
  const uint64_t shift = state.empty() ? 0 : last_ - state.back().number;
  for (Happened& happened : state) {
    happened.number += shift;
  }
  events_ = std::move(state);
}

Json Events::AsJson() const {
  const std::lock_guard lock(mutex_);
  auto left = static_cast<size_t>(std::count_if(events_.begin(), events_.end(), IsForPeople));
  Json json = Json::array();
  for (const Happened& happened : events_) {
    if (IsForPeople(happened) && left-- <= kMostForPeople) {
      json.push_back({{"uptime", happened.uptime}, {"text", happened.event.text}});
    }
  }
  return json;
}

uint64_t Events::last() const {
  const std::lock_guard lock(mutex_);
  return last_;
}

uint64_t Events::oldest() const {
  const std::lock_guard lock(mutex_);
  return last_ - std::min(events_.size(), kMost) + 1;
}

std::optional<Events::Happened> Events::Find(uint64_t number) const {
  const std::lock_guard lock(mutex_);
  // The last ones are there without a gap.
  if (number > last_ || last_ - number >= std::min(events_.size(), kMost)) {
    return std::nullopt;
  }
  return events_[events_.size() - 1 - static_cast<size_t>(last_ - number)];
}

}  // namespace kiohost
