// Timer records.
#include <cstdlib>

#include "kioapp/platform.h"
#include "platform/log.h"

namespace kio::platform {
namespace {

// The pending list. The library only adds to it.
KioTimer* g_pending_timers = nullptr;

}  // namespace
}  // namespace kio::platform

KioTimer* create_timer(unsigned int interval, void (*callback)(uintptr_t), uintptr_t arg,
                       unsigned int user_a, unsigned int user_b) {
  auto* timer = static_cast<KioTimer*>(std::calloc(1, sizeof(KioTimer)));
  if (timer == nullptr) {
    kio::platform::LogTime(kio::platform::kLogEvent);
    KIO_LOG(kio::platform::kLogEvent, "create_timer fail !!!\n");
    return nullptr;
  }
  timer->remaining = interval;
  timer->interval = interval;
  timer->user_b = user_b;
  timer->arg = arg;
  timer->user_a = user_a;
  timer->callback = callback;
  return timer;
}

void add_timer(KioTimer* timer) {
  if (timer == nullptr) {
    return;
  }
  if (timer->remaining != 0) {
    timer->next = kio::platform::g_pending_timers;
    kio::platform::g_pending_timers = timer;
  } else if (timer->callback != nullptr) {
    // Quirk "timer-without-ticks-fires-at-once": before add_timer returns.
    timer->callback(timer->arg);
  }
}
