// The library's variables as the host serves them. Requests form a series, in which each sees what
// those before it have set. It ends with a commit, with `Discard` or with an exchange.
#ifndef HOST_VARIABLES_H
#define HOST_VARIABLES_H

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "commit_report.h"
#include "events.h"
#include "exchange.h"
#include "reply.h"
#include "status.h"
#include "store.h"
#include "variable_values.h"

namespace kiohost {

class Variables {
 public:
  // What the library answered.
  struct Answer {
    unsigned int code = 0;
    std::string text;  // the value that was read; or the variable or the element at fault
    // Not ok when the store failed, or the result document could not be written. The store is then
    // unchanged.
    Status store;
    std::string apply_id;  // when the record was applied
  };

  // The actions that the library runs when their variables are read.
  enum class Action { kSurveySites, kVerifyAll, kApplyAll, kCommit, kSetBatch };

  // Longest value of a variable.
  static constexpr size_t kMaxValue = 127;

  // The store must be bound to the library.
  Variables(Store* store, Exchange* exchange, Events* events)
      : store_(store), exchange_(exchange), events_(events) {}

  // Names are taken as the library takes them, document paths included. None of these runs an
  // action: for them an action is no variable.
  Answer Read(const std::string& name, bool wants_path);
  Answer Write(const std::string& name, const std::string& value);
  Answer Validate(const std::string& name, const std::string& value);

  // The answers to reads of all variables of a list (variable_values.h). Unlike a read, this begins
  // no series and leaves no trace in the record.
  VariableValues ReadAll(const std::vector<ListedVariable>& names);

  // Whether the name can be read.
  bool Exists(const std::string& name);

  // Sets a batch, in one transaction: it may hold actions.
  Answer SetBatch(const std::string& batch, char separator);

  // Tells what `SetBatch` would do now, and leaves nothing behind.
  Answer SetBatchDry(const std::string& batch, char separator, Forecast* forecast);

  // The action that a name stands for: the action's own ("CommitRssVars"), a variable's
  // ("rss_Act_CommitRssVars") or a document path; nothing when there is no such action.
  static std::optional<Action> FindAction(const std::string& name);

  // Runs an action, in one transaction.
  Answer RunAction(Action action, const std::string& text);

  // Forgets what was set and not applied: the next request begins a series.
  void Discard() { series_.in_series = false; }

  // The work that is left after `SetBatch` or `RunAction`: the commit, when it was asked for. The
  // library runs it by an alarm. Until then the request keeps its turn, so that no exchange can
  // replace the pending actions.
  AfterReply TakeAfterReply();

  // How far the series of requests is.
  struct Series {
    bool in_series = false;
    bool has_loaded = false;  // the record, once, and not for a dry run or for ReadAll
    unsigned int exchanges_seen = 0;
  };
  const Series& series() const { return series_; }
  void Restore(const Series& series) { series_ = series; }

  // Whether a commit is scheduled that also serves another request for it.
  bool CommitIsScheduled() const;

 private:
  // A call into the library that may change the store.
  struct Call {
    std::function<Answer()> run;
    bool always_writes_result;  // otherwise only when applying is refused
    size_t applies;             // how often it may apply the record
    bool may_change;            // it sets or applies
  };

  // Loads the record for a request, unless it goes on with a series. Returns whether it did.
  bool LoadRecord();
  void BeginSeries();
  Answer InTransaction(const Call& call);
  void TellOf(const Answer& answer);
  void FinishCommit(CommitReport* report);

  Store* store_;
  Exchange* exchange_;
  Events* events_;
  Series series_;
  bool commit_is_due_ = false;
};

}  // namespace kiohost

#endif  // HOST_VARIABLES_H
