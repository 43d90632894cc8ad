#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "kioapp/platform.h"
#include "sandbox.h"

namespace kio::test {
namespace {

using ::testing::ElementsAre;

uintptr_t g_fired_with = 0;
int g_fired = 0;

void Fire(uintptr_t argument) {
  g_fired_with = argument;
  ++g_fired;
}

class TimersTest : public SandboxTest {
 protected:
  TimersTest() {
    g_fired = 0;
    g_fired_with = 0;
  }
};

TEST_F(TimersTest, UptimeIsTheKernels) {
  for (const long uptime : {0L, 1L, 86400L, 2147483647L}) {
    host_.uptime = uptime;
    EXPECT_EQ(sys_uptime_seconds(), uptime);
    EXPECT_EQ(sys_uptime_sec_str(), std::to_string(uptime));
  }
}

TEST_F(TimersTest, UptimeTextLiesInOneBuffer) {
  host_.uptime = 17;
  const char* const first = sys_uptime_sec_str();
  EXPECT_STREQ(first, "17");
  host_.uptime = 18;
  EXPECT_EQ(sys_uptime_sec_str(), first);
  EXPECT_STREQ(first, "18");
}

TEST_F(TimersTest, CreatedTimerHoldsItsArguments) {
  KioTimer* const timer = create_timer(30, Fire, 0xABCD, 0xAAAAAAAA, 0xBBBBBBBB);
  ASSERT_NE(timer, nullptr);
  EXPECT_EQ(timer->next, nullptr);
  EXPECT_EQ(timer->remaining, 30U);
  EXPECT_EQ(timer->interval, 30U);
  EXPECT_EQ(timer->user_a, 0xAAAAAAAAU);
  EXPECT_EQ(timer->user_b, 0xBBBBBBBBU);
  EXPECT_EQ(timer->arg, 0xABCDU);
  EXPECT_EQ(timer->callback, &Fire);
  EXPECT_EQ(g_fired, 0);
  std::free(timer);
}

TEST_F(TimersTest, FailedAllocationIsLogged) {
  log_file::Start(5);
  sandbox_.calloc_fails = true;
  const KioTimer* const timer = create_timer(1, Fire, 0, 0, 0);
  sandbox_.calloc_fails = false;
  EXPECT_EQ(timer, nullptr);
  EXPECT_EQ(log_file::Contents(), "1000: 1000:create_timer fail !!!\n");
}

TEST_F(TimersTest, PendingTimersGoToTheFront) {
  KioTimer* const first = create_timer(5, Fire, 1, 0, 0);
  KioTimer* const second = create_timer(5, Fire, 2, 0, 0);
  KioTimer* const third = create_timer(1, nullptr, 3, 0, 0);
  static KioTimer decoy = {};
  second->next = &decoy;  // what it holds before does not matter
  add_timer(first);
  KioTimer* const before = first->next;
  add_timer(second);
  EXPECT_EQ(second->next, first);
  add_timer(third);
  EXPECT_EQ(third->next, second);
  EXPECT_EQ(second->next, first);
  EXPECT_EQ(first->next, before);
  EXPECT_EQ(first->remaining, 5U);
  EXPECT_EQ(g_fired, 0);
}

TEST_F(TimersTest, TimerWithoutTicksFiresAtOnce) {
  KioTimer* const listed = create_timer(5, Fire, 1, 0, 0);
  add_timer(listed);
  KioTimer* const timer = create_timer(0, Fire, 99, 0, 0);
  add_timer(timer);
  EXPECT_EQ(g_fired, 1);
  EXPECT_EQ(g_fired_with, 99U);
  // The list is as it was: the next timer is put before the one listed first.
  KioTimer* const next = create_timer(5, Fire, 2, 0, 0);
  add_timer(next);
  EXPECT_EQ(next->next, listed);
  EXPECT_EQ(g_fired, 1);
  std::free(timer);
}

TEST_F(TimersTest, OnlyTheRemainingTicksCount) {
  KioTimer* const timer = create_timer(5, Fire, 7, 0, 0);
  timer->remaining = 0;
  add_timer(timer);
  EXPECT_EQ(g_fired, 1);
  std::free(timer);
}

TEST_F(TimersTest, TimerWithoutTicksAndCallbackIsDropped) {
  KioTimer* const listed = create_timer(5, Fire, 1, 0, 0);
  add_timer(listed);
  KioTimer* const timer = create_timer(0, nullptr, 99, 0, 0);
  add_timer(timer);
  KioTimer* const next = create_timer(5, Fire, 2, 0, 0);
  add_timer(next);
  EXPECT_EQ(next->next, listed);
  EXPECT_EQ(g_fired, 0);
  std::free(timer);
}

TEST_F(TimersTest, Versions) {
  EXPECT_STREQ(starterLibVersion(), "b1.2.3a");
  EXPECT_STREQ(rssSpecVersion(), "1.1");
}

TEST_F(TimersTest, FileSizes) {
  const TemporaryDirectory directory;
  for (const std::size_t size : {0U, 1U, 70000U}) {
    std::ofstream(directory.File("file"), std::ios::binary) << std::string(size, 'x');
    EXPECT_EQ(getFileSize(directory.File("file").c_str()), size);
  }
  EXPECT_EQ(getFileSize(directory.File("absent").c_str()), 0xFFFFFFFFU);
  EXPECT_EQ(getFileSize(""), 0xFFFFFFFFU);
  EXPECT_EQ(getFileSize(nullptr), 0xFFFFFFFFU);
}

TEST_F(TimersTest, NullTimerIsNotAdded) {
  KioTimer* const listed = create_timer(5, Fire, 1, 0, 0);
  add_timer(listed);
  add_timer(nullptr);
  KioTimer* const next = create_timer(5, Fire, 2, 0, 0);
  add_timer(next);
  EXPECT_EQ(next->next, listed);
  EXPECT_EQ(g_fired, 0);
}

}  // namespace
}  // namespace kio::test
