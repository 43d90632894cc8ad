// What a host does with its store, step by step: the classes of the host, over the disk in memory.
#ifndef TESTS_PROOF_POWER_LOSS_SESSION_H
#define TESTS_PROOF_POWER_LOSS_SESSION_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "../../../host/events.h"
#include "../../../host/exchange.h"
#include "../../../host/store.h"
#include "../../../host/variables.h"

inline constexpr char kStoreFile[] = "/store.db";

// All that the store holds, as one text.
std::string ContentOf(const kiohost::Store::Contents& contents);

class Session {
 public:
  Session();
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  struct Step {
    const char* name;
    // Whether what it changes is on the disk when it returns.
    bool waits;
    // Returns whether it succeeded.
    std::function<bool()> run;
  };
  const std::vector<Step>& steps() const { return steps_; }

  // Null before the first step and behind the last.
  kiohost::Store* store() { return store_.get(); }
  // What the store holds now; empty when there is none.
  std::string Content();
  // Closes the store and opens it once more.
  bool OpenAgain();

 private:
  bool Open();
  void Close();
  bool Fill();
  bool Exchange(const std::string& document, kiohost::CommitKind kind, int confirm_within = 0,
                bool is_refused = false);
  bool FinishCommit();
  bool SetBatch(const std::string& batch);

  const std::string& directory_;
  std::vector<Step> steps_;
  std::unique_ptr<kiohost::Store> store_;
  kiohost::Events events_;
  std::unique_ptr<kiohost::Exchange> exchange_;
  std::unique_ptr<kiohost::Variables> variables_;
  unsigned int committed_ = 0;
};

#endif  // TESTS_PROOF_POWER_LOSS_SESSION_H
