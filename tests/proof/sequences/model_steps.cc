// What the model says of documents, variables, confirmations and upgrades.
#include <algorithm>
#include <cstdlib>

#include "../../e2e/documents.h"
#include "model.h"

namespace kio::sequences {
namespace {

using nlohmann::json;

// Whether a fault acts on a request that writes the store: surely, perhaps or not at all.
enum class Met { kNo, kPerhaps, kYes };

// Whether the fault of a step keeps it from coming about.
Met Spoils(const Step& step, bool refused, bool writes, bool writes_name) {
  const std::string fault = step.Get("fault");
  if (fault == "result-unwritable") {
    return Met::kYes;
  }
  const bool fits = fault == "store-fails"                                ? writes_name
                    : fault == "store-full" || fault == "power-off-write" ? writes
                                                                          : false;
  return !fits ? Met::kNo : refused ? Met::kPerhaps : Met::kYes;
}

const std::set<std::string> kSpoiling = {"store-full", "store-fails", "result-unwritable",
                                         "power-off-write"};

std::string Line(const Answer& answer, int status, int code) {
  const std::string wrong = ExpectStatus(answer, {status});
  return !wrong.empty() || answer.body.starts_with(std::to_string(code) + " ")
             ? wrong
             : "the answer is " + answer.body + ", not the code " + std::to_string(code);
}

int StatusOf(int code) { return code == 0 ? 200 : 422; }

}  // namespace

bool Model::IsRefusedByGuard(const Step& step, const Answer& answer, std::string* wrong) const {
  const bool waits = state_.pending && !step.Has("dry-run");
  const std::string match = step.Get("if-match", "any");
  const bool stale = match == "old" && SettingsName(false) != SettingsName(true);
  if (waits && stale) {
    *wrong = ExpectStatus(answer, {409, 412});
  } else if (waits || stale) {
    *wrong = ExpectStatus(answer, {waits ? 409 : 412});
  }
  return waits || stale;
}

std::string Model::TakeDocument(const Step& step, const Answer& answer) {
  std::string wrong;
  if (IsRefusedByGuard(step, answer, &wrong)) {
    return wrong;
  }
  const Settings settings = Settings::OfDocument(step);
  Verdict verdict = FormOf(step);
  if (step.Has("dry-run")) {
    return TakeForecast(settings, verdict, answer);
  }
  if (step.Get("fault") == "store-locked") {
    // No transaction begins, and so no exchange.
    state_.result.reset();
    return answer.hits == 1 ? ExpectStatus(answer, {500}) : "the fault was not met";
  }
  state_.record.reset();
  if (!state_.saw_document) {
    state_.saw_document = true;
    state_.pre_mask = 0;
  }
  Nodes after = state_.store;
  unsigned mask = 0;
  bool writes = false;
  if (verdict.code == 0) {
    verdict = settings.Verify();
  }
  if (verdict.code == 0) {
    verdict = settings.Apply(&after, &mask);
    writes = after != state_.store || settings.AlwaysWrites();
  }
  const bool writes_name = after.at("/sys/friendlyname") != state_.store.at("/sys/friendlyname");
  const Met met = Spoils(step, verdict.code != 0, writes, writes_name);
  if (kSpoiling.contains(step.Get("fault"))) {
    if ((met == Met::kYes) != (answer.hits > 0 || answer.died) && met != Met::kPerhaps) {
      return met == Met::kYes ? "the fault was not met" : "the fault was met";
    }
    if (answer.died) {
      return ExpectStatus(answer, {0});
    }
    // Settings that are refused anyway may be refused before it is seen that a write has failed.
    if (answer.hits > 0 && !(met == Met::kPerhaps && answer.status == 200)) {
      state_.result.reset();
      state_.masks_known = false;
      return ExpectStatus(answer, {500});
    }
  }
  if (verdict.code != 0) {
    state_.result = ResultDocument(verdict.code, verdict.element, 0);
    Told({{"kind", "refused"}, {"code", verdict.code}, {"fault", verdict.element}});
    return ExpectBody(answer, 200, *state_.result);
  }
  return TakeAccepted(step, answer, after, mask);
}

std::string Model::TakeAccepted(const Step& step, const Answer& answer, const Nodes& after,
                                unsigned mask) {
  const std::string fault = step.Get("fault");
  const Nodes before = std::exchange(state_.store, after);
  state_.result = ResultDocument(0, "", WaitOf(mask));
  std::string wrong = ExpectBody(answer, 200, *state_.result);
  if (answer.apply_id.empty()) {
    wrong += "no id of the apply";
  }
  NoteMask(mask);
  state_.due |= mask;
  ++state_.applies;
  NoteApply(answer.apply_id, "applied");
  Told({{"kind", "applied"}, {"apply", answer.apply_id}, {"wait", WaitOf(mask)}});
  if (step.Has("confirm-within")) {
    const long seconds = step.Number("confirm-within");
    state_.pending = {answer.apply_id, seconds, now_ + seconds, state_.applies, mask, before};
    Told({{"kind", "confirm-armed"}, {"apply", answer.apply_id}, {"seconds", seconds}});
  }
  if (fault == "power-off-script") {
    const unsigned runs = state_.exe_mask != 0 ? state_.exe_mask : state_.pre_mask;
    if (((runs & (kWan | kDevice)) != 0) != answer.died && state_.masks_known) {
      return wrong + (answer.died ? "the fault was met" : "the fault was not met");
    }
    if (answer.died) {
      return wrong;
    }
  }
  Commit(fault == "script-fails");
  return wrong;
}

std::string Model::TakeForecast(const Settings& settings, const Verdict& form,
                                const Answer& answer) {
  std::string wrong = ExpectStatus(answer, {200});
  if (!wrong.empty()) {
    return wrong;
  }
  Nodes after = state_.store;
  unsigned mask = 0;
  Verdict verdict = form.code != 0 ? form : settings.Verify();
  if (verdict.code == 0) {
    verdict = settings.Apply(&after, &mask);
  }
  const json forecast = json::parse(answer.body, nullptr, false);
  if (forecast.is_discarded() || forecast["result"] != verdict.code ||
      forecast["message"] != verdict.element) {
    return "the forecast is " + answer.body;
  }
  if (verdict.code != 0) {
    return {};
  }
  std::set<std::string> changed;
  for (const json& node : forecast["nodes"]) {
    changed.insert(node["path"].get<std::string>());
    const auto found = after.find(node["path"]);
    const json text = found == after.end() ? json() : json(found->second);
    if (!node.contains("secret") && node["new"] != text) {
      wrong += "foretold: " + node.dump() + "\n";
    }
  }
  for (const Nodes* const nodes : {&std::as_const(state_.store), &std::as_const(after)}) {
    for (const auto& [path, text] : *nodes) {
      const auto was = state_.store.find(path);
      const auto is = after.find(path);
      const bool differs =
          was == state_.store.end() || is == after.end() || was->second != is->second;
      if (differs != changed.contains(path)) {
        wrong += (differs ? "not foretold: " : "foretold: ") + path + "\n";
      }
    }
  }
  return forecast["wait"] == WaitOf(mask) ? wrong : wrong + "the wait foretold";
}

std::string Model::TakeVariable(const Step& step, const Answer& answer) {
  BeginSeries();
  const Field* const field = FieldOf(step.Get("key"));
  if (field == nullptr) {
    return ExpectStatus(answer, {404});
  }
  if (step.kind == "get") {
    return ExpectBody(answer, 200, state_.record->Get(field->key));
  }
  const std::string value = step.Get("value");
  int code = state_.record->Check(*field, value);
  if (code == 0 && step.kind == "put") {
    state_.record->Set(field->key, value);
  }
  // A good word that is only checked is refused all the same.
  if (code == 0 && step.kind == "validate" && std::string(field->key) == "conn") {
    code = 2;
  }
  return Line(answer, StatusOf(code), code);
}

std::string Model::TakeValues(const Answer& answer) {
  const std::string wrong = ExpectStatus(answer, {200});
  const json all = wrong.empty() ? json::parse(answer.body, nullptr, false) : json();
  if (!wrong.empty() || all.is_discarded()) {
    return wrong + answer.body;
  }
  if (all["settings"] != state_.settings_name) {
    return "the values are of " + all["settings"].dump() + ", not of " + state_.settings_name;
  }
  const Settings record = state_.record.value_or(Settings::OfStore(state_.store));
  size_t seen = 0;
  for (const json& variable : all["variables"]) {
    const Field* const field = FieldOfVariable(variable["name"]);
    if (field == nullptr) {
      continue;
    }
    ++seen;
    if (variable["value"] != record.Get(field->key)) {
      return variable.dump() + ", not " + record.Get(field->key);
    }
  }
  return seen == Fields().size() ? "" : "variables are missing: " + answer.body;
}

std::string Model::TakeBatch(const Step& step, const Answer& answer) {
  std::string wrong;
  if (IsRefusedByGuard(step, answer, &wrong)) {
    return wrong;
  }
  if (step.Get("fault") == "store-locked") {
    state_.result.reset();
    return ExpectStatus(answer, {500});
  }
  BeginSeries();
  for (const auto& [key, value] : step.words) {
    const Field* const field = FieldOf(key);
    if (field == nullptr) {
      continue;
    }
    if (const int code = state_.record->Check(*field, value)) {
      state_.result = ResultDocument(code, field->variable, 0);
      Told({{"kind", "refused"}, {"code", code}, {"fault", field->variable}});
      return Line(answer, StatusOf(code), code);
    }
    state_.record->Set(key, value);
  }
  const Verdict verdict = state_.record->Verify();
  state_.result = ResultDocument(verdict.code, verdict.element, 0);
  if (verdict.code != 0) {
    Told({{"kind", "refused"}, {"code", verdict.code}, {"fault", verdict.element}});
  }
  return Line(answer, StatusOf(verdict.code), verdict.code);
}

std::string Model::TakeAction(const Step& step, const Answer& answer) {
  std::string wrong;
  const std::string action = step.Get("action");
  Step guarded = step;
  if (action == "VerifyAllRssVars" || action == "None") {
    guarded.words["dry-run"] = "1";
  }
  if (IsRefusedByGuard(guarded, answer, &wrong)) {
    return wrong;
  }
  if (action == "CommitRssVars") {
    state_.record.reset();
    state_.commit_at = now_ + 2;
    return Line(answer, 200, 0);
  }
  BeginSeries();
  if (action == "VerifyAllRssVars") {
    const Verdict verdict = state_.record->Verify();
    state_.result = ResultDocument(verdict.code, verdict.element, 0);
    return Line(answer, StatusOf(verdict.code), verdict.code);
  }
  Nodes after = state_.store;
  unsigned mask = 0;
  const Verdict verdict = state_.record->Apply(&after, &mask);
  if (verdict.code != 0) {
    state_.result = ResultDocument(verdict.code, verdict.element, 0);
    Told({{"kind", "refused"}, {"code", verdict.code}, {"fault", verdict.element}});
    return Line(answer, StatusOf(verdict.code), verdict.code);
  }
  NoteMask(mask);
  // An action that changes nothing is no apply.
  if (after != state_.store) {
    state_.store = after;
    state_.due |= mask;
    ++state_.applies;
    NoteApply(answer.apply_id, "applied");
    Told({{"kind", "applied"}, {"apply", answer.apply_id}});
  } else if (!answer.apply_id.empty()) {
    return "an action that changes nothing has the id of an apply";
  }
  return Line(answer, 200, 0);
}

std::string Model::TakeConfirm(const Step& step, const Answer& answer) {
  if (!state_.pending) {
    return ExpectStatus(answer, {404});
  }
  if (step.kind == "withdraw") {
    const std::string body =
        "going back; wait " + std::to_string(WaitOf(state_.pending->mask)) + " s\n";
    GoBack();
    return ExpectBody(answer, 200, body);
  }
  if (SessionOf(step.client()).since_apply < state_.pending->number) {
    return ExpectStatus(answer, {403});
  }
  Told({{"kind", "confirmed"}, {"apply", state_.pending->id}});
  state_.pending.reset();
  return ExpectBody(answer, 200, "confirmed\n");
}

std::string Model::TakeFirmware(const Step& step, const Answer& answer) {
  constexpr int kFetched = 4;
  const int now = state_.firmware.value_or(0);
  // While an image is being fetched the player asks for the progress, but to start over.
  const std::string action = now == 3 && step.Get("action") != "0" ? "9" : step.Get("action");
  int next = now;
  if (action == "4" && state_.pending) {
    return ExpectStatus(answer, {409});
  }
  const std::string running = "/fwupgradeinfo/currfwfilename";
  const std::string fault = step.Get("fault");
  if (action == "0") {
    next = 0;
  } else if (action == "1" && now == 0) {
    next = fault == "firmware-missing"                          ? -1
           : state_.store[running] == "DR2400_FW1.0.8_0312.bin" ? 1
                                                                : 2;
  } else if (action == "2" && now == 2) {
    next = 3;
    state_.image_good = fault != "firmware-missing" && fault != "firmware-changed";
  } else if (now == 3) {
    next = kFetched;
  } else if (action == "4" && now == kFetched) {
    next = kFetched + 1;
    actions_.emplace_back("FwUpgrade");
    Told({{"kind", "action-started"}, {"action", "FwUpgrade"}});
    Told({{"kind", "action-ended"}, {"action", "FwUpgrade"}, {"ok", true}});
    if (state_.image_good) {
      state_.store[running] = "DR2400_FW1.0.8_0312.bin";
    }
  }
  state_.firmware = next;
  const std::string wrong = ExpectStatus(answer, {200});
  const std::string result = "<result>" + std::to_string(next) + "</result>";
  return !wrong.empty() || answer.body.find(result) != std::string::npos
             ? wrong
             : "the status is " + answer.body + ", not " + result;
}

}  // namespace kio::sequences
