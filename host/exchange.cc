#include "exchange.h"

#include <kioapp/kioapp.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "printable_text.h"

namespace kiohost {
unsigned int PendingActions(CommitKind kind) {
  auto mask = static_cast<unsigned int>(rssXmlData.exeflag);
  if (kind == CommitKind::kFullCloning) {
    mask |= KIOAPP_SYNC_DEVICE | KIOAPP_SYNC_SAVE_TO_FLASH;
  }
  return mask != 0 ? mask : static_cast<unsigned int>(rssXmlData.pre_exeflag);
}

Exchange::Outcome Exchange::Run(std::string document, CommitKind kind) {
  // The library looks for the root in the same way. Without one it writes no result document.
  if (FindXmlKeyContain(document.data(), 0, "root", nullptr) == nullptr) {
    return {Outcome::Kind::kNoRoot, {}, CommitKind::kNone, 0};
  }
  // An old document must not be taken for this exchange's.
  unlink(result_file_.c_str());
  StoreTransaction transaction(store_);
  if (!transaction.begun().ok()) {
    return Failed(transaction.begun().reason());
  }
  ++count_;
  const bool applied = kind == CommitKind::kSettings
                           ? do_RssXml_Parser(document.data()) == 1
                           : do_RssXml_Parser_for_ApCloning(document.data()) == 1;
  const std::optional<std::string> result = LastResult();
  if (!result) {
    return Failed("the library could not write " + result_file_);
  }
  if (!applied) {
    return {Outcome::Kind::kAnswered, *result, CommitKind::kNone, 0};
  }
  const Status committed = transaction.Commit();
  if (!committed.ok()) {
    return Failed(committed.reason());
  }
  return {Outcome::Kind::kAnswered, *result, kind, rssXmlData.exeWaitSec};
}

unsigned int Exchange::Commit(CommitKind kind) {
  const unsigned int mask = PendingActions(kind);
  if (kind == CommitKind::kSettings) {
    do_RssXml_Commit();
  } else {
    do_RssXml_Commit_for_ApCloning(kind == CommitKind::kFullCloning ? 1 : 0);
  }
  FinishCommit(mask);
  return mask;
}

void Exchange::FinishCommit(unsigned int mask) {
  if ((mask & KIOAPP_SYNC_SAVE_TO_FLASH) != 0 && !store_->Checkpoint()) {
    // The settings are safe in the log; the next commit tries again.
    PrintError("the store's log could not be brought into its file");
  }
}

std::optional<std::string> Exchange::LastResult() const {
  std::ifstream stream(result_file_, std::ios::binary);
  std::ostringstream text;
  if (!stream || !(text << stream.rdbuf())) {
    return std::nullopt;
  }
  return text.str();
}

Exchange::Outcome Exchange::Failed(const std::string& reason) {
  // It would tell the app that the settings were applied.
  unlink(result_file_.c_str());
  return {Outcome::Kind::kFailed, reason, CommitKind::kNone, 0};
}

}  // namespace kiohost
