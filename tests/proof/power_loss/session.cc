#include "session.h"

#include <kioapp/kioapp.h>

#include <utility>

#include "../../../host/profile.h"
#include "../../../host/store_api.h"
#include "../../e2e/documents.h"
#include "../../host/temp_dir.h"

using kiohost::CommitKind;
using kiohost::Store;

std::string ContentOf(const Store::Contents& contents) {
  std::string text;
  for (const kiohost::Node& node : contents.nodes) {
    text += node.path + " = " + node.text + "\n";
  }
  for (const auto& [name, number] : contents.numbers) {
    text += name + ": " + std::to_string(number) + "\n";
  }
  for (const auto& [path, old] : contents.old_texts) {
    text += "before: " + path + (old ? " = " + *old : "") + "\n";
  }
  return text;
}

namespace {

// One for all sessions: the store names it.
const std::string& Directory() {
  static const TempDir directory;
  return directory.path();
}

}  // namespace

Session::Session() : directory_(Directory()) {
  const std::string factory = FactoryDocument();
  const std::string attic =
      WithIn(With(factory, "DeviceName", "Attic"), "Wireless2.4", "AccessControl", AccessRules(40));
  const std::string loft =
      WithIn(With(factory, "DeviceName", "Loft"), "Wireless2.4", "AccessControl", AccessRules(3));
  const std::string refused = With(attic, "DeviceName", std::string(40, 'x'));
  const std::string uplink = With(loft, "UpLinkConnection", StaticUplink("192.0.2.77"));
  steps_ = {
      {"create", true, [this] { return Open(); }},
      {"factory settings", true, [this] { return Fill(); }},
      {"exchange", true, [this, attic] { return Exchange(attic, CommitKind::kSettings); }},
      {"commit", false, [this] { return FinishCommit(); }},
      {"exchange refused", false,
       [this, refused] { return Exchange(refused, CommitKind::kSettings, 0, true); }},
      {"checkpoint", true, [this] { return store_->Checkpoint(); }},
      {"exchange behind a checkpoint", true,
       [this, loft] { return Exchange(loft, CommitKind::kSettings); }},
      {"its commit", false, [this] { return FinishCommit(); }},
      {"exchange to be confirmed", true,
       [this, uplink] { return Exchange(uplink, CommitKind::kSettings, 60); }},
      {"its commit", false, [this] { return FinishCommit(); }},
      {"way back", true, [this] { return exchange_->GoBack().ok(); }},
      {"exchange that is confirmed", true,
       [this, uplink] { return Exchange(uplink, CommitKind::kSettings, 60); }},
      {"confirmation", true, [this] { return exchange_->Confirm().ok(); }},
      {"cloning", true, [this, attic] { return Exchange(attic, CommitKind::kFullCloning); }},
      {"its commit", false, [this] { return FinishCommit(); }},
      {"exchange that changes nothing", false,
       [this, attic] { return Exchange(attic, CommitKind::kSettings); }},
      {"batch", true,
       [this] {
         return SetBatch("rss_DeviceName=Sofa&rss_Wl5_WirelessName=Loft&rss_Act_ApplyAllRssVars=");
       }},
      {"node", true, [this] { return store_->Set("/sys/friendlyname", "Den"); }},
      {"close", true,
       [this] {
         Close();
         return true;
       }},
      {"open", true, [this] { return Open(); }},
      {"exchange after a start", true,
       [this, factory] { return Exchange(factory, CommitKind::kSettings); }},
  };
}

Session::~Session() { Close(); }

std::string Session::Content() {
  return store_ == nullptr ? std::string() : ContentOf(store_->Read());
}

bool Session::OpenAgain() {
  Close();
  return Open();
}

bool Session::Open() {
  auto store = std::make_unique<Store>();
  if (!store->Open(kStoreFile, Store::Mode::kCreate).ok()) {
    return false;
  }
  store_ = std::move(store);
  kiohost::BindStore(store_.get());
  exchange_ = std::make_unique<kiohost::Exchange>(store_.get(), directory_);
  variables_ = std::make_unique<kiohost::Variables>(store_.get(), exchange_.get(), &events_);
  return true;
}

void Session::Close() {
  variables_.reset();
  exchange_.reset();
  kiohost::BindStore(nullptr);
  store_.reset();
}

bool Session::Fill() {
  std::vector<kiohost::ProfileNode> nodes;
  if (!kiohost::ReadProfile(KIO_HOST_DIR "/profiles/dual-band-router.profile", &nodes).ok()) {
    return false;
  }
  kiohost::PutNode({{"/zentrolinks/tempdirecory", directory_}, ""}, &nodes);
  kiohost::PutNode({{"/zentrolinks/scriptdirecory", directory_}, ""}, &nodes);
  return store_->Replace(kiohost::PlainNodes(nodes)).ok();
}

bool Session::Exchange(const std::string& document, CommitKind kind, int confirm_within,
                       bool is_refused) {
  rssXmlData.exeflag = 0;
  rssXmlData.pre_exeflag = 0;
  const kiohost::Exchange::Outcome outcome = exchange_->Run(document, kind, confirm_within);
  committed_ = outcome.commit == CommitKind::kNone ? 0 : kiohost::PendingActions(kind);
  return outcome.kind == kiohost::Exchange::Outcome::Kind::kAnswered &&
         (outcome.commit == CommitKind::kNone) == is_refused;
}

bool Session::FinishCommit() {
  exchange_->FinishCommit(committed_, 0);
  return (store_->DueActions() & committed_) == 0;
}

bool Session::SetBatch(const std::string& batch) {
  variables_->Discard();
  const kiohost::Variables::Answer answer = variables_->SetBatch(batch, '&');
  return answer.code == 0 && answer.store.ok();
}
