// What the store held after the last applies, so that a client can be told what has changed since.
#ifndef HOST_VALUE_HISTORY_H
#define HOST_VALUE_HISTORY_H

#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "store.h"

namespace kiohost {

// Any thread may use it, with a connection of its own to the store.
class ValueHistory {
 public:
  using State = std::shared_ptr<const std::vector<Node>>;

  // Older states are forgotten.
  static constexpr size_t kMost = 16;

  // Keeps the store as it is now as the state of these settings (settings_tag.h), unless their
  // state is known.
  void Note(const std::string& tag, Store* store);

  // The same after each apply, with its id; empty for none. Before a client has asked for values
  // for the first time it does nothing: no exchange spends time on what nobody asks for.
  void NoteApply(const std::string& id, Store* store);

  // Forgets all states: the store was changed by somebody else.
  void Clear();

  // The state of these settings; null when it is not known, or not any more.
  State Find(const std::string& tag) const;

 private:
  State FindLocked(const std::string& tag) const;
  bool IsEmpty() const;

  mutable std::mutex mutex_;
  std::deque<std::pair<std::string, State>> states_;  // the oldest first
};

}  // namespace kiohost

#endif  // HOST_VALUE_HISTORY_H
