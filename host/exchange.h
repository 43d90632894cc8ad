// One settings exchange: a document in, a result document out, a commit later.
#ifndef HOST_EXCHANGE_H
#define HOST_EXCHANGE_H

#include <optional>
#include <string>
#include <utility>

#include "apply_log.h"
#include "forecast.h"
#include "result_document.h"
#include "status.h"
#include "store.h"
#include "way_back.h"

namespace kiohost {

enum class CommitKind {
  kNone,
  kSettings,
  kCloning,
  kFullCloning,  // saves and resyncs the device even when nothing of it changed
};

// The mask of the actions that the last applying calls for.
unsigned int AppliedActions(CommitKind kind);

// The mask of the actions that a commit would run now: those or, without any, the ones before them.
unsigned int PendingActions(CommitKind kind);

class Exchange {
 public:
  struct Outcome {
    enum class Kind {
      kAnswered,  // `text` is the result document
      kNoRoot,    // the document has no root, and the library writes no result
      kFailed,    // `text` says what failed; the store is as before
    };
    Kind kind = Kind::kFailed;
    std::string text;
    CommitKind commit = CommitKind::kNone;  // to run once the answer is delivered
    int wait_seconds = 0;                   // what the result document promises
    std::string apply_id;                   // of an accepted document
    int code = 0;                           // of the result document, with its message
    std::string message = {};
  };

  // The store must be bound to the library. `temp_dir` is the directory that the store names for
  // the result document.
  Exchange(Store* store, const std::string& temp_dir)
      : store_(store), applies_(store), way_back_(store), result_file_(temp_dir + kResultFile) {}

  // Runs an exchange in one transaction, which is undone unless the document was accepted. With
  // `confirm_within` not 0 the same transaction keeps the way back, for so many seconds.
  Outcome Run(std::string document, CommitKind kind, int confirm_within = 0);

  // Tells what `Run` would do now, and leaves nothing behind. An outcome without `text` has it in
  // the forecast.
  Outcome RunDry(std::string document, CommitKind kind, Forecast* forecast);

  // Runs the pending actions and returns their mask.
  unsigned int Commit(CommitKind kind);

  // The settings that wait for their confirmation, if there are any.
  std::optional<WayBack::Pending> pending() { return way_back_.pending(); }

  // Keeps them for good.
  Status Confirm();

  // Takes them back: the store is as before the exchange. The actions for that are due.
  Status GoBack();

  // Runs actions that are due.
  static void RunActions(unsigned int mask);

  // Notes that the actions of a mask have run, and which of them failed. These and others stay due,
  // for the next start.
  void FinishCommit(unsigned int mask, unsigned int failed);

  // What was applied last.
  ApplyLog* applies() { return &applies_; }

  // What is known of the exchanges so far, beside the record and the store.
  struct State {
    std::optional<std::string> last_result;
    unsigned int count = 0;
    bool has_parsed = false;  // a document, and not for a dry run
  };
  const State& state() const { return state_; }
  void Restore(State state) { state_ = std::move(state); }

  // In a transaction: gives so many seconds more to confirm.
  void ExtendConfirmation(int64_t seconds) { way_back_.Extend(seconds); }

  // How often something else than a variable has used the record or changed the settings.
  unsigned int count() const { return state_.count; }

  // To be called before and after a call that writes a result document. The first removes the last
  // document, so that it is not taken for the new one. The second fails when the document does not
  // hold the result of the record and this waiting time.
  void ExpectResult();
  Status TakeResult(int wait_seconds);

  // The last result document of this process, unless the one that should have followed failed.
  const std::optional<std::string>& last_result() const { return state_.last_result; }

 private:
  Outcome RunInTransaction(std::string* document, CommitKind kind, int confirm_within);

  // Has the library read, verify and apply a document.
  bool Parse(std::string* document, CommitKind kind) const;

  Store* store_;
  ApplyLog applies_;
  WayBack way_back_;
  std::string result_file_;
  State state_;
};

}  // namespace kiohost

#endif  // HOST_EXCHANGE_H
