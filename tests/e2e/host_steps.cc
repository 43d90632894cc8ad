#include "host_steps.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "preload.h"

namespace {

std::string CountFile(const HostProcess& host) { return host.dir().File("steps"); }

volatile StepCount* Share(const std::string& file) {
  WriteFile(file, std::string(sizeof(StepCount), '\0'));
  const int opened = open(file.c_str(), O_RDWR | O_CLOEXEC);
  void* const map = mmap(nullptr, sizeof(StepCount), PROT_READ | PROT_WRITE, MAP_SHARED, opened, 0);
  close(opened);
  if (map == MAP_FAILED) {
    std::abort();
  }
  return static_cast<StepCount*>(map);
}

}  // namespace

HostSteps::HostSteps(HostProcess* host) : host_(host), count_(Share(CountFile(*host))) {}

HostSteps::~HostSteps() { munmap(const_cast<StepCount*>(count_), sizeof(StepCount)); }

bool HostSteps::Start() {
  Count();
  const Preload signal_at_step(KIO_SIGNAL_AT_STEP, "KIO_TEST_STEPS", CountFile(*host_));
  return host_->Start();
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
