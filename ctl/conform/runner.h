// Runs cases one after the other.
#ifndef CTL_CONFORM_RUNNER_H
#define CTL_CONFORM_RUNNER_H

#include <functional>
#include <vector>

#include "conform/deviations.h"
#include "conform/keeper.h"
#include "conform/outcome.h"

namespace kioctl::conform {

class Runner {
 public:
  using Tell = std::function<void(const Outcome& outcome, size_t number)>;

  Runner(Conversation* talk, Keeper* keeper, const Deviations* deviations, Tell tell)
      : talk_(talk), keeper_(keeper), deviations_(deviations), tell_(std::move(tell)) {}

  // Puts the outcomes into the run, and why it was cut short. Throws a Failure for Ctrl-C.
  void RunAll(const std::vector<const Case*>& cases, Run* run);

 private:
  Outcome RunOne(const Case& one);
  void Try(const Case& one, Outcome* outcome);
  // Why a case is not run here; empty when it is.
  std::string WhyNot(const Case& one) const;
  bool Answers();
  bool IsThere();

  Conversation* talk_;
  Keeper* keeper_;
  const Deviations* deviations_;
  Tell tell_;
  bool lost_ = false;  // a case got no answer
};

}  // namespace kioctl::conform

#endif  // CTL_CONFORM_RUNNER_H
