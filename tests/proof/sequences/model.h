// What the pages promise of a virtual router, as a machine: it is told each step and the answer
// that the router gave, says what is wrong with that answer, and knows the state that must follow.
#ifndef TESTS_PROOF_SEQUENCES_MODEL_H
#define TESTS_PROOF_SEQUENCES_MODEL_H

#include <array>
#include <deque>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "settings.h"
#include "step.h"

namespace kio::sequences {

// What a router did with a step.
struct Answer {
  int status = 0;  // 0: none
  std::string body;
  std::string apply_id;
  int hits = 0;       // how often the fault of the step has acted
  bool died = false;  // the power has gone
  bool lost = false;  // the answer, on the wire
};

struct Session {
  bool in = false;
  long until = 0;          // the second at which it lapses
  long since_apply = 0;    // how many applies there were when it began
  std::deque<long> wrong;  // when its wrong keys came
  long blocked_until = 0;
};

struct Apply {
  std::string id;
  std::string outcome;
  long uptime = 0;
};

struct Pending {
  std::string id;
  long seconds = 0;
  long deadline = 0;
  long number = 0;  // of the apply
  unsigned mask = 0;
  Nodes before;
};

struct State {
  Nodes store;
  std::optional<Settings> record;  // of the series that has begun
  std::optional<std::string> result;
  std::array<Session, 2> sessions;
  std::optional<Apply> last_apply;
  std::string settings_name = "none";
  long applies = 0;
  std::optional<Pending> pending;
  std::optional<long> commit_at;  // the second of a deferred commit
  // The masks that the library keeps from one apply to the next.
  unsigned exe_mask = 0;
  unsigned pre_mask = 0;
  bool masks_known = true;
  bool saw_document = false;
  bool saw_series = false;
  unsigned due = 0;  // what a start makes up for
  std::optional<int> firmware;
  bool image_good = false;
};

class Model {
 public:
  Model(Nodes store, long now) : now_(now) { state_.store = std::move(store); }

  const State& state() const { return state_; }
  long now() const { return now_; }
  bool IsLoggedIn(int client) const {
    const Session& session = state_.sessions.at(static_cast<size_t>(client) - 1);
    return session.in && now_ < session.until;
  }

  // The name of the settings for `if-match=now`, and another one.
  std::string SettingsName(bool now) const { return now ? state_.settings_name : previous_name_; }

  // Whether the router answers only when its deferred commit has run.
  bool Waits(const Step& step) const;

  // Takes a step that a client has taken; returns what is wrong with the answer, empty for nothing.
  std::string Take(const Step& step, const Answer& answer);

  // Time passes.
  void Advance(long seconds);

  // The router has been ended and started; `stopped`: it could finish what was due. It shows
  // another uptime then, and so many seconds have passed.
  void Restart(bool stopped, long now, long passed);
  // The seconds that have passed by the router's own count, which a return does not take back.
  long passed() const { return now_ + returned_; }

  void Keep() { kept_ = state_, kept_at_ = now_, kept_name_ = previous_name_; }
  bool HasKept() const { return kept_.has_value(); }
  // Whether a snapshot may be taken, or the one that is kept may be restored.
  bool MayKeep() const { return !state_.commit_at; }
  bool MayReturn() const;
  void Return();
  void Reset(const Nodes& factory);

  // What GET /device must say, but for `model` and `bootId`.
  nlohmann::json Device() const;
  // Takes over what nobody can know after a restart: when it was, and the second to which a
  // deadline is rounded then.
  void TakeMoments(const nlohmann::json& device);

  // What has come about since the last call: the names of the actions that ran, and the events.
  std::vector<std::string> TakeActions() { return std::exchange(actions_, {}); }
  std::vector<std::string> TakeEvents() { return std::exchange(events_, {}); }
  // Whether the actions of the last step are not known.
  bool TakeUnsureActions() { return std::exchange(unsure_actions_, false); }
  // The clients whose lapse may be told of.
  bool TakeLapse(const std::string& address) { return lapsed_.erase(address) > 0; }

 private:
  Session& SessionOf(int client) { return state_.sessions.at(static_cast<size_t>(client) - 1); }
  std::string TakeLogin(const Step& step, const Answer& answer);
  std::string TakeDocument(const Step& step, const Answer& answer);
  std::string TakeForecast(const Settings& settings, const Verdict& form, const Answer& answer);
  std::string TakeAccepted(const Step& step, const Answer& answer, const Nodes& after,
                           unsigned mask);
  std::string TakeVariable(const Step& step, const Answer& answer);
  std::string TakeBatch(const Step& step, const Answer& answer);
  std::string TakeAction(const Step& step, const Answer& answer);
  std::string TakeValues(const Answer& answer);
  std::string TakeConfirm(const Step& step, const Answer& answer);
  std::string TakeFirmware(const Step& step, const Answer& answer);
  // Whether the step is refused for what other clients have done; checks the answer then.
  bool IsRefusedByGuard(const Step& step, const Answer& answer, std::string* wrong) const;

  void BeginSeries();
  unsigned CommitMask();
  void NoteMask(unsigned mask);
  void NoteApply(const std::string& id, const std::string& outcome);
  void RunActions(unsigned mask, bool first_script_fails = false);
  void Commit(bool first_script_fails = false);
  void TellCommit();
  void GoBack();
  void Told(const nlohmann::json& event) { events_.push_back(event.dump()); }

  State state_;
  long now_;
  long returned_ = 0;
  std::string previous_name_ = "0123";
  std::optional<State> kept_;
  long kept_at_ = 0;
  std::string kept_name_;
  std::vector<std::string> actions_;
  std::vector<std::string> events_;
  std::set<std::string> lapsed_;
  bool unsure_actions_ = false;
  bool made_up_ = false;  // whether the last start had something to make up for
};

// Empty, or that the answer is none of these.
std::string ExpectStatus(const Answer& answer, std::initializer_list<int> statuses);
std::string ExpectBody(const Answer& answer, int status, const std::string& body);

}  // namespace kio::sequences

#endif  // TESTS_PROOF_SEQUENCES_MODEL_H
