#include "host_steps.h"

#include <string>

#include "preload.h"

namespace {

constexpr int kSanitizedStride = 4;

std::string CountFile(const HostProcess& host) { return host.dir().File("steps"); }

}  // namespace

HostSteps::HostSteps(HostProcess* host) : host_(host), count_(CountFile(*host)) {}

bool HostSteps::Start() {
  Count();
  const Preload signal_at_step(KIO_SIGNAL_AT_STEP, "KIO_TEST_STEPS", CountFile(*host_));
  const bool is_started = host_->Start();
  stride_ = is_started && host_->IsSanitized() ? kSanitizedStride : 1;
  return is_started;
}

void HostSteps::Count(Kind kind) {
  count_->at = 0;
  count_->with_waits = kind == Kind::kEffectsAndWaits ? 1 : 0;
  count_->taken = 0;
}

void HostSteps::SignalBefore(int step, int signal_number, Kind kind) {
  Count(kind);
  count_->signal_number = signal_number;
  count_->at = step;
}
