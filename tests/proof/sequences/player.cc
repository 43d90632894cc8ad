#include "player.h"

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "../../e2e/app_key.h"
#include "requests.h"

namespace kio::sequences {
namespace {

using nlohmann::json;

constexpr int kAhead = 1000;
constexpr char kScript[] = "#!/bin/sh\nexit 0\n";

// The server of all sequences.
const FirmwareServer& Server() {
  static FirmwareServer server;
  static const bool started = [] {
    const bool is_there = server.Start(0);
    server.Put("/DR2400/DR2400.xml", ListWith("/fw/DR2400_FW1.0.8_0312.bin", "/fw/notes.xml"));
    server.Put("/fw/DR2400_FW1.0.8_0312.bin", MakeImage(5000));
    server.Put("/fw/notes.xml", "<notes>faster</notes>\n");
    return is_there;
  }();
  static_cast<void>(started);
  return server;
}

// What the model does not know of: the channel in use, and what a search has found.
bool IsAside(const std::string& path) {
  return path.find("/channelusing") != std::string::npos ||
         path.starts_with("/fwupgradeinfo/newfw/") || path.ends_with("direcory");
}

bool IsLost(const Step& step) { return step.Get("fault") == "cut" || step.Get("fault") == "reset"; }

std::string DifferenceOf(const Nodes& host, const Nodes& model) {
  std::ostringstream text;
  for (const auto& [path, value] : host) {
    const auto found = model.find(path);
    if (found == model.end()) {
      text << path << " is \"" << value << "\", not absent\n";
    } else if (found->second != value) {
      text << path << " is \"" << value << "\", not \"" << found->second << "\"\n";
    }
  }
  for (const auto& [path, value] : model) {
    if (!host.contains(path)) {
      text << path << " is absent, not \"" << value << "\"\n";
    }
  }
  return text.str();
}

}  // namespace

std::optional<Difference> Player::Play(const Sequence& sequence) {
  std::string wrong = Start();
  if (!wrong.empty()) {
    return Difference{0, wrong};
  }
  for (size_t i = 0; i < sequence.size(); ++i) {
    ++(*counts_)["steps"];
    ++(*counts_)["step " + sequence[i].kind];
    wrong = PlayStep(sequence[i]);
    if (wrong.empty()) {
      wrong = Compare();
    }
    if (!wrong.empty()) {
      return Difference{i, wrong};
    }
  }
  reader_.reset();
  return std::nullopt;
}

std::string Player::Start() {
  setenv("http_proxy", Server().Proxy().c_str(), 1);
  // A command of its own: others on this machine may fetch firmware as well, and the list of
  // processes shows them.
  std::string agent = "q" + std::to_string(getpid()) + "0000000";
  agent.resize(8);
  host_.UseProfile(
      ProfileWith({"/fwupgradeinfo/urlgetcmd = wget -U" + agent + " -q -O \"$savefn\" \"$url\""}));
  for (const char* const script : {"uplink.sh", "device_resync.sh"}) {
    host_.UseScript(script, kScript);
  }
  const bool started = host_.StartClosed({"--control", "0", "--clock=manual"});
  unsetenv("http_proxy");
  const std::optional<Nodes> store = started ? Store() : std::nullopt;
  if (!store || !Settle()) {
    return "the router does not start: " + host_.Errors();
  }
  // Ahead of the machine's clock, so that restarts can wait for it.
  Post(host_.control_port(), "/clock", json{{"advance", kAhead}}.dump());
  factory_ = *store;
  model_.emplace(factory_, Device()["uptime"].get<long>());
  return {};
}

std::string Player::PlayStep(const Step& step) {
  const std::set<std::string> of_bench = {"advance", "snapshot", "return", "reset"};
  if (of_bench.contains(step.kind)) {
    return PlayBench(step);
  }
  return step.kind == "restart" ? Restart(step) : PlayRequest(step);
}

std::string Player::PlayRequest(const Step& step) {
  const int control = host_.control_port();
  const std::optional<json> rule = RuleOf(step);
  // What a fault does to a request of nobody is not told, nor to the commit before a request.
  const bool with_fault = rule && model_->IsLoggedIn(step.client()) && !model_->Waits(step);
  std::string id;
  if (with_fault) {
    const json made = json::parse(Post(control, "/faults", rule->dump()).body, nullptr, false);
    if (!made.contains("id")) {
      return "no fault rule: " + made.dump();
    }
    id = std::to_string(made["id"].get<int>());
  }
  Step taken = step;
  if (!with_fault) {
    taken.words.erase("fault");
  }
  Answer answer = Ask(taken);
  answer.died = !Settle();
  if (answer.died) {
    return GoOnAfterDeath(taken, answer);
  }
  if (with_fault) {
    const auto hits = [&] {
      return json::parse(Get(control, "/faults/" + id).body, nullptr, false).value("hits", 0);
    };
    // A download that was begun meets its fault a moment later.
    if (step.kind == "firmware" && answer.body.find("<result>3<") != std::string::npos) {
      WaitFor([&] { return hits() > 0; });
    }
    answer.hits = hits();
    (*counts_)["faults"] += answer.hits;
    Delete(control, "/faults");
    answer.lost = IsLost(taken);
    if (answer.lost && (answer.status != 0 || answer.hits != 1)) {
      return "the answer was not lost";
    }
  }
  if (answer.status == 0 && answer.apply_id.empty()) {
    const json apply = Device()["lastApply"];
    answer.apply_id = apply.is_null() ? "" : apply["id"].get<std::string>();
  }
  ++(*counts_)["status " + std::to_string(answer.status)];
  std::string wrong = model_->Take(taken, answer);
  // Whether a request that was not run, or that waited, keeps its client logged in is seen so.
  if (wrong.empty() && with_fault && model_->IsLoggedIn(step.client())) {
    wrong = PlayRequest({"result", {{"client", step.Get("client")}}});
  }
  return wrong;
}

std::string Player::GoOnAfterDeath(const Step& step, const Answer& answer) {
  ++(*counts_)["deaths"];
  std::string wrong = model_->Take(step, answer);
  const int code = host_.WaitForEnd();
  if (!wrong.empty()) {
    return wrong;
  }
  return code == 128 + SIGKILL ? StartAgain(false) : "the router ended: " + std::to_string(code);
}

std::string Player::PlayBench(const Step& step) {
  const int control = host_.control_port();
  HttpResponse response;
  int expected = 200;
  if (step.kind == "advance") {
    response = Post(control, "/clock", json{{"advance", step.Number("seconds")}}.dump());
    model_->Advance(step.Number("seconds"));
  } else if (step.kind == "snapshot") {
    expected = model_->MayKeep() ? 200 : 409;
    response = Put(control, "/snapshots/kept", "");
    if (expected == 200) {
      model_->Keep();
    }
  } else if (step.kind == "reset") {
    expected = model_->MayKeep() ? 200 : 409;
    response = Post(control, "/reset", "");
    if (expected == 200) {
      model_->Reset(factory_);
      ForgetEvents("none");
    }
  } else {
    expected = !model_->HasKept() ? 404 : model_->MayReturn() ? 200 : 409;
    response = Post(control, "/snapshots/kept/restore", "");
    if (expected == 200) {
      model_->Return();
      ForgetEvents("");
    }
  }
  return response.status == expected
             ? ""
             : step.kind + ": status " + std::to_string(response.status) + ": " + response.body;
}

std::string Player::Restart(const Step& step) {
  const bool stopped = step.Get("how") == "stop";
  const int code = host_.End(stopped ? SIGTERM : SIGKILL);
  if (code != (stopped ? 0 : 128 + SIGKILL)) {
    return "the router ended with " + std::to_string(code);
  }
  return StartAgain(stopped);
}

std::string Player::StartAgain(bool stopped) {
  ForgetEvents("none");
  setenv("http_proxy", Server().Proxy().c_str(), 1);
  const bool started = host_.StartClosed({"--control", "0", "--clock=manual"});
  unsetenv("http_proxy");
  if (!started) {
    return "the router does not start again: " + host_.Errors();
  }
  journal_last_ = "0";
  ran_.clear();
  Settle();
  // A start begins with the machine's clock: as much time passes as the clock was ahead of it.
  const long uptime = Device()["uptime"];
  const long ahead = std::max(0L, model_->passed() - uptime);
  Post(host_.control_port(), "/clock", json{{"advance", ahead}}.dump());
  model_->Restart(stopped, uptime + ahead, uptime + ahead - model_->passed());
  // What a start makes up for is seen in the events.
  model_->TakeActions();
  ran_.clear();
  after_restart_ = true;
  return {};
}

void Player::ForgetEvents(const std::string& last_event) {
  reader_.reset();
  expected_events_.clear();
  last_event_ = last_event;
}

HttpResponse Player::Send(const Step& step, const std::string& request) const {
  Connection connection(host_.port(), step.address());
  return connection.Send(request) ? connection.Read() : HttpResponse();
}

HttpResponse Player::SendAndWait(const Step& step, const std::string& request) {
  ++(*counts_)["waited"];
  Connection connection(host_.port(), step.address());
  if (!connection.Send(request)) {
    return {};
  }
  // The router has seen the request when it has answered these.
  Device();
  Device();
  if (!connection.StaysSilent(0)) {
    HttpResponse early = connection.Read();
    early.body = "it did not wait for the commit that is due: " + early.body;
    early.status = -1;
    return early;
  }
  const long left = *model_->state().commit_at - model_->now();
  Post(host_.control_port(), "/clock", json{{"advance", left}}.dump());
  return connection.Read();
}

HttpResponse Player::Fetch(const Step& step) const {
  Step progress = step;
  progress.words["action"] = "9";
  HttpResponse response;
  WaitFor([&] {
    response = Send(step, RequestOf(progress));
    return response.body.find("<result>3<") == std::string::npos;
  });
  return response;
}

Answer Player::Ask(const Step& step) {
  const std::string request = RequestOf(step);
  const bool fetches = step.kind == "firmware" && step.Get("action") != "0" &&
                       model_->state().firmware == 3 && model_->IsLoggedIn(step.client());
  const HttpResponse response = model_->Waits(step) ? SendAndWait(step, request)
                                : fetches           ? Fetch(step)
                                                    : Send(step, request);
  return {response.status, response.body, response.Header("Kio-Apply-Id"), 0, false};
}

bool Player::Settle() {
  const HttpResponse response =
      Get(host_.control_port(), "/journal?kinds=action&since=" + journal_last_);
  if (response.status != 200) {
    return false;
  }
  journal_last_ = response.Header("Kio-Journal-Last");
  std::istringstream lines(response.body);
  for (std::string line; std::getline(lines, line);) {
    const json entry = json::parse(line, nullptr, false);
    if (entry.contains("name")) {
      ran_.push_back(entry["name"]);
    }
  }
  return true;
}

json Player::Device() const {
  return json::parse(Get(host_.port(), "/device").body, nullptr, false);
}

std::optional<Nodes> Player::Store() {
  const std::string body = Get(host_.control_port(), "/store").body;
  if (body == store_text_) {
    return store_;
  }
  const json store = json::parse(body, nullptr, false);
  if (!store.contains("nodes")) {
    return std::nullopt;
  }
  store_text_ = body;
  store_.clear();
  for (const json& node : store["nodes"]) {
    if (!IsAside(node["path"])) {
      store_[node["path"]] = node["text"];
    }
  }
  return store_;
}

std::string Player::Compare() {
  if (!Settle()) {
    return "the router is gone: " + host_.Errors();
  }
  json device = Device();
  device.erase("model");
  device.erase("bootId");
  device.erase("events");
  if (std::exchange(after_restart_, false)) {
    model_->TakeMoments(device);
  }
  std::string wrong;
  if (device != model_->Device()) {
    wrong += "/device is " + device.dump() + ", not " + model_->Device().dump() + "\n";
  }
  wrong += DifferenceOf(Store().value_or(Nodes()), model_->state().store);
  const std::vector<std::string> actions = model_->TakeActions();
  if (model_->TakeUnsureActions()) {
    model_->TakeEvents();
    ForgetEvents("");
  } else if (ran_ != actions) {
    wrong += "the actions are " + json(ran_).dump() + ", not " + json(actions).dump() + "\n";
  }
  ran_.clear();
  for (std::string& event : model_->TakeEvents()) {
    expected_events_.push_back(std::move(event));
  }
  return wrong.empty() ? CompareEvents() : wrong;
}

}  // namespace kio::sequences
