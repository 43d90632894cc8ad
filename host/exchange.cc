#include "exchange.h"

#include <kioapp/kioapp.h>
#include <unistd.h>

#include <utility>

#include "dry_run.h"
#include "printable_text.h"

namespace kiohost {
unsigned int AppliedActions(CommitKind kind) {
  auto mask = static_cast<unsigned int>(rssXmlData.exeflag);
  if (kind == CommitKind::kFullCloning) {
    mask |= KIOAPP_SYNC_DEVICE | KIOAPP_SYNC_SAVE_TO_FLASH;
  }
  return mask;
}

unsigned int PendingActions(CommitKind kind) {
  const unsigned int mask = AppliedActions(kind);
  return mask != 0 ? mask : static_cast<unsigned int>(rssXmlData.pre_exeflag);
}

Exchange::Outcome Exchange::Run(std::string document, CommitKind kind, int confirm_within) {
  // The library looks for the root in the same way. Without one it writes no result document.
  if (FindXmlKeyContain(document.data(), 0, "root", nullptr) == nullptr) {
    return {Outcome::Kind::kNoRoot, {}, CommitKind::kNone, 0, {}};
  }
  const int pending = rssXmlData.exeflag;
  const int pending_before = rssXmlData.pre_exeflag;
  ExpectResult();
  Outcome outcome = RunInTransaction(&document, kind, confirm_within);
  if (outcome.kind == Outcome::Kind::kFailed) {
    // Otherwise the document would tell the app that the settings were applied, and a later commit
    // would run the actions for settings that are not in the store.
    ExpectResult();
    rssXmlData.exeflag = pending;
    rssXmlData.pre_exeflag = pending_before;
  }
  return outcome;
}

Exchange::Outcome Exchange::RunInTransaction(std::string* document, CommitKind kind,
                                             int confirm_within) {
  StoreTransaction transaction(store_);
  Status status = transaction.begun();
  if (!status.ok()) {
    return {Outcome::Kind::kFailed, status.reason(), CommitKind::kNone, 0, {}};
  }
  const std::vector<Node> before = confirm_within != 0 ? store_->List() : std::vector<Node>();
  const bool applied = Parse(document, kind);
  state_.has_parsed = true;
  ++state_.count;
  const int wait_seconds = applied ? rssXmlData.exeWaitSec : 0;
  status = TakeResult(wait_seconds);
  std::string apply_id;
  if (status.ok() && applied) {
    if (confirm_within != 0) {
      // A survey finds out, and changes nothing that could be taken back.
      way_back_.Keep(before, confirm_within,
                     AppliedActions(kind) & ~unsigned{KIOAPP_SYNC_SITE_SURVEY});
    }
    store_->AddDueActions(AppliedActions(kind));
    if (store_->HasChanged()) {
      apply_id = applies_.NoteApply();
    }
    status = transaction.Commit();
  }
  if (!status.ok()) {
    return {Outcome::Kind::kFailed, status.reason(), CommitKind::kNone, 0, {}};
  }
  if (applied && apply_id.empty()) {
    apply_id = applies_.NoteUnchangedApply();
  }
  return {Outcome::Kind::kAnswered,
          *state_.last_result,
          applied ? kind : CommitKind::kNone,
          wait_seconds,
          std::move(apply_id),
          rssXmlData.setResult,
          rssXmlData.setMsg};
}

bool Exchange::Parse(std::string* document, CommitKind kind) const {
  if (!state_.has_parsed) {
    // The library does so for the first document that it sees, which may have been that of a dry
    // run.
    rssXmlData.pre_exeflag = 0;
  }
  return kind == CommitKind::kSettings ? do_RssXml_Parser(document->data()) == 1
                                       : do_RssXml_Parser_for_ApCloning(document->data()) == 1;
}

Exchange::Outcome Exchange::RunDry(std::string document, CommitKind kind, Forecast* forecast) {
  if (FindXmlKeyContain(document.data(), 0, "root", nullptr) == nullptr) {
    return {Outcome::Kind::kNoRoot, {}, CommitKind::kNone, 0, {}};
  }
  DryRun dry_run(store_);
  if (!dry_run.begun().ok()) {
    return {Outcome::Kind::kFailed, dry_run.begun().reason(), CommitKind::kNone, 0, {}};
  }
  const bool applied = Parse(&document, kind);
  forecast->code = rssXmlData.setResult;
  forecast->message = rssXmlData.setMsg;
  forecast->before = dry_run.before();
  // What a refused document has written is undone.
  forecast->after = applied ? dry_run.Now() : dry_run.before();
  forecast->actions = applied ? PendingActions(kind) : 0;
  forecast->wait_seconds = applied ? rssXmlData.exeWaitSec : 0;
  return {
      Outcome::Kind::kAnswered, {}, applied ? kind : CommitKind::kNone, forecast->wait_seconds, {}};
}

void Exchange::ExpectResult() {
  state_.last_result.reset();
  unlink(result_file_.c_str());
}

Status Exchange::TakeResult(int wait_seconds) {
  const ExchangeResult result = {rssXmlData.setResult, rssXmlData.setMsg, wait_seconds};
  if (!IsWritten(result_file_, result)) {
    state_.last_result.reset();
    return {ExitCode::kDirectory,
            "the result document " + result_file_ + " could not be written in full"};
  }
  state_.last_result = ResultText(result);
  return {};
}

unsigned int Exchange::Commit(CommitKind kind) {
  const unsigned int mask = PendingActions(kind);
  if (kind == CommitKind::kSettings) {
    do_RssXml_Commit();
  } else {
    do_RssXml_Commit_for_ApCloning(kind == CommitKind::kFullCloning ? 1 : 0);
  }
  return mask;
}

void Exchange::FinishCommit(unsigned int mask, unsigned int failed) {
  const bool noted = store_->WriteWithoutWait([this, mask, failed] {
    store_->RemoveDueActions(mask & ~failed);
    applies_.NoteCommit(failed, store_->DueActions());
  });
  if (!noted) {
    PrintError("the store cannot note that actions have run; the next start repeats them");
  }
}

Status Exchange::Confirm() {
  StoreTransaction transaction(store_);
  if (!transaction.begun().ok()) {
    return transaction.begun();
  }
  way_back_.Forget();
  return transaction.Commit();
}

Status Exchange::GoBack() {
  StoreTransaction transaction(store_);
  if (!transaction.begun().ok()) {
    return transaction.begun();
  }
  way_back_.Take();
  applies_.NoteGoingBack();
  Status status = transaction.Commit();
  // What was set by variables and not applied was made for other settings.
  ++state_.count;
  return status;
}

void Exchange::RunActions(unsigned int mask) {
  // The mask is not put into the record: the first exchange would take it for its own.
  exe_ExternalCall(mask);
}

}  // namespace kiohost
