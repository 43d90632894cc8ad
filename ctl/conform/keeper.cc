#include "conform/keeper.h"

#include <algorithm>

#include "conform/document.h"

namespace kioctl::conform {
namespace {

constexpr char kBackup[] = "/backup?secrets=1";
constexpr size_t kShortestSecret = 4;

// Where the texts of two values differ.
void Compare(const std::string& path, const Value& before, const Value& now, std::string* places) {
  if (before.Dump() == now.Dump()) {
    return;
  }
  if (!before.Is(Value::Kind::kObject) || !now.Is(Value::Kind::kObject)) {
    *places += (places->empty() ? "" : ", ") + path;
    return;
  }
  std::set<std::string> names;
  for (const Value& value : {before, now}) {
    for (const std::string& name : value.Names()) {
      names.insert(name);
    }
  }
  for (const std::string& name : names) {
    std::string below = path;
    below.append(path.empty() ? "" : "/").append(name);
    Compare(below, before[name], now[name], places);
  }
}

// The texts that no report may show.
std::vector<std::string> SecretsOf(const Value& value) {
  std::vector<std::string> secrets;
  for (const std::string& name : value.Names()) {
    const bool is_secret =
        name.ends_with("Pwd") || name.ends_with("Password") || name.ends_with("Key");
    if (is_secret && value[name].Text().size() >= kShortestSecret) {
      secrets.push_back(value[name].Text());
    }
    const std::vector<std::string> below = SecretsOf(value[name]);
    secrets.insert(secrets.end(), below.begin(), below.end());
  }
  return secrets;
}

}  // namespace

void Keeper::Learn(bool for_changes) {
  Facts& facts = *talk_->mutable_facts();
  const Value device = talk_->Device();
  Expect(device["uptime"].Is(Value::Kind::kNumber),
         "what answers does not describe itself as a router");
  facts.model = device["model"].Text();
  facts.name = device["name"].Text();
  Expect(!device["pendingConfirm"].Is(Value::Kind::kObject),
         "other settings wait for their confirmation: kioctl confirm keeps them, kioctl confirm "
         "--take-back undoes them");
  LearnLogin();
  const Value index = talk_->Get("/").Is(200).Json();
  for (size_t i = 0; i < index["resources"].size(); ++i) {
    const Value resource = index["resources"].At(i);
    for (const std::string& method : resource["methods"].Names()) {
      facts.offers.insert(method + " " + resource["path"].Text());
    }
  }
  Expect(facts.Offers("GET /device"), "GET / does not list the resources");
  if (for_changes) {
    LearnSettings();
    last_apply_ = device["lastApply"]["id"].Text();
  }
}

void Keeper::LearnLogin() {
  constexpr int kUnauthorized = 401;
  talk_->LogOut();
  talk_->mutable_facts()->asks_for_login = talk_->Ask("GET", "/").status == kUnauthorized;
}

void Keeper::LearnSettings() {
  Facts& facts = *talk_->mutable_facts();
  if (!facts.Offers("GET /backup") || !facts.Offers("POST /settings")) {
    facts.why_not = "the router offers no /backup, or no /settings";
    return;
  }
  const Answer answer = talk_->Get(kBackup).Is(200);
  const Value archive = answer.Json();
  facts.archive = answer.body;
  facts.settings = archive["settings"];
  facts.documents = archive["documents"].Text();
  facts.secrets = SecretsOf(facts.settings);
  if (facts.Offers("GET /vars")) {
    const Value variables = talk_->Get("/vars?values=1&secrets=1").Is(200).Json()["variables"];
    for (size_t i = 0; i < variables.size(); ++i) {
      facts.values[variables.At(i)["name"].Text()] = variables.At(i)["value"].Text();
    }
  }
  LearnWayBack();
}

bool Keeper::ChangesNothing(const std::string& path, const std::string& body) {
  Facts& facts = *talk_->mutable_facts();
  const Answer answer = talk_->Post(path + "?dry-run=1", body);
  const Value forecast = Value::Parse(answer.body);
  facts.dropped_link = forecast["link"]["drops"].Flag() ? forecast["link"]["by"].Text() : "";
  if (answer.status != 200 || forecast["result"].Number() != 0) {
    facts.why_not = "the router does not take its own settings: " +
                    (answer.status == 200 ? forecast["message"].Text() : Shown(answer.body));
    return false;
  }
  for (size_t i = 0; i < forecast["nodes"].size(); ++i) {
    const std::string node = forecast["nodes"].At(i)["path"].Text();
    // A device that was changed once is no longer as it left the factory.
    if (!node.ends_with("/factorydefault")) {
      facts.why_not = "the router's own settings would come back with another " + node;
      return false;
    }
  }
  return true;
}

void Keeper::LearnWayBack() {
  Facts& facts = *talk_->mutable_facts();
  if (facts.Offers("POST /restore") && ChangesNothing("/restore", facts.archive)) {
    facts.way_back = WayBack::kArchive;
  } else {
    for (const WayBack way : {WayBack::kSettings, WayBack::kDevice, WayBack::kNone}) {
      facts.way_back = way;
      if (way == WayBack::kNone || ChangesNothing("/settings", Document(facts).Xml())) {
        break;
      }
    }
  }
  if (facts.way_back != WayBack::kNone) {
    Document document(facts);
    document.Set("Device/DeviceName", facts.name == "Conform-A" ? "Conform-B" : "Conform-A");
    const std::string why_not = facts.why_not;
    facts.leaves_all_as_is = ChangesNothing("/settings", document.Xml());
    facts.why_not = why_not;
  }
}

std::string Keeper::Differences() {
  const Value now = talk_->Get(kBackup).Is(200).Json();
  std::string places;
  Compare("", talk_->facts().settings, now["settings"], &places);
  return places;
}

std::string Keeper::LastApply() { return talk_->Device()["lastApply"]["id"].Text(); }

void Keeper::Restore() {
  const Facts& facts = talk_->facts();
  // A clock that stands still keeps a commit that is due, and the commit keeps other changes.
  constexpr long kCommitSeconds = 3;
  if (talk_->HasControl()) {
    talk_->LetPass(kCommitSeconds);
  }
  const Answer answer = facts.way_back == WayBack::kArchive
                            ? talk_->Post("/restore", facts.archive)
                            : talk_->Post("/settings", Document(facts).Xml());
  talk_->Settle(answer.Result(0).wait);
}

void Keeper::BringBack(bool has_passed) {
  const Facts& facts = talk_->facts();
  if (!has_passed) {
    // The case may have ended while the router was away.
    constexpr long kLongestWait = 60;
    talk_->Settle(kLongestWait, false);
  }
  const Value device = talk_->Device();
  if (facts.Offers("DELETE /settings/confirm") &&
      device["pendingConfirm"].Is(Value::Kind::kObject)) {
    talk_->Delete("/settings/confirm").Is(200);
    talk_->Settle(0);
  }
  if (facts.Offers("DELETE /vars")) {
    talk_->Delete("/vars").Is(200);
  }
  if (has_passed && device["lastApply"]["id"].Text() == last_apply_) {
    return;
  }
  if (!Differences().empty()) {
    Restore();
  }
  last_apply_ = LastApply();
}

void Keeper::BringBackAll() {
  BringBack(false);
  const std::string places = Differences();
  Expect(places.empty(), "these settings were not brought back: " + places);
}

}  // namespace kioctl::conform
