// One settings exchange: a document in, a result document out, a commit later.
#ifndef HOST_EXCHANGE_H
#define HOST_EXCHANGE_H

#include <optional>
#include <string>

#include "store.h"

namespace kiohost {

enum class CommitKind {
  kNone,
  kSettings,
  kCloning,
  kFullCloning,  // saves and resyncs the device even when nothing of it changed
};

// The mask of the actions that a commit would run now.
unsigned int PendingActions(CommitKind kind);

class Exchange {
 public:
  struct Outcome {
    enum class Kind {
      kAnswered,  // `text` is the result document
      kNoRoot,    // the library has nothing to say to such a document
      kFailed,    // `text` says what failed; the store is as before
    };
    Kind kind = Kind::kFailed;
    std::string text;
    CommitKind commit = CommitKind::kNone;  // to run once the answer is delivered
    int wait_seconds = 0;                   // what the result document promises
  };

  // The store must be bound to the library. `temp_dir` is the directory that the store names for
  // the result document.
  Exchange(Store* store, const std::string& temp_dir)
      : store_(store), result_file_(temp_dir + "/rssset_result.xml") {}

  // Runs an exchange in one transaction, which is undone unless the document was accepted.
  Outcome Run(std::string document, CommitKind kind);

  // Runs the pending actions and returns their mask.
  unsigned int Commit(CommitKind kind);

  // What the host does itself for the actions of a mask. To be called after the library's part, of
  // which `Commit` is one.
  void FinishCommit(unsigned int mask);

  // How often the record was given to an exchange.
  unsigned int count() const { return count_; }

  // The result document of the last exchange, if there is one.
  std::optional<std::string> LastResult() const;

 private:
  Outcome Failed(const std::string& reason);

  Store* store_;
  std::string result_file_;
  unsigned int count_ = 0;
};

}  // namespace kiohost

#endif  // HOST_EXCHANGE_H
