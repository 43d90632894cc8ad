#include "interrupt.h"

#include <csignal>
#include <thread>

#include "failure.h"

namespace kioctl {
namespace {

volatile std::sig_atomic_t g_interrupts = 0;

void Count(int /*signal*/) { g_interrupts = g_interrupts + 1; }

}  // namespace

void CatchInterrupts() {
  struct sigaction action = {};
  action.sa_handler = Count;  // without SA_RESTART: a prompt ends
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

int Interrupts() { return g_interrupts; }

void StopIfInterrupted() {
  if (Interrupts() > 0) {
    throw Interrupted();
  }
}

void StopIfInterruptedUnless(bool insists) {
  if (Interrupts() > (insists ? 1 : 0)) {
    throw Interrupted();
  }
}

void Pause(std::chrono::milliseconds time) {
  // In steps, as a signal may come just before a sleep begins.
  constexpr std::chrono::milliseconds kStep(50);
  const auto end = std::chrono::steady_clock::now() + time;
  for (;;) {
    StopIfInterrupted();
    const auto left = end - std::chrono::steady_clock::now();
    if (left <= left.zero()) {
      return;
    }
    std::this_thread::sleep_for(std::min<std::chrono::nanoseconds>(left, kStep));
  }
}

void PauseAnyway(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

}  // namespace kioctl
