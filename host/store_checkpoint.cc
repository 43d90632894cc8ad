// Bringing the log of the store into its file, when nobody waits.
#include <chrono>

#include "store.h"

namespace kiohost {
namespace {

// Committed after each checkpoint. The first commit after one begins the log anew and waits for the
// disk once more than others; this one does so instead of an exchange.
constexpr char kBeginLog[] =
    "INSERT INTO state VALUES('checkpoints', 1)"
    " ON CONFLICT(name) DO UPDATE SET number = number + 1";

constexpr auto kRest = std::chrono::seconds(1);
constexpr auto kPause = std::chrono::seconds(10);
constexpr int kLongLog = 1000;  // pages

}  // namespace

bool Store::CheckpointWhenDue(bool quiet) {
  const auto now = std::chrono::steady_clock::now();
  const bool due = (quiet && now >= last_write_ + kRest) || log_pages_ >= kLongLog;
  return log_pages_ == 0 || !due || now < next_checkpoint_ || Checkpoint();
}

bool Store::Checkpoint() {
  // What another program holds is left for later.
  sqlite3_busy_timeout(database_.get(), 0);
  const int code = MoveLog();
  sqlite3_busy_timeout(database_.get(), kBusyMilliseconds);
  if (code == SQLITE_OK) {
    log_pages_ = 0;
    return true;
  }
  next_checkpoint_ = std::chrono::steady_clock::now() + kPause;
  return code == SQLITE_BUSY;
}

// Returns SQLITE_BUSY when a reader or a writer is in the way.
int Store::MoveLog() {
  int in_log = 0;
  int in_file = 0;
  // A passive checkpoint leaves out what a reader still needs.
  const int code = sqlite3_wal_checkpoint_v2(database_.get(), nullptr, SQLITE_CHECKPOINT_PASSIVE,
                                             &in_log, &in_file);
  if (code != SQLITE_OK) {
    return code;
  }
  if (in_file < in_log) {
    return SQLITE_BUSY;
  }
  if (!Execute("PRAGMA synchronous=NORMAL")) {
    return SQLITE_ERROR;
  }
  const int begun = sqlite3_exec(database_.get(), kBeginLog, nullptr, nullptr, nullptr);
  return Execute("PRAGMA synchronous=FULL") ? begun : SQLITE_ERROR;
}

int Store::NoteCommit(void* store, sqlite3* /*database*/, const char* /*name*/, int log_pages) {
  auto* const self = static_cast<Store*>(store);
  self->log_pages_ = log_pages;
  self->last_write_ = std::chrono::steady_clock::now();
  return SQLITE_OK;
}

}  // namespace kiohost
