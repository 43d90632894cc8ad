// The requests of the steps, and the events that the router tells.
#include "requests.h"

#include <algorithm>

#include "../../e2e/app_key.h"
#include "player.h"
#include "settings.h"

namespace kio::sequences {
namespace {

using nlohmann::json;

std::string GetRequest(const std::string& url) {
  return "GET " + url + " HTTP/1.1\r\nHost: router\r\n\r\n";
}

std::string WithParameters(const std::string& url, const std::vector<std::string>& parameters) {
  std::string whole = url;
  for (const std::string& parameter : parameters) {
    whole += (whole == url ? "?" : "&") + parameter;
  }
  return whole;
}

// A request with the settings that it was made for.
std::string Matching(const std::string& request, const std::string& name) {
  if (name.empty()) {
    return request;
  }
  std::string whole = request;
  return whole.insert(whole.find("\r\n") + 2, "If-Match: \"" + name + "\"\r\n");
}

std::string BatchOf(const Step& step) {
  std::string body;
  for (const auto& [key, value] : step.words) {
    if (const Field* const field = FieldOf(key)) {
      body += std::string(body.empty() ? "" : "|") + field->variable + "=" + value;
    }
  }
  return body;
}

std::string LoginBody(const Step& step, const Model& model) {
  constexpr long kSlotSeconds = 20;
  constexpr size_t kShort = 8;
  const std::string password = model.state().store.at("/sys/user:1/password");
  const std::string key = AppKey(model.now() / kSlotSeconds, step.address(),
                                 step.Get("how") == "wrong" ? "not " + password : password);
  return step.Get("how") == "short" ? "BKey=" + key.substr(0, kShort) : "kioAppKey=:" + key;
}

// Of an event, what the model knows of.
std::optional<std::string> Essence(const json& event) {
  static const std::map<std::string, std::vector<const char*>> kMembers = {
      {"applied", {"apply", "wait"}},
      {"refused", {"code", "fault"}},
      {"action-started", {"action"}},
      {"action-ended", {"action", "ok"}},
      {"committed", {"apply", "outcome"}},
      {"confirm-armed", {"apply", "seconds"}},
      {"confirmed", {"apply"}},
      {"gone-back", {"apply"}},
      {"login", {"client"}},
      {"logout", {"client"}}};
  const std::string kind = event.value("kind", "");
  const auto members = kMembers.find(kind);
  if (members == kMembers.end()) {
    return std::nullopt;
  }
  json essence = {{"kind", kind}};
  for (const char* const member : members->second) {
    if (event.contains(member)) {
      essence[member] = event[member];
    }
  }
  return essence.dump();
}

}  // namespace

std::optional<json> RuleOf(const Step& step) {
  const json script = {{"command", "*/scripts/*"}};
  const json list = {{"download", step.Get("action") == "1" ? "list" : "image"}};
  const std::map<std::string, json> rules = {
      {"answer-500", {{"action", "answer"}, {"status", 500}, {"count", 1}}},
      {"answer-503", {{"action", "answer"}, {"status", 503}, {"count", 1}}},
      {"cut", {{"action", "cut"}, {"bytes", 40}, {"count", 1}}},
      {"reset", {{"action", "reset"}, {"count", 1}}},
      {"store-fails",
       {{"action", "store-fails"},
        {"match", {{"path", "/sys/friendlyname"}, {"access", "write"}}},
        {"count", 1}}},
      {"store-full", {{"action", "store-full"}, {"count", 1}}},
      {"store-locked", {{"action", "store-locked"}, {"count", 1}}},
      {"result-unwritable", {{"action", "result-unwritable"}, {"count", 1}}},
      {"script-fails",
       {{"action", "command-fails"}, {"match", script}, {"status", 7}, {"count", 1}}},
      {"power-off-write", {{"action", "power-off"}}},
      {"power-off-script", {{"action", "power-off"}, {"match", script}}},
      {"firmware-missing", {{"action", "firmware-missing"}, {"match", list}, {"count", 1}}},
      {"firmware-changed", {{"action", "firmware-changed"}, {"count", 1}}}};
  const auto rule = rules.find(step.Get("fault"));
  return rule == rules.end() ? std::nullopt : std::optional(rule->second);
}

std::string Player::RequestOf(const Step& step) const {
  const std::string match = step.Get("if-match");
  const std::string name = match == "now"   ? model_->SettingsName(true)
                           : match == "old" ? model_->SettingsName(false)
                                            : "";
  std::vector<std::string> parameters;
  for (const char* const parameter : {"dry-run", "confirm-within"}) {
    if (step.Has(parameter)) {
      parameters.push_back(std::string(parameter) + "=" + step.Get(parameter));
    }
  }
  const Field* const field = FieldOf(step.Get("key"));
  const std::string variable =
      std::string("/vars/") + (field != nullptr ? field->variable : "rss_Nothing");
  if (step.kind == "login") {
    return PostRequest("/login", LoginBody(step, *model_));
  }
  if (step.kind == "logout") {
    return PostRequest("/logout", "");
  }
  if (step.kind == "document") {
    return Matching(PostRequest(WithParameters("/settings", parameters), DocumentOf(step)), name);
  }
  if (step.kind == "get") {
    return GetRequest(variable);
  }
  if (step.kind == "put") {
    return BodyRequest("PUT", variable, step.Get("value"));
  }
  if (step.kind == "validate") {
    return PostRequest(variable + "/validate", step.Get("value"));
  }
  if (step.kind == "discard") {
    return BodyRequest("DELETE", "/vars", "");
  }
  if (step.kind == "batch") {
    parameters.emplace_back("separator=|");
    return Matching(PostRequest(WithParameters("/vars", parameters), BatchOf(step)), name);
  }
  if (step.kind == "action") {
    return Matching(PostRequest("/actions/" + step.Get("action"), ""), name);
  }
  if (step.kind == "confirm" || step.kind == "withdraw") {
    return BodyRequest(step.kind == "confirm" ? "POST" : "DELETE", "/settings/confirm", "");
  }
  if (step.kind == "firmware") {
    return PostRequest("/firmware/" + step.Get("action"), "");
  }
  return GetRequest(step.kind == "values" ? "/vars?values=1&secrets=1" : "/result");
}

void Player::OpenReader() {
  for (const int client : {1, 2}) {
    if (!reader_ && model_->IsLoggedIn(client)) {
      reader_ = std::make_unique<EventReader>(host_.port(), last_event_,
                                              "127.0.0." + std::to_string(client));
    }
  }
}

std::optional<std::string> Player::NextEvent() {
  constexpr int kPatience = 1000;
  while (true) {
    OpenReader();
    if (!reader_ || !reader_->HasNews(kPatience)) {
      return std::nullopt;
    }
    const EventBlock block = reader_->Next();
    if (block.empty()) {
      // The login of its reader has ended.
      last_event_ = reader_->last_id();
      reader_.reset();
      continue;
    }
    if (!block.data.is_object()) {
      continue;
    }
    ++(*counts_)["events"];
    if (auto essence = Essence(block.data)) {
      return essence;
    }
  }
}

std::string Player::CompareEvents() {
  if (!reader_ && last_event_.empty()) {
    // A stream that begins with what comes next is there before that.
    expected_events_.clear();
    OpenReader();
    if (reader_) {
      reader_->Next();
      last_event_ = reader_->last_id();
    }
    return {};
  }
  const bool is_read = reader_ || model_->IsLoggedIn(1) || model_->IsLoggedIn(2);
  if (expected_events_.empty() || !is_read) {
    return {};
  }
  std::vector<std::string> told;
  while (told.size() < expected_events_.size()) {
    std::optional<std::string> event = NextEvent();
    if (!event) {
      break;
    }
    told.push_back(std::move(*event));
  }
  const std::vector<std::string> in_order = told;
  std::sort(told.begin(), told.end());
  std::vector<std::string> expected = std::exchange(expected_events_, {});
  if (!reader_ && told.empty()) {
    // Its reader has gone, and nobody else is there.
    expected_events_ = std::move(expected);
    return {};
  }
  std::sort(expected.begin(), expected.end());
  if (told == expected) {
    return {};
  }
  return "the events are " + json(in_order).dump() + ", not " + json(expected).dump() + "\n";
}

}  // namespace kio::sequences
