// A scope in which the library may do all that an exchange does, and which leaves nothing of it
// behind: the store, the settings record with its flags, the alarm and the files of the temporary
// directory are afterwards as before. Only the library's log goes on.
#ifndef HOST_DRY_RUN_H
#define HOST_DRY_RUN_H

#include <kioapp/record.h>

#include <array>
#include <vector>

#include "command.h"
#include "node_changes.h"
#include "signals.h"
#include "status.h"
#include "store.h"

namespace kiohost {

class DryRun {
 public:
  // No transaction is open and no alarm is set.
  explicit DryRun(Store* store);
  ~DryRun();
  DryRun(const DryRun&) = delete;
  DryRun& operator=(const DryRun&) = delete;

  // Whether the store can be written, as an exchange would have to.
  const Status& begun() const { return transaction_.begun(); }

  const std::vector<Node>& before() const { return before_; }

  // The nodes as they are now.
  std::vector<Node> Now() { return store_->List(); }

 private:
  Store* store_;
  StoreTransaction transaction_;
  std::vector<Node> before_;
  std::array<char, sizeof(RssXmlData)> record_ = {};
  void (*on_lost_key_)(const char* path, const char* key);
  const AlarmKeeper alarm_keeper_;
  const HeldCommands held_commands_;
};

}  // namespace kiohost

#endif  // HOST_DRY_RUN_H
