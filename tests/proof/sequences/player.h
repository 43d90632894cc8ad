// Plays a sequence on a kiohost of its own, and compares it with the model after each step.
#ifndef TESTS_PROOF_SEQUENCES_PLAYER_H
#define TESTS_PROOF_SEQUENCES_PLAYER_H

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "../../e2e/event_reader.h"
#include "../../e2e/firmware_server.h"
#include "../../e2e/host_process.h"
#include "../../e2e/http_client.h"
#include "model.h"
#include "step.h"

namespace kio::sequences {

// The first step after which the router and the model differ.
struct Difference {
  size_t step = 0;
  std::string what;
};

// How often each thing came about, over all sequences.
using Counts = std::map<std::string, long>;

class Player {
 public:
  explicit Player(Counts* counts) : counts_(counts) {}

  // The difference, if there is one.
  std::optional<Difference> Play(const Sequence& sequence);

 private:
  std::string Start();
  std::string PlayStep(const Step& step);
  std::string PlayRequest(const Step& step);
  std::string GoOnAfterDeath(const Step& step, const Answer& answer);
  std::string PlayBench(const Step& step);
  std::string Restart(const Step& step);
  std::string StartAgain(bool stopped);

  // The request of a step.
  std::string RequestOf(const Step& step) const;
  Answer Ask(const Step& step);
  HttpResponse Send(const Step& step, const std::string& request) const;
  HttpResponse SendAndWait(const Step& step, const std::string& request);
  // Keeps on asking for the progress of a download until that has ended.
  HttpResponse Fetch(const Step& step) const;

  // Waits until the router has done all that is due; false when it is gone.
  bool Settle();
  nlohmann::json Device() const;
  std::optional<Nodes> Store();
  // What differs between the router and the model now.
  std::string Compare();
  std::string CompareEvents();
  // Goes on behind the event of this id; without one, with what comes next.
  void ForgetEvents(const std::string& last_event);
  void OpenReader();
  // The next event that counts; nothing when none comes, or nobody is there to read it.
  std::optional<std::string> NextEvent();

  Counts* counts_;
  HostProcess host_;
  std::optional<Model> model_;
  Nodes factory_;
  std::string store_text_;  // the last answer, and what it says
  Nodes store_;
  bool after_restart_ = false;
  std::string journal_last_ = "0";
  std::vector<std::string> ran_;
  std::unique_ptr<EventReader> reader_;
  std::string last_event_ = "none";
  std::vector<std::string> expected_events_;
};

}  // namespace kio::sequences

#endif  // TESTS_PROOF_SEQUENCES_PLAYER_H
