#include "conform/runner.h"

#include <chrono>

#include "failure.h"
#include "interrupt.h"

namespace kioctl::conform {

std::string Runner::WhyNot(const Case& one) const {
  const Facts& facts = talk_->facts();
  if (one.needs != nullptr && !facts.Offers(one.needs)) {
    return std::string("the router does not offer ") + one.needs;
  }
  if (one.changes && facts.way_back == WayBack::kNone) {
    return "nothing is changed that cannot be restored: " + facts.why_not;
  }
  if (one.logs_in && !facts.asks_for_login) {
    return "the router lets everybody in";
  }
  if (one.disruptive && !talk_->means().disruptive) {
    return "it may cut the tester off: --disruptive";
  }
  if (!talk_->CanLetPass(one.seconds) || (one.slow && !talk_->means().slow)) {
    return one.slow ? "it takes its time: --slow"
                    : std::to_string(one.seconds) + " s must pass: --control URL, or --slow";
  }
  return "";
}

void Runner::Try(const Case& one, Outcome* outcome) {
  const auto fail = [outcome](const std::string& why) {
    outcome->why += (outcome->verdict == Verdict::kFailed ? "; and then: " : "") + why;
    outcome->verdict = Verdict::kFailed;
  };
  const auto guarded = [&](const auto& work) {
    try {
      work();
    } catch (const Broken& broken) {
      fail(broken.what);
    } catch (const Unfit& unfit) {
      outcome->verdict = Verdict::kSkipped;
      outcome->why = unfit.why;
    } catch (const Failure& failure) {
      if (failure.code == ExitCode::kInterrupted || failure.code == ExitCode::kNotLoggedIn) {
        throw;
      }
      fail(failure.what);
      lost_ = true;
    }
  };
  guarded([&] { one.run(talk_); });
  if (one.changes) {
    guarded([&] { keeper_->BringBack(outcome->verdict == Verdict::kPassed); });
  }
}

Outcome Runner::RunOne(const Case& one) {
  Outcome outcome;
  outcome.one = &one;
  if (const auto deviation = deviations_->find(one.name); deviation != deviations_->end()) {
    outcome.agreed = deviation->second;
  }
  outcome.why = WhyNot(one);
  if (!outcome.why.empty()) {
    outcome.verdict = Verdict::kSkipped;
    return outcome;
  }
  const auto begun = std::chrono::steady_clock::now();
  talk_->TakeTranscript();
  Try(one, &outcome);
  outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
  if (outcome.verdict == Verdict::kFailed) {
    outcome.why = talk_->Masked(outcome.why);
    outcome.transcript = talk_->TakeTranscript();
    outcome.verdict = outcome.agreed.empty() ? Verdict::kFailed : Verdict::kDeviates;
  }
  return outcome;
}

bool Runner::Answers() {
  try {
    talk_->Device();
  } catch (const Failure& failure) {
    if (failure.code == ExitCode::kInterrupted) {
      throw;
    }
    return false;
  } catch (const Broken&) {
    // An answer, if not a good one.
  }
  return true;
}

// A router that has restarted needs a while.
bool Runner::IsThere() {
  constexpr std::chrono::seconds kPatience(30);
  constexpr std::chrono::milliseconds kStep(200);
  const auto begun = std::chrono::steady_clock::now();
  while (!Answers()) {
    if (std::chrono::steady_clock::now() - begun > kPatience) {
      return false;
    }
    Pause(kStep);
  }
  return true;
}

void Runner::RunAll(const std::vector<const Case*>& cases, Run* run) {
  for (const Case* const one : cases) {
    StopIfInterrupted();
    run->outcomes.push_back(RunOne(*one));
    tell_(run->outcomes.back(), run->outcomes.size());
    if (lost_ && !IsThere()) {
      run->cut_short = std::string("the router does not answer any more since ") + one->name;
      return;
    }
    lost_ = false;
  }
}

}  // namespace kioctl::conform
