#include "model.h"

#include <algorithm>
#include <cstdlib>

#include "../../e2e/documents.h"

namespace kio::sequences {
namespace {

constexpr long kLoginSeconds = 300;
constexpr long kCommitSeconds = 2;

const std::set<std::string> kTakesTurn = {"document", "batch",    "action",
                                          "confirm",  "withdraw", "firmware"};

}  // namespace

std::string ExpectStatus(const Answer& answer, std::initializer_list<int> statuses) {
  if (answer.lost || std::find(statuses.begin(), statuses.end(), answer.status) != statuses.end()) {
    return {};
  }
  std::string wrong = "status " + std::to_string(answer.status) + " (" + answer.body + "), not";
  for (const int status : statuses) {
    wrong += " " + std::to_string(status);
  }
  return wrong;
}

std::string ExpectBody(const Answer& answer, int status, const std::string& body) {
  const std::string wrong = ExpectStatus(answer, {status});
  return !wrong.empty() || answer.lost || answer.body == body
             ? wrong
             : "the answer is\n" + answer.body + "\nand not\n" + body;
}

bool Model::Waits(const Step& step) const {
  const std::string fault = step.Get("fault");
  return state_.commit_at && kTakesTurn.contains(step.kind) && IsLoggedIn(step.client()) &&
         !fault.starts_with("answer") && step.Get("action") != "CommitRssVars";
}

std::string Model::Take(const Step& step, const Answer& answer) {
  Session& session = SessionOf(step.client());
  if (step.kind == "login") {
    return TakeLogin(step, answer);
  }
  if (!IsLoggedIn(step.client())) {
    return ExpectStatus(answer, {401});
  }
  if (step.Get("fault").starts_with("answer")) {
    return ExpectStatus(answer, {step.Get("fault") == "answer-503" ? 503 : 500});
  }
  session.until = now_ + kLoginSeconds;
  if (Waits(step)) {
    Advance(*state_.commit_at - now_);
  }
  if (step.kind == "logout") {
    session.in = false;
    Told({{"kind", "logout"}, {"client", step.address()}});
    return ExpectStatus(answer, {200});
  }
  if (step.kind == "document") {
    return TakeDocument(step, answer);
  }
  if (step.kind == "put" || step.kind == "validate" || step.kind == "get") {
    return TakeVariable(step, answer);
  }
  if (step.kind == "discard") {
    state_.record.reset();
    return ExpectStatus(answer, {200});
  }
  if (step.kind == "batch") {
    return TakeBatch(step, answer);
  }
  if (step.kind == "action") {
    return TakeAction(step, answer);
  }
  if (step.kind == "confirm" || step.kind == "withdraw") {
    return TakeConfirm(step, answer);
  }
  if (step.kind == "result") {
    return state_.result ? ExpectBody(answer, 200, *state_.result) : ExpectStatus(answer, {404});
  }
  if (step.kind == "values") {
    return TakeValues(answer);
  }
  return step.kind == "firmware" ? TakeFirmware(step, answer) : "no such step: " + step.kind;
}

std::string Model::TakeLogin(const Step& step, const Answer& answer) {
  constexpr long kWindow = 60;
  constexpr size_t kMostWrong = 5;
  Session& session = SessionOf(step.client());
  if (now_ < session.blocked_until) {
    return ExpectStatus(answer, {429});
  }
  if (step.Get("how") != "wrong") {
    session.in = true;
    session.until = now_ + kLoginSeconds;
    session.since_apply = state_.applies;
    Told({{"kind", "login"}, {"client", step.address()}});
    return ExpectStatus(answer, {200});
  }
  while (!session.wrong.empty() && session.wrong.front() + kWindow <= now_) {
    session.wrong.pop_front();
  }
  session.wrong.push_back(now_);
  if (session.wrong.size() == kMostWrong) {
    session.blocked_until = now_ + kWindow;
    session.wrong.clear();
  }
  return ExpectStatus(answer, {401});
}

void Model::Advance(long seconds) {
  const long end = now_ + seconds;
  const auto pass_to = [this](long moment) {
    now_ = moment;
    for (const int client : {1, 2}) {
      Session& session = SessionOf(client);
      if (session.in && session.until <= now_) {
        session.in = false;
        lapsed_.insert("127.0.0." + std::to_string(client));
      }
    }
  };
  while (true) {
    const long commit = state_.commit_at.value_or(end + 1);
    const long deadline = state_.pending ? state_.pending->deadline : end + 1;
    if (std::min(commit, deadline) > end) {
      break;
    }
    pass_to(std::max(now_, std::min(commit, deadline)));
    if (commit <= deadline) {
      state_.commit_at.reset();
      Commit();
    } else {
      GoBack();
    }
  }
  pass_to(end);
}

void Model::Restart(bool stopped, long now, long passed) {
  if (state_.commit_at) {
    state_.commit_at.reset();
    if (stopped) {
      Commit();
    }
  }
  if (state_.pending) {
    state_.pending->deadline += now - now_ - passed;
  }
  now_ = now;
  returned_ = 0;
  for (Session& session : state_.sessions) {
    session = {};
  }
  lapsed_.clear();
  state_.record.reset();
  state_.result.reset();
  state_.exe_mask = state_.pre_mask = 0;
  state_.masks_known = true;
  state_.saw_document = state_.saw_series = false;
  state_.firmware.reset();
  // What a stopped router has done itself is seen in what it left due.
  actions_.clear();
  events_.clear();
  kept_.reset();
  made_up_ = state_.due != 0;
  if (made_up_) {
    RunActions(state_.due);
    if (state_.last_apply && state_.last_apply->outcome != "in-force" &&
        state_.last_apply->outcome != "rolled-back") {
      NoteApply(state_.last_apply->id, "in-force");
    }
    TellCommit();
  }
}

bool Model::MayReturn() const {
  const auto is_beginning = [](const State& state) { return state.firmware.value_or(0) == 0; };
  return MayKeep() && (is_beginning(*kept_) || kept_->firmware == state_.firmware);
}

void Model::Return() {
  const long passed = now_ - kept_at_;
  state_ = *kept_;
  previous_name_ = kept_name_;
  now_ -= passed;
  returned_ += passed;
  actions_.clear();
  events_.clear();
  lapsed_.clear();
}

void Model::Reset(const Nodes& factory) {
  state_ = State();
  state_.store = factory;
  state_.masks_known = false;
  previous_name_ = "0123";
  actions_.clear();
  events_.clear();
  lapsed_.clear();
}

nlohmann::json Model::Device() const {
  nlohmann::json device = {{"name", state_.store.at("/sys/friendlyname")},
                           {"uptime", now_},
                           {"state", state_.commit_at ? "busy" : "ready"},
                           {"lastApply", nullptr},
                           {"pendingConfirm", nullptr}};
  if (state_.last_apply) {
    device["lastApply"] = {{"id", state_.last_apply->id},
                           {"outcome", state_.last_apply->outcome},
                           {"uptime", state_.last_apply->uptime}};
  }
  if (state_.pending) {
    device["pendingConfirm"] = {{"id", state_.pending->id},
                                {"seconds", state_.pending->seconds},
                                {"secondsLeft", state_.pending->deadline - now_}};
  }
  return device;
}

void Model::TakeMoments(const nlohmann::json& device) {
  const nlohmann::json& apply = device["lastApply"];
  if (made_up_ && apply.is_object() && apply["uptime"] <= now_) {
    state_.last_apply->uptime = apply["uptime"];
  }
  const nlohmann::json& pending = device["pendingConfirm"];
  if (pending.is_object() && state_.pending) {
    const long left = pending["secondsLeft"];
    if (std::abs(now_ + left - state_.pending->deadline) <= 1) {
      state_.pending->deadline = now_ + left;
    }
  }
}

void Model::BeginSeries() {
  if (!state_.saw_series) {
    state_.saw_series = true;
    state_.pre_mask = 0;
  }
  if (!state_.record) {
    state_.record = Settings::OfStore(state_.store);
  }
}

// The library keeps the mask of a commit, and an apply that changes nothing repeats it once.
void Model::NoteMask(unsigned mask) {
  if (state_.exe_mask != 0) {
    state_.pre_mask = state_.exe_mask;
  }
  state_.exe_mask = mask;
  // What is not known any more is what a refused exchange has left.
  state_.masks_known = state_.masks_known || mask != 0;
}

unsigned Model::CommitMask() {
  return state_.exe_mask != 0 ? state_.exe_mask : std::exchange(state_.pre_mask, 0U);
}

void Model::NoteApply(const std::string& id, const std::string& outcome) {
  state_.last_apply = {id, outcome, now_};
  const std::string name =
      outcome == "going-back" || outcome == "rolled-back" ? id + "-rolled-back" : id;
  if (name != state_.settings_name) {
    previous_name_ = std::exchange(state_.settings_name, name);
  }
}

void Model::RunActions(unsigned mask, bool first_script_fails) {
  for (const std::string& name : ActionsOf(mask)) {
    const bool is_script = name == "WanResync" || name == "DeviceResync";
    const bool ok = !(is_script && first_script_fails);
    first_script_fails = first_script_fails && ok;
    actions_.push_back(name);
    Told({{"kind", "action-started"}, {"action", name}});
    Told({{"kind", "action-ended"}, {"action", name}, {"ok", ok}});
    if (ok) {
      state_.due &= ~(name == "WanResync"      ? kWan
                      : name == "DeviceResync" ? kDevice
                      : name == "WlanResync"   ? 4U
                      : name == "Wlan5gResync" ? 8U
                                               : kSave);
    }
  }
}

void Model::Commit(bool first_script_fails) {
  if (!state_.masks_known && state_.exe_mask == 0) {
    unsure_actions_ = true;
  }
  const unsigned mask = CommitMask();
  first_script_fails = first_script_fails && (mask & (kWan | kDevice)) != 0;
  RunActions(mask, first_script_fails);
  // Actions that an earlier apply has left due keep the settings from being in force.
  const std::string outcome = state_.last_apply ? state_.last_apply->outcome : "";
  if ((outcome == "applied" || outcome == "failed") && (first_script_fails || state_.due == 0)) {
    NoteApply(state_.last_apply->id, first_script_fails ? "failed" : "in-force");
  }
  TellCommit();
}

void Model::TellCommit() {
  nlohmann::json told = {{"kind", "committed"}, {"apply", nullptr}, {"outcome", nullptr}};
  if (state_.last_apply) {
    told["apply"] = state_.last_apply->id;
    told["outcome"] = state_.last_apply->outcome;
  }
  Told(told);
}

void Model::GoBack() {
  const Pending pending = *std::exchange(state_.pending, std::nullopt);
  state_.store = pending.before;
  state_.record.reset();
  state_.due = pending.mask;
  Told({{"kind", "gone-back"}, {"apply", pending.id}});
  RunActions(pending.mask);
  NoteApply(pending.id, "rolled-back");
  Told({{"kind", "committed"}, {"apply", pending.id}, {"outcome", "rolled-back"}});
}

}  // namespace kio::sequences
