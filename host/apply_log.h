// What was applied last, and what became of it. It stands in the store, so that a host that was
// killed can tell of it when it is back.
#ifndef HOST_APPLY_LOG_H
#define HOST_APPLY_LOG_H

#include <cstdint>
#include <optional>
#include <string>

#include "store.h"

namespace kiohost {

enum class ApplyOutcome : int64_t {
  kApplied = 1,     // the settings are in the store; not all of their actions have run
  kInForce = 2,     // and their actions have run
  kFailed = 3,      // the script of an action failed; the next start tries it again
  kGoingBack = 4,   // the store is as before; not all of the actions for that have run
  kRolledBack = 5,  // and these actions have run
};

struct Apply {
  std::string id;
  ApplyOutcome outcome = ApplyOutcome::kApplied;
  long uptime = 0;  // when that came about
};

// "in-force" and the like.
const char* OutcomeWord(ApplyOutcome outcome);

class ApplyLog {
 public:
  explicit ApplyLog(Store* store) : store_(store) {}

  std::optional<Apply> Last();

  // Notes a new apply, in the transaction of its settings. Returns its id, which no other has.
  std::string NoteApply();

  // The same for one that changed nothing and so has no transaction. It waits for no disk.
  std::string NoteUnchangedApply();

  // Notes, in a transaction, that the settings of the last apply were taken back.
  void NoteGoingBack() { Note(ApplyOutcome::kGoingBack); }

  // Notes, in a transaction, that a commit has run: which of its actions failed, and which are
  // still due.
  void NoteCommit(unsigned int failed, unsigned int due);

 private:
  void Note(ApplyOutcome outcome);

  Store* store_;
};

}  // namespace kiohost

#endif  // HOST_APPLY_LOG_H
