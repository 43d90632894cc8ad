#include "variables.h"

#include <kioapp/kioapp.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "actions.h"
#include "dry_run.h"
#include "signals.h"

namespace kiohost {
namespace {

constexpr std::string_view kVariablePrefix = "rss_";
constexpr std::string_view kActionGroup = "Act";
constexpr std::string_view kActionPrefix = "rss_Act_";
using Action = Variables::Action;

struct ActionName {
  Action action;
  std::string_view name;
};

constexpr ActionName kActionNames[] = {{Action::kSurveySites, "SiteSurvey"},
                                       {Action::kVerifyAll, "VerifyAllRssVars"},
                                       {Action::kApplyAll, "ApplyAllRssVars"},
                                       {Action::kCommit, "CommitRssVars"},
                                       {Action::kSetBatch, "SetRssVars"}};

constexpr std::string_view NameOf(Action action) {
  return std::find_if(std::begin(kActionNames), std::end(kActionNames),
                      [action](const ActionName& row) { return row.action == action; })
      ->name;
}

// All actions that applying the record can call for.
constexpr unsigned int kAppliedActions = KIOAPP_SYNC_WAN | KIOAPP_SYNC_WLAN | KIOAPP_SYNC_WLAN_5G |
                                         KIOAPP_SYNC_DEVICE | KIOAPP_SYNC_SAVE_TO_FLASH;

size_t CountOf(std::string_view text, std::string_view word) {
  size_t count = 0;
  for (size_t at = text.find(word); at != text.npos; at = text.find(word, at + word.size())) {
    ++count;
  }
  return count;
}

// A buffer with a value that the library may overwrite.
class ValueBuffer {
 public:
  explicit ValueBuffer(std::string_view text)
      : bytes_(std::max(text.size() + 1, size_t{KIOAPP_VAR_SIZE})) {
    std::copy(text.begin(), text.end(), bytes_.begin());
  }

  char* data() { return bytes_.data(); }
  std::string text() const { return bytes_.data(); }

 private:
  std::vector<char> bytes_;
};

// A variable's name without the prefix, which the library ignores. Empty for a path that is no
// variable's.
std::string PlainName(const std::string& name) {
  if (!name.starts_with('/')) {
    return name.size() < kVariablePrefix.size() ? "" : name.substr(kVariablePrefix.size());
  }
  const char* converted = cvtRss_XmlPathVsVarName(name.c_str(), 0);
  return converted == nullptr ? "" : std::string(converted).substr(kVariablePrefix.size());
}

// Whether a name is in the group of the actions, which the library would run.
bool IsAction(const std::string& name) {
  const std::string plain = PlainName(name);
  return plain.starts_with(kActionGroup) && plain.find('_') != std::string::npos;
}

VariableAnswer Get(const std::string& name, bool wants_path) {
  ValueBuffer value("");
  const int code = get_RssVar(name.c_str(), value.data(), wants_path ? 1 : 0);
  return {static_cast<unsigned int>(code), value.text()};
}

std::string WithIndex(std::string text, const std::string& index) {
  constexpr std::string_view kIndex = "??";
  const size_t at = text.find(kIndex);
  return at == std::string::npos ? text : text.replace(at, kIndex.size(), index);
}

// Reads a variable, or all instances that there are of it.
void AddInstances(const ListedVariable& name, VariableValues* values) {
  constexpr int kMostInstances = 100;
  constexpr int kDecimal = 10;
  const bool is_indexed = WithIndex(name.name, "") != name.name;
  for (int i = 0; i < (is_indexed ? kMostInstances : 1); ++i) {
    const std::string index = std::to_string(i / kDecimal) + std::to_string(i % kDecimal);
    const std::string full = WithIndex(name.name, index);
    const VariableAnswer value = Get(full, false);
    if (is_indexed && value.code != KIOAPP_VAR_DONE) {
      return;
    }
    values->Add(full, WithIndex(name.document_path, index), {value, Get(full, true)});
  }
}

Variables::Answer NoSuchVariable() { return {KIOAPP_VAR_REFUSED, {}, {}, {}}; }

}  // namespace

Variables::Answer Variables::Read(const std::string& name, bool wants_path) {
  if (IsAction(name)) {
    return NoSuchVariable();
  }
  BeginSeries();
  ValueBuffer value("");
  const int code = get_RssVar(name.c_str(), value.data(), wants_path ? 1 : 0);
  return {static_cast<unsigned int>(code), value.text(), {}, {}};
}

VariableValues Variables::ReadAll(const std::vector<ListedVariable>& names) {
  // Byte for byte, with what lies between the members.
  std::vector<char> record(sizeof(RssXmlData));
  std::memcpy(record.data(), &rssXmlData, record.size());
  const int level = std::exchange(daemon_log_level, 0);
  LoadRecord();
  VariableValues values;
  for (const ListedVariable& name : names) {
    AddInstances(name, &values);
  }
  daemon_log_level = level;
  std::memcpy(&rssXmlData, record.data(), record.size());
  return values;
}

Variables::Answer Variables::Write(const std::string& name, const std::string& value) {
  if (IsAction(name)) {
    return NoSuchVariable();
  }
  BeginSeries();
  return {set_RssVar(name.c_str(), ValueBuffer(value).data()), {}, {}, {}};
}

Variables::Answer Variables::Validate(const std::string& name, const std::string& value) {
  if (IsAction(name)) {
    return NoSuchVariable();
  }
  BeginSeries();
  const int code = validate_RssVar(name.c_str(), ValueBuffer(value).data());
  return {static_cast<unsigned int>(code), {}, {}, {}};
}

bool Variables::Exists(const std::string& name) {
  return Read(name, false).code == KIOAPP_VAR_DONE;
}

Variables::Answer Variables::SetBatch(const std::string& batch, char separator) {
  BeginSeries();
  const auto run = [&batch, separator]() -> Answer {
    std::array<char, KIOAPP_VAR_SIZE> fault = {};
    const int code = do_RssVar_Parser(ValueBuffer(batch).data(), separator, fault.data(), 0);
    return {static_cast<unsigned int>(code), fault.data(), {}, {}};
  };
  return InTransaction({run, true, CountOf(batch, NameOf(Action::kApplyAll)), true});
}

Variables::Answer Variables::SetBatchDry(const std::string& batch, char separator,
                                         Forecast* forecast) {
  DryRun dry_run(store_);
  if (!dry_run.begun().ok()) {
    return {0, {}, dry_run.begun(), {}};
  }
  LoadRecord();
  forecast->before = dry_run.before();
  std::array<char, KIOAPP_VAR_SIZE> fault = {};
  // Applying sets it.
  constexpr int kNotApplied = -1;
  rssXmlData.exeWaitSec = kNotApplied;
  forecast->code = do_RssVar_Parser(ValueBuffer(batch).data(), separator, fault.data(), 0);
  forecast->message = fault.data();
  BatchForecast& more = forecast->batch.emplace();
  if (forecast->code == KIOAPP_VAR_DONE) {
    more.applies = rssXmlData.exeWaitSec != kNotApplied;
    more.commits = AlarmState() != Alarm::kNone;
    bool applied = more.applies;
    if (!applied) {
      ValueBuffer element("");
      const std::string name = std::string(kActionPrefix).append(NameOf(Action::kApplyAll));
      const unsigned int code = setget_RssVar(name.c_str(), element.data(), KIOAPP_VAR_READ);
      more.apply_code = static_cast<int>(code);
      more.apply_message = element.text();
      applied = code == KIOAPP_VAR_DONE;
    }
    if (applied) {
      forecast->after = dry_run.Now();
      forecast->actions = PendingActions(CommitKind::kSettings);
      forecast->wait_seconds = forecast->actions == 0 ? 0 : rssXmlData.exeWaitSec;
      return {static_cast<unsigned int>(forecast->code), {}, {}, {}};
    }
  }
  forecast->after = dry_run.before();
  return {static_cast<unsigned int>(forecast->code), fault.data(), {}, {}};
}

std::optional<Action> Variables::FindAction(const std::string& name) {
  std::string bare = name;
  if (IsAction(name)) {
    const std::string plain = PlainName(name);
    bare = plain.substr(plain.find('_') + 1);
  }
  for (const ActionName& row : kActionNames) {
    if (row.name == bare) {
      return row.action;
    }
  }
  return std::nullopt;
}

Variables::Answer Variables::RunAction(Action action, const std::string& text) {
  if (action != Action::kCommit) {
    BeginSeries();
  }
  const auto run = [action, &text]() -> Answer {
    ValueBuffer value(text);
    const std::string name = std::string(kActionPrefix).append(NameOf(action));
    const unsigned int code = setget_RssVar(name.c_str(), value.data(), KIOAPP_VAR_READ);
    return {code, value.text(), {}, {}};
  };
  const bool writes_result = action == Action::kVerifyAll || action == Action::kSetBatch;
  const size_t applies = action == Action::kApplyAll   ? 1
                         : action == Action::kSetBatch ? CountOf(text, NameOf(Action::kApplyAll))
                                                       : 0;
  const bool may_change = action == Action::kApplyAll || action == Action::kSetBatch;
  Answer answer = InTransaction({run, writes_result, applies, may_change});
  if (action == Action::kSurveySites && answer.code == KIOAPP_VAR_DONE) {
    ActionReport(KIOAPP_SYNC_SITE_SURVEY, events_).Finish();
  }
  return answer;
}

AfterReply Variables::TakeAfterReply() {
  if (AlarmState() == Alarm::kNone) {
    return {};
  }
  Discard();
  if (commit_is_due_) {
    return {};  // one commit serves both requests
  }
  commit_is_due_ = true;
  const unsigned int mask = PendingActions(CommitKind::kSettings);
  AfterReply after_reply;
  after_reply.ready = [] { return AlarmState() == Alarm::kNone; };
  after_reply.run = [this, report = std::make_shared<CommitReport>(exchange_, events_, mask)] {
    FinishCommit(report.get());
  };
  after_reply.wait_seconds = mask == 0 ? 0 : rssXmlData.exeWaitSec;
  return after_reply;
}

bool Variables::CommitIsScheduled() const { return commit_is_due_ && AlarmState() == Alarm::kSet; }

bool Variables::LoadRecord() {
  if (series_.in_series && series_.exchanges_seen == exchange_->count()) {
    return false;
  }
  if (!series_.has_loaded) {
    // The library does so when it loads the record for the first time, which may have been for a
    // dry run or for ReadAll.
    rssXmlData.pre_exeflag = 0;
  }
  // The record keeps the mode of the last exchange. In cloning mode the device's own settings would
  // not be applied.
  rssXmlData.apCloningOnly = 0;
  init_RssVar();
  return true;
}

void Variables::BeginSeries() {
  if (LoadRecord()) {
    series_.has_loaded = true;
    series_.in_series = true;
    series_.exchanges_seen = exchange_->count();
  }
}

// Commits what the call wrote to the store if it succeeded.
Variables::Answer Variables::InTransaction(const Call& call) {
  if (call.always_writes_result) {
    exchange_->ExpectResult();
  }
  StoreTransaction transaction(store_);
  if (!transaction.begun().ok()) {
    return {0, {}, transaction.begun(), {}};
  }
  Answer answer = call.run();
  const bool done = answer.code == KIOAPP_VAR_DONE;
  if (call.always_writes_result || (call.applies > 0 && !done)) {
    answer.store = exchange_->TakeResult(0);
  }
  if (answer.store.ok() && done) {
    if (call.applies > 0 && store_->HasChanged()) {
      // The record holds the actions of the last applying only.
      store_->AddDueActions(call.applies == 1 ? AppliedActions(CommitKind::kSettings)
                                              : kAppliedActions);
      answer.apply_id = exchange_->applies()->NoteApply();
    }
    answer.store = transaction.Commit();
  }
  if (answer.store.ok() && call.may_change) {
    TellOf(answer);
  }
  return answer;
}

void Variables::TellOf(const Answer& answer) {
  if (answer.code != KIOAPP_VAR_DONE) {
    events_->Add({EventKind::kRefused, {{"code", answer.code}, {"fault", answer.text}}});
  } else if (!answer.apply_id.empty()) {
    events_->Add({EventKind::kApplied, {{"apply", answer.apply_id}}});
  }
}

void Variables::FinishCommit(CommitReport* report) {
  if (AlarmState() != Alarm::kNone) {
    // The host stops, so the commit is run now and not by the alarm.
    alarm(0);
    do_RssVar_Commit();
  }
  commit_is_due_ = false;
  report->Finish();
}

}  // namespace kiohost
