// A host that gets a signal before the step that the test names.
#ifndef TESTS_E2E_HOST_STEPS_H
#define TESTS_E2E_HOST_STEPS_H

#include "host_process.h"
#include "shared_struct.h"
#include "steps.h"

class HostSteps {
 public:
  explicit HostSteps(HostProcess* host);

  // Starts the host. No step of the start counts.
  bool Start();

  // What counts as a step.
  enum class Kind { kEffects, kEffectsAndWaits };

  // Counts the steps from now on.
  void Count(Kind kind = Kind::kEffects);

  // The same, and the signal comes before the step of this number. The next one has the number 1.
  void SignalBefore(int step, int signal_number, Kind kind = Kind::kEffects);

  int taken() const { return count_->taken; }

  // How far a test goes on that tries one step after another: to the next one. A host that is
  // started with a sanitizer takes its time, so there some of the steps are enough.
  int stride() const { return stride_; }

 private:
  HostProcess* host_;
  int stride_ = 1;
  SharedStruct<StepCount> count_;
};

#endif  // TESTS_E2E_HOST_STEPS_H
