// The levels of the messages of platform services.
#include "support/log_levels.h"

#include <gtest/gtest.h>

#include "kioapp/platform.h"
#include "platform/log.h"
#include "sandbox.h"

namespace kio::test {
namespace {

class PlatformLevelsTest : public SandboxTest {
 protected:
  ~PlatformLevelsTest() override { daemon_log_level = kEventLevel; }

  static void CreateTimerWithoutMemory() {
    Sandbox::Get().calloc_fails = true;
    create_timer(1, nullptr, 0, 0, 0);
    Sandbox::Get().calloc_fails = false;
  }
};

TEST_F(PlatformLevelsTest, EntriesOfFunctions) {
  ExpectLevels({
      {"a name", [] { platform::LogName("do_something"); }, kDetailLevel,
       "1000: 1000:do_something]"},
      {"an entry", [] { platform::LogEntry("do_something"); }, kDetailLevel,
       "1000: 1000:do_something]\n"},
      {"a name without the caller's check", [] { platform::WriteName("do_something"); },
       kDetailLevel, "1000: 1000:do_something]"},
      {"an entry without the caller's check", [] { platform::WriteEntry("do_something"); },
       kDetailLevel, "1000: 1000:do_something]\n"},
  });
}

TEST_F(PlatformLevelsTest, ExternalCalls) {
  ExpectLevels({
      {"an action", [] { exe_ExternalCall(KIOAPP_SYNC_WLAN); }, kActionLevel,
       "[exe_ExternalCall,WlanResync]\n"},
      {"an unknown action", [] { get_ExternalCall_UseSec(2); }, kFailureLevel,
       "[get_ExternalCall_UseSec]Unknow sync_id=2\n"},
  });
}

TEST_F(PlatformLevelsTest, Timers) {
  ExpectLevels({
      {"the time before", CreateTimerWithoutMemory, kEventLevel, kTimeBefore},
      {"the failure", CreateTimerWithoutMemory, kEventLevel, "create_timer fail !!!\n"},
  });
}

}  // namespace
}  // namespace kio::test
