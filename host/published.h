// What the thread of the library publishes for the reads that the thread of the sockets answers.
#ifndef HOST_PUBLISHED_H
#define HOST_PUBLISHED_H

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "variable_values.h"

namespace kiohost {

// A value that one thread writes and others read.
template <typename Value>
class Published {
 public:
  void Set(Value value) {
    const std::lock_guard lock(mutex_);
    value_ = std::move(value);
  }

  Value Get() const {
    const std::lock_guard lock(mutex_);
    return value_;
  }

 private:
  mutable std::mutex mutex_;
  Value value_ = {};
};

// The values of all variables, and the settings (settings_tag.h) that the store held with them.
struct PublishedVariables {
  VariableValues values;
  std::string settings;
};

struct PublishedState {
  // While the library is at work for long; null when it is not, and can be asked itself.
  Published<std::shared_ptr<const PublishedVariables>> variables;
  // The last result document and the last status of an upgrade, as of the last work that was done.
  Published<std::optional<std::string>> result;
  Published<std::optional<std::string>> firmware;
};

}  // namespace kiohost

#endif  // HOST_PUBLISHED_H
