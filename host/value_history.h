// What the store held after the last applies, so that a client can be told what has changed since.
#ifndef HOST_VALUE_HISTORY_H
#define HOST_VALUE_HISTORY_H

#include <cstddef>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "store.h"

namespace kiohost {

class ValueHistory {
 public:
  // Older states are forgotten.
  static constexpr size_t kMost = 16;

  explicit ValueHistory(Store* store) : store_(store) {}

  // Keeps the store as it is now as the state of these settings (settings_tag.h), unless their
  // state is known.
  void Note(const std::string& tag);

  // The same after each apply, with its id; empty for none. Before a client has asked for values
  // for the first time it does nothing: no exchange spends time on what nobody asks for.
  void NoteApply(const std::string& id);

  // The state of these settings; null when it is not known, or not any more.
  const std::vector<Node>* Find(const std::string& tag) const;

 private:
  Store* store_;
  std::deque<std::pair<std::string, std::vector<Node>>> states_;  // the oldest first
};

}  // namespace kiohost

#endif  // HOST_VALUE_HISTORY_H
