// What has happened. GET /events tells programs of it, GET /device tells people.
#ifndef HOST_EVENTS_H
#define HOST_EVENTS_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "json.h"

namespace kiohost {

enum class EventKind {
  kApplied,
  kRefused,
  kCommitted,
  kActionStarted,
  kActionEnded,
  kChannel,
  kFirmware,
  kLogin,
  kLogout,
  kLapse,
  kConfirmArmed,
  kConfirmed,
  kGoneBack,
};

// "action-started" and the like.
const char* KindWord(EventKind kind);

struct Event {
  EventKind kind;
  Json about = Json::object();  // what it concerns; nothing secret
  std::string text = {};        // for a person; empty: only programs are told
};

// Any thread may add and read events.
class Events {
 public:
  static constexpr size_t kMost = 200;          // older ones are forgotten,
  static constexpr size_t kMostForPeople = 50;  // but for the last ones with a text

  // An event that has come about. They are numbered from 1.
  struct Happened {
    uint64_t number;
    long uptime;
    Event event;
  };
  using State = std::deque<Happened>;
  State Save() const;
  void Restore(State state);

  // Adds an event, and prints its text in its printable form.
  void Add(Event event);

  // The events for a person, the oldest first.
  Json AsJson() const;

  // The number of the last one, 0 before the first; and of the oldest that `Find` knows.
  uint64_t last() const;
  uint64_t oldest() const;

  // One of the last kMost.
  std::optional<Happened> Find(uint64_t number) const;

  // What is called after each event, in the thread that adds it. To be set before the first one.
  void set_listener(std::function<void()> listener) { listener_ = std::move(listener); }

 private:
  void ForgetOld();

  std::function<void()> listener_;
  mutable std::mutex mutex_;
  uint64_t last_ = 0;
  std::deque<Happened> events_;  // the last kMost, and before them older ones with a text
};

}  // namespace kiohost

#endif  // HOST_EVENTS_H
