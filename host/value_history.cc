#include "value_history.h"

#include <algorithm>

namespace kiohost {

void ValueHistory::Note(const std::string& tag, Store* store) {
  if (Find(tag) != nullptr) {
    return;
  }
  // Without the lock: nobody waits while the store is read.
  auto state = std::make_shared<const std::vector<Node>>(store->List());
  const std::lock_guard lock(mutex_);
  if (FindLocked(tag) != nullptr) {
    return;
  }
  if (states_.size() == kMost) {
    states_.pop_front();
  }
  states_.emplace_back(tag, std::move(state));
}

void ValueHistory::NoteApply(const std::string& id, Store* store) {
  if (!id.empty() && !IsEmpty()) {
    Note(id, store);
  }
}

void ValueHistory::Clear() {
  const std::lock_guard lock(mutex_);
  states_.clear();
}

ValueHistory::State ValueHistory::Find(const std::string& tag) const {
  const std::lock_guard lock(mutex_);
  return FindLocked(tag);
}

ValueHistory::State ValueHistory::FindLocked(const std::string& tag) const {
  const auto found = std::find_if(states_.begin(), states_.end(),
                                  [&tag](const auto& state) { return state.first == tag; });
  return found == states_.end() ? nullptr : found->second;
}

bool ValueHistory::IsEmpty() const {
  const std::lock_guard lock(mutex_);
  return states_.empty();
}

}  // namespace kiohost
