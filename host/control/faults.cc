#include "control/faults.h"

#include <fnmatch.h>
#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <limits>

#include "journal.h"
#include "nodes.h"
#include "result_document.h"
#include "signals.h"

namespace kiohost {
namespace {

using Kind = FaultKind;

// How soon a wait notices that its rule was removed, or that the clock was moved.
constexpr std::chrono::milliseconds kLook{10};

constexpr int WaitStatus(int exit_status) { return exit_status << 8; }

[[noreturn]] void PowerOff() {
  kill(getpid(), SIGKILL);
  for (;;) {
    pause();
  }
}

}  // namespace

Faults::~Faults() { g_fault_points = nullptr; }

Json Faults::Add(const Json& given, std::string* fault) {
  const FaultAction* const action = CheckFaultRule(given, fault);
  if (action == nullptr) {
    return nullptr;
  }
  const std::lock_guard lock(mutex_);
  if (rules_.size() >= kMost) {
    // The oldest that has ended makes room.
    const auto ended =
        std::find_if(rules_.begin(), rules_.end(), [](const Rule& rule) { return rule.has_ended; });
    if (ended == rules_.end()) {
      *fault = "there are " + std::to_string(kMost) + " rules; delete one first";
      return nullptr;
    }
    rules_.erase(ended);
  }
  Rule rule = {.id = ++last_id_, .action = action, .given = given, .end = {}, .random = {}};
  rule.random.seed(given.value("seed", uint32_t{0}));
  if (action->kind == Kind::kPowerOff && given.value("match", Json::object()).empty()) {
    rule.given["match"] = {{"path", "*"}};
  }
  if (given.contains("for_seconds")) {
    const std::chrono::duration<double> time(given["for_seconds"].get<double>());
    rule.end = TheClock().Now() + std::chrono::round<std::chrono::nanoseconds>(time);
  }
  rules_.push_back(std::move(rule));
  Refresh();
  return AsJson(rules_.back());
}

Json Faults::List() {
  const std::lock_guard lock(mutex_);
  Refresh();
  Json list = Json::array();
  for (const Rule& rule : rules_) {
    list.push_back(AsJson(rule));
  }
  return list;
}

Json Faults::Find(uint64_t id) {
  const std::lock_guard lock(mutex_);
  Refresh();
  const Rule* const rule = FindRule(id);
  return rule == nullptr ? Json() : AsJson(*rule);
}

Json Faults::Remove(uint64_t id) {
  const std::lock_guard lock(mutex_);
  Refresh();
  const Rule* const rule = FindRule(id);
  if (rule == nullptr) {
    return nullptr;
  }
  Json removed = AsJson(*rule);
  std::erase_if(rules_, [id](const Rule& one) { return one.id == id; });
  Refresh();
  return removed;
}

size_t Faults::RemoveAll() {
  const std::lock_guard lock(mutex_);
  const size_t count = rules_.size();
  rules_.clear();
  Refresh();
  return count;
}

Json Faults::AsJson(const Rule& rule) {
  Json json = {{"id", rule.id}};
  json.update(rule.given);
  json["met"] = rule.met;
  json["hits"] = rule.hits;
  json["state"] = rule.has_ended ? "ended" : "active";
  return json;
}

Faults::Rule* Faults::FindRule(uint64_t id) {
  const auto found =
      std::find_if(rules_.begin(), rules_.end(), [id](const Rule& rule) { return rule.id == id; });
  return found == rules_.end() ? nullptr : &*found;
}

bool Faults::Exists(uint64_t id) {
  const std::lock_guard lock(mutex_);
  return FindRule(id) != nullptr;
}

void Faults::Refresh() {
  bool any = false;
  for (Rule& rule : rules_) {
    rule.has_ended = rule.has_ended || (rule.end && TheClock().Now() >= *rule.end);
    any = any || !rule.has_ended;
  }
  g_fault_points = any ? this : nullptr;
}

bool Faults::Fits(const Rule& rule, const Facts& facts) {
  const Json match = rule.given.value("match", Json::object());
  return std::all_of(match.items().begin(), match.items().end(), [&facts](const auto& item) {
    const auto fact = std::find_if(facts.begin(), facts.end(),
                                   [&item](const auto& one) { return one.first == item.key(); });
    return fact != facts.end() &&
           fnmatch(item.value().template get<std::string>().c_str(), fact->second.c_str(),
                   item.key() == "path" ? FNM_CASEFOLD : 0) == 0;
  });
}

// Counts a meeting, and says whether the rule acts.
bool Faults::Acts(Rule* rule) {
  ++rule->met;
  if (rule->met <= rule->given.value("skip", uint64_t{0})) {
    return false;
  }
  // Without a distribution of the library: its numbers may be others elsewhere.
  const double drawn = rule->given.contains("probability")
                           ? static_cast<double>(rule->random()) / std::mt19937::max()
                           : 0;
  if (drawn > rule->given.value("probability", 1.0)) {
    return false;
  }
  ++rule->hits;
  const uint64_t most = rule->action->times == FaultAction::Times::kOnce
                            ? 1
                            : rule->given.value("count", std::numeric_limits<uint64_t>::max());
  rule->has_ended = rule->hits >= most;
  return true;
}

std::optional<Faults::Act> Faults::Meet(const std::vector<FaultKind>& kinds, const Facts& facts) {
  const std::lock_guard lock(mutex_);
  Refresh();
  for (Rule& rule : rules_) {
    const bool counts =
        !rule.has_ended && std::find(kinds.begin(), kinds.end(), rule.action->kind) != kinds.end();
    if (!counts || !Fits(rule, facts) || !Acts(&rule)) {
      continue;
    }
    Json entry = {{"rule", rule.id}, {"action", rule.action->name}};
    for (const auto& [name, text] : facts) {
      entry[name] = text;
    }
    TheJournal().Add("fault", std::move(entry));
    Act act = {rule.id, rule.action->kind, rule.given};
    Refresh();
    return act;
  }
  return std::nullopt;
}

void Faults::HoldUp(uint64_t rule, std::chrono::milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  ChildWait wait;
  while (std::chrono::steady_clock::now() < end && !StopRequested() && Exists(rule)) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    wait.Wait(std::clamp(left, std::chrono::milliseconds(0), kLook).count());
  }
}

// The thread of the library moves the clock. It is here, so it does so as far as the clock is
// wanted.
void Faults::HoldUpOnClock(uint64_t rule, double seconds) {
  const auto end = TheClock().Now() + std::chrono::round<std::chrono::nanoseconds>(
                                          std::chrono::duration<double>(seconds));
  ChildWait wait;
  while (TheClock().Now() < end && !StopRequested() && Exists(rule)) {
    if (TheClock().wanted() >= end) {
      TheClock().MoveTo(end);
      return;
    }
    wait.Wait(kLook.count());
  }
}

// A radio that is away has no node. That it is away stands in the journal once.
bool Faults::IsGone(const std::string& path, bool is_noted) {
  const std::lock_guard lock(mutex_);
  Refresh();
  bool is_gone = false;
  for (Rule& rule : rules_) {
    if (rule.has_ended || rule.action->kind != Kind::kRadioGone) {
      continue;
    }
    const std::string nodes = RadioNodes(rule.given["radio"].get<std::string>());
    if (strncasecmp(path.c_str(), nodes.c_str(), nodes.size()) != 0) {
      continue;
    }
    is_gone = true;
    if (is_noted && rule.hits == 0) {
      TheJournal().Add("fault", {{"rule", rule.id}, {"action", rule.action->name}, {"path", path}});
    }
    rule.hits += is_noted ? 1 : 0;
    rule.met = rule.hits;
  }
  return is_gone;
}

FaultPoints::Read Faults::OnRead(const std::string& path, bool is_noted) {
  if (IsGone(path, is_noted)) {
    return Read::kFindsNothing;
  }
  const std::optional<Act> act =
      is_noted ? Meet({Kind::kStoreFails, Kind::kStoreSlow}, {{"path", path}, {"access", "read"}})
               : std::nullopt;
  if (act && act->kind == Kind::kStoreSlow) {
    HoldUp(act->rule, std::chrono::milliseconds(act->given["ms"].get<int64_t>()));
  }
  return act && act->kind == Kind::kStoreFails ? Read::kFails : Read::kAsEver;
}

bool Faults::OnWrite(const std::string& path) {
  const std::optional<Act> act = Meet({Kind::kStoreFails, Kind::kStoreSlow, Kind::kPowerOff},
                                      {{"path", path}, {"access", "write"}});
  if (act && act->kind == Kind::kPowerOff) {
    PowerOff();
  }
  if (act && act->kind == Kind::kStoreSlow) {
    HoldUp(act->rule, std::chrono::milliseconds(act->given["ms"].get<int64_t>()));
  }
  return act && act->kind == Kind::kStoreFails;
}

FaultPoints::Command Faults::OnCommand(const std::string& command) {
  std::vector<Kind> kinds = {Kind::kCommandFails, Kind::kCommandHangs, Kind::kCommandMissing,
                             Kind::kPowerOff};
  Facts facts = {{"command", command}};
  if (command.ends_with(kResultFile)) {
    kinds.push_back(Kind::kResultUnwritable);
  }
  const std::optional<FirmwareFaults::Download> download = firmware_.Recognise(command);
  if (download) {
    facts.emplace_back("download", download->what);
    FirmwareFaults::AddKinds(*download, &kinds);
  }
  const std::optional<Act> act = Meet(kinds, facts);
  if (!act) {
    return {};
  }
  constexpr int kNotFound = 127;
  switch (act->kind) {
    case Kind::kCommandFails:
      return {WaitStatus(act->given.value("status", 1)), {}};
    case Kind::kCommandHangs:
      HoldUpOnClock(act->rule, act->given["seconds"].get<double>());
      return {};
    case Kind::kCommandMissing:
      return {WaitStatus(kNotFound), {}};
    case Kind::kResultUnwritable:
      return {WaitStatus(1), {}};
    case Kind::kPowerOff:
      PowerOff();
    default:
      return FirmwareFaults::Spoil(*download, act->kind, act->given);
  }
}

std::vector<FaultPoints::RadioMove> Faults::TakeRadioMoves() {
  std::vector<RadioMove> moves;
  while (const std::optional<Act> act = Meet({Kind::kRadioMoves}, {})) {
    moves.push_back({act->given["radio"], act->given["channel"]});
  }
  return moves;
}

FaultPoints::Wire Faults::OnRequest(const Request& request) {
  const std::optional<Act> act =
      Meet({Kind::kDelay, Kind::kDrip, Kind::kCut, Kind::kReset, Kind::kAnswer},
           {{"method", request.method}, {"path", request.path}, {"from", request.from}});
  if (!act) {
    return {};
  }
  const auto number = [&act](const char* name) { return act->given.value(name, int64_t{0}); };
  switch (act->kind) {
    case Kind::kDelay:
      return {Wire::Kind::kDelay, number("ms"), 0};
    case Kind::kDrip:
      return {Wire::Kind::kDrip, number("bytes_per_second"), 0};
    case Kind::kCut:
      return {Wire::Kind::kCut, number("bytes"), 0};
    case Kind::kReset:
      return {Wire::Kind::kReset, 0, 0};
    default:
      return {Wire::Kind::kAnswer, number("status"), act->given.value("retry_after", int64_t{1})};
  }
}

bool Faults::OnConnection(const std::string& from) {
  return Meet({Kind::kRefuse}, {{"from", from}}).has_value();
}

}  // namespace kiohost
