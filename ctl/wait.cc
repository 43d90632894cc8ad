#include "wait.h"

#include <algorithm>
#include <optional>

#include "interrupt.h"

namespace kioctl {
namespace {

using nlohmann::json;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr milliseconds kFirstPause(50);
constexpr milliseconds kLongestPause(400);

class Watch {
 public:
  Watch(Context* context, Sent sent)
      : context_(context),
        sent_(std::move(sent)),
        progress_("waiting", sent_.promised, context->out->json()) {}

  // Gives what the router says at a good end.
  json Run();
  json Report(const std::string& outcome) const;

 private:
  milliseconds Passed() const {
    return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begun_);
  }
  bool PromiseIsOver() const { return context_->options->early || Passed() >= sent_.promised; }
  bool IsTooLate() const { return Passed() >= sent_.promised + seconds(context_->options->grace); }

  // What the router says of itself; nothing when it is away.
  std::optional<json> Look();
  void NoteBoot(const json& device);
  // Whether the watch has come to its end. Throws when that is not the one that was wanted.
  bool Judge(const json& device);
  Failure NotInForce(const std::string& outcome, const std::string& what,
                     const std::string& next) const;
  Failure TooLate() const;

  Context* context_;
  Sent sent_;
  Progress progress_;
  std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
  std::optional<milliseconds> gone_;
  std::optional<milliseconds> back_;
  bool restarted_ = false;
  std::string last_outcome_;
};

std::optional<json> Watch::Look() {
  try {
    json device = context_->router->Device();
    if (gone_ && !back_) {
      back_ = Passed();
    }
    return device;
  } catch (const Failure& failure) {
    if (failure.code != ExitCode::kUnreachable && failure.code != ExitCode::kTimeout) {
      throw;
    }
    if (!gone_) {
      gone_ = Passed();
    }
    back_.reset();
    return std::nullopt;
  }
}

void Watch::NoteBoot(const json& device) {
  const std::string boot = device.value("bootId", "");
  if (sent_.boot_id.empty()) {
    sent_.boot_id = boot;
  }
  restarted_ = boot != sent_.boot_id;
}

json Watch::Report(const std::string& outcome) const {
  constexpr double kPerSecond = 1000;
  const auto in_seconds = [](milliseconds time) {
    return static_cast<double>(time.count()) / kPerSecond;
  };
  json report = {{"outcome", outcome},
                 {"applyId", sent_.apply_id},
                 {"promised", sent_.promised.count()},
                 {"passed", in_seconds(Passed())},
                 {"gone", nullptr},
                 {"back", nullptr},
                 {"restarted", restarted_}};
  if (gone_) {
    report["gone"] = in_seconds(*gone_);
  }
  if (back_) {
    report["back"] = in_seconds(*back_);
  }
  return report;
}

Failure Watch::NotInForce(const std::string& outcome, const std::string& what,
                          const std::string& next) const {
  return {ExitCode::kNotInForce, what, next, Report(outcome)};
}

Failure Watch::TooLate() const {
  const std::string waited = std::to_string(Passed().count() / 1000) + " s";
  if (gone_ && !back_) {
    return {ExitCode::kTimeout, "the router has not come back within " + waited,
            "rejoin its network if the change was of that; else wait on: kioctl wait",
            Report("away")};
  }
  return {ExitCode::kTimeout,
          "the router is here, but after " + waited + " the change is only " +
              (last_outcome_.empty() ? "pending" : last_outcome_),
          "an apply needs its commit: kioctl commit; else wait on: kioctl wait", Report("pending")};
}

bool Watch::Judge(const json& device) {
  NoteBoot(device);
  const bool is_ready = device.value("state", "ready") == "ready";
  if (sent_.only_back) {
    return is_ready && PromiseIsOver();
  }
  const json last = device.value("lastApply", json());
  const std::string id = last.is_object() ? last.value("id", "") : "";
  if (sent_.apply_id.empty()) {
    sent_.apply_id = id;
  }
  if (id != sent_.apply_id) {
    throw NotInForce("something-else",
                     id.empty() ? "the router came back as something else: it knows of no change"
                                : "the router came back as something else: another change, " + id +
                                      ", came after this one",
                     "look at what it holds now (kioctl device, kioctl vars), and send again");
  }
  last_outcome_ = last.is_object() ? last.value("outcome", "") : "";
  if (last_outcome_ == "rolled-back") {
    throw NotInForce("rolled-back", "rolled back: the settings are as they were before",
                     "send again, and confirm in time: kioctl confirm");
  }
  if (!is_ready) {
    return false;
  }
  if (last_outcome_ == "failed") {
    throw NotInForce("failed",
                     "the settings are stored, but a script that brings them up has failed",
                     "see the events of kioctl device; the router tries again when it starts");
  }
  // A router that never was sent anything has nothing to bring into force.
  return (last_outcome_ == "in-force" || id.empty()) && PromiseIsOver();
}

json Watch::Run() {
  json device;
  for (milliseconds pause = kFirstPause;; pause = std::min(2 * pause, kLongestPause)) {
    const std::optional<json> seen = Look();
    if (seen && Judge(*seen)) {
      device = *seen;
      break;
    }
    if (IsTooLate()) {
      throw TooLate();
    }
    std::string sight = "away";
    if (seen) {
      sight = seen->value("state", "here");
      sight += last_outcome_.empty() ? "" : ", " + last_outcome_;
      sight += restarted_ ? ", restarted" : "";
    }
    progress_.Show(sight, Passed());
    Pause(pause);
  }
  progress_.Show(gone_ ? "went away and came back" : "it stayed here", Passed());
  return device;
}

}  // namespace

void WaitFor(Context* context, const Sent& sent) {
  Watch watch(context, sent);
  const json device = watch.Run();
  const bool nothing = device.value("lastApply", json()).is_null();
  json report = watch.Report(nothing ? "nothing-sent" : "applied");
  report["pendingConfirm"] = device.value("pendingConfirm", json());
  const Output& out = *context->out;
  out.Json(report);
  if (nothing) {
    out.Line("here, and nothing was changed since the factory settings");
    return;
  }
  out.Line("applied: the settings are in force", Tone::kGood);
  if (report["pendingConfirm"].is_object()) {
    out.Note("they go back in " + report["pendingConfirm"]["secondsLeft"].dump() +
             " s unless you type: kioctl confirm");
  }
}

json WaitUntilBack(Context* context, std::chrono::seconds promised) {
  return Watch(context, {.promised = promised, .only_back = true}).Run();
}

}  // namespace kioctl
