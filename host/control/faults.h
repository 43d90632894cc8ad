// The fault rules of the control port: which there are, and what they do when something meets them.
#ifndef HOST_CONTROL_FAULTS_H
#define HOST_CONTROL_FAULTS_H

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "control/fault_actions.h"
#include "control/firmware_faults.h"
#include "fault_points.h"
#include "host_clock.h"
#include "json.h"

namespace kiohost {

// Any thread may use it.
class Faults : public FaultPoints {
 public:
  static constexpr size_t kMost = 100;  // rules, with those that have ended

  explicit Faults(FirmwareFaults firmware) : firmware_(std::move(firmware)) {}
  ~Faults() override;
  Faults(const Faults&) = delete;
  Faults& operator=(const Faults&) = delete;

  // Adds a rule: what it is then; or null, and what is wrong with it.
  Json Add(const Json& given, std::string* fault);

  // All rules, or one, or null without it.
  Json List();
  Json Find(uint64_t id);

  // Removes a rule, or all of them. Returns what it was, null without it, or how many there were.
  Json Remove(uint64_t id);
  size_t RemoveAll();

  Read OnRead(const std::string& path, bool is_noted) override;
  bool OnWrite(const std::string& path) override;
  bool IsStoreFull() override { return Meet({FaultKind::kStoreFull}, {}).has_value(); }
  bool IsStoreLocked() override { return Meet({FaultKind::kStoreLocked}, {}).has_value(); }
  Command OnCommand(const std::string& command) override;
  std::vector<RadioMove> TakeRadioMoves() override;
  Wire OnRequest(const Request& request) override;
  bool OnConnection(const std::string& from) override;

 private:
  struct Rule {
    uint64_t id;
    const FaultAction* action;
    Json given;
    std::optional<HostClock::Time> end;
    std::mt19937 random;
    uint64_t met = 0;   // how often something fitted it
    uint64_t hits = 0;  // how often it has acted
    bool has_ended = false;
  };
  // What a rule does when it acts.
  struct Act {
    uint64_t rule;
    FaultKind kind;
    Json given;
  };
  // What meets the rules, as the journal tells it.
  using Facts = std::vector<std::pair<const char*, std::string>>;

  static Json AsJson(const Rule& rule);
  static bool Fits(const Rule& rule, const Facts& facts);
  static bool Acts(Rule* rule);

  // The first rule of one of these kinds that fits and acts.
  std::optional<Act> Meet(const std::vector<FaultKind>& kinds, const Facts& facts);
  // Ends the rules whose time is over, and tells the host whether there is one that could act.
  void Refresh();
  Rule* FindRule(uint64_t id);
  bool IsGone(const std::string& path, bool is_noted);
  bool Exists(uint64_t id);

  // Wait in the thread of the library, unless the rule is removed or the host is to stop.
  void HoldUp(uint64_t rule, std::chrono::milliseconds time);
  void HoldUpOnClock(uint64_t rule, double seconds);

  FirmwareFaults firmware_;
  std::mutex mutex_;
  std::vector<Rule> rules_;
  uint64_t last_id_ = 0;
};

}  // namespace kiohost

#endif  // HOST_CONTROL_FAULTS_H
