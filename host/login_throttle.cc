#include "login_throttle.h"

#include <algorithm>
#include <limits>

namespace kiohost {

// When the place may be given to another address. Before that its wrong keys would be forgotten.
long LoginThrottle::Entry::taken_until() const {
  return count == 0 ? blocked_until : std::max(blocked_until, times[count - 1] + kWindowSeconds);
}

const LoginThrottle::Entry* LoginThrottle::Find(std::string_view address) const {
  const auto* entry =
      std::find_if(entries_.begin(), entries_.end(),
                   [address](const Entry& candidate) { return candidate.address == address; });
  return entry == entries_.end() ? nullptr : entry;
}

long LoginThrottle::SecondsBlocked(std::string_view address, long now) const {
  if (const Entry* entry = Find(address)) {
    return std::max(0L, entry->blocked_until - now);
  }
  long until = std::numeric_limits<long>::max();
  for (const Entry& entry : entries_) {
    until = std::min(until, entry.taken_until());
  }
  return std::max(0L, until - now);
}

// The place of the address, or else a free one; null when there is none.
LoginThrottle::Entry* LoginThrottle::PlaceFor(std::string_view address, long now) {
  Entry* free = nullptr;
  for (Entry& entry : entries_) {
    if (entry.address == address) {
      return &entry;
    }
    if (entry.taken_until() <= now) {
      free = &entry;
    }
  }
  if (free != nullptr) {
    *free = Entry();
    free->address = address;
  }
  return free;
}

void LoginThrottle::AddWrongKey(std::string_view address, long now) {
  Entry* entry = PlaceFor(address, now);
  if (entry == nullptr) {
    return;
  }
  // Keeps the times that are still within the window, and adds this one.
  auto* const end = std::remove_if(entry->times.begin(), entry->times.begin() + entry->count,
                                   [now](long time) { return time <= now - kWindowSeconds; });
  entry->count = static_cast<size_t>(end - entry->times.begin());
  entry->times[entry->count++] = now;
  if (entry->count == kMostWrong) {
    entry->blocked_until = now + kBlockSeconds;
    entry->count = 0;
  }
}

void LoginThrottle::Shift(long seconds) {
  for (Entry& entry : entries_) {
    for (long& time : entry.times) {
      time += seconds;
    }
    entry.blocked_until += seconds;
  }
}

void LoginThrottle::Forget(std::string_view address) {
  for (Entry& entry : entries_) {
    if (entry.address == address) {
      entry = Entry();
    }
  }
}

}  // namespace kiohost
