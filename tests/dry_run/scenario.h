// Scenarios of a host: a random device, what clients did, dry runs or none, and what clients do
// then.
#ifndef TESTS_DRY_RUN_SCENARIO_H
#define TESTS_DRY_RUN_SCENARIO_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "../../host/events.h"
#include "../../host/exchange.h"
#include "../../host/store.h"
#include "../../host/variables.h"
#include "../../tools/differential/random.h"

// A host without a port, in a process that has done nothing yet.
class Bench {
 public:
  // The store is open; the directory is there.
  Bench(kiohost::Store* store, const std::string& directory);

  // What a client asks for, with its commit; each adds a line to the transcript.
  void Exchange(const std::string& document, kiohost::CommitKind kind);
  void Batch(const std::string& batch, char separator);
  void Write(const std::string& name, const std::string& value);
  void Read(const std::string& name);
  void Act(kiohost::Variables::Action action);
  void Discard();

  // The same without an effect, and without a line.
  kiohost::Forecast DryExchange(const std::string& document, kiohost::CommitKind kind);
  kiohost::Forecast DryBatch(const std::string& batch, char separator);

  // Adds a line.
  void Note(const std::string& what, const std::string& text);

  // Adds all that is left behind: the store, the record, the commands and the files.
  void NoteState();

  const std::vector<std::string>& transcript() const { return transcript_; }
  kiohost::Store* store() { return store_; }

 private:
  void NoteAnswer(const std::string& what, const kiohost::Variables::Answer& answer);
  void Finish(const kiohost::AfterReply& after_reply);

  kiohost::Store* store_;
  std::string directory_;
  kiohost::Events events_;
  kiohost::Exchange exchange_;
  kiohost::Variables variables_;
  std::vector<std::string> transcript_;
};

// Runs `act` on a bench in a process of its own, so that nothing is left from another one. Returns
// the transcript.
std::vector<std::string> InOwnProcess(const std::function<void(Bench*)>& act);

// The scenario of a seed.
void RunScenario(std::uint64_t seed, bool with_dry_runs, Bench* bench);

#endif  // TESTS_DRY_RUN_SCENARIO_H
