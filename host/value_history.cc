#include "value_history.h"

#include <algorithm>

namespace kiohost {

void ValueHistory::Note(const std::string& tag) {
  if (Find(tag) != nullptr) {
    return;
  }
  if (states_.size() == kMost) {
    states_.pop_front();
  }
  states_.emplace_back(tag, store_->List());
}

void ValueHistory::NoteApply(const std::string& id) {
  if (!id.empty() && !states_.empty()) {
    Note(id);
  }
}

const std::vector<Node>* ValueHistory::Find(const std::string& tag) const {
  const auto found = std::find_if(states_.begin(), states_.end(),
                                  [&tag](const auto& state) { return state.first == tag; });
  return found == states_.end() ? nullptr : &found->second;
}

}  // namespace kiohost
