#include "remains.h"

#include <chrono>
#include <cstdlib>
#include <thread>

Remains AtRest(const HostProcess& host) {
  constexpr int kMostTries = 100;
  Remains remains = {host.PrivateMemory(), host.Descriptors()};
  for (int i = 0; i < kMostTries; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const Remains next = {host.PrivateMemory(), host.Descriptors()};
    const bool rests = next.descriptors == remains.descriptors && i >= kMostTries / 4;
    remains = next;
    if (rests) {
      break;
    }
  }
  return remains;
}

void GiveBackAtOnce() {
  setenv("MALLOC_MMAP_THRESHOLD_", "8192", 1);
  setenv("MALLOC_TRIM_THRESHOLD_", "4096", 1);
  setenv("MALLOC_TOP_PAD_", "0", 1);
}
