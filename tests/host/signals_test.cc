#include "signals.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

// Signals change a process for good, so each test has one of its own, which ends with 0 when all
// was as it should be.
namespace {

constexpr long kPatience = 20000;  // milliseconds

void ServeSignals() { kiohost::WaitForEvents(-1, 0); }

// Whether a signal asks for a stop, in the next wait and not before.
bool Stops(int signal_number) {
  raise(signal_number);
  const bool too_early = kiohost::StopRequested();
  ServeSignals();
  return !too_early && kiohost::StopRequested();
}

TEST(SignalsTest, ThreeSignalsAskForAStop) {
  for (const int signal_number : {SIGTERM, SIGINT, SIGHUP}) {
    EXPECT_EXIT(
        {
          signal(SIGHUP, SIG_DFL);
          _exit(kiohost::InstallSignals() && Stops(signal_number) ? 0 : 1);
        },
        testing::ExitedWithCode(0), "")
        << signal_number;
  }
}

TEST(SignalsTest, AHangupThatWasIgnoredStaysSo) {
  EXPECT_EXIT(
      {
        signal(SIGHUP, SIG_IGN);
        _exit(kiohost::InstallSignals() && !Stops(SIGHUP) && Stops(SIGTERM) ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(SignalsTest, AnAlarmBeforeTheLibrarySetOneIsServed) {
  EXPECT_EXIT(
      {
        bool right = kiohost::InstallSignals();
        raise(SIGALRM);
        right = right && kiohost::AlarmState() == kiohost::Alarm::kFired;
        ServeSignals();
        right = right && kiohost::AlarmState() == kiohost::Alarm::kNone;
        _exit(right && !kiohost::StopRequested() ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

// A process may be started with SIGCHLD ignored; the system then forgets how children ended.
TEST(SignalsTest, AWaitForChildrenEndsWithAChild) {
  EXPECT_EXIT(
      {
        signal(SIGCHLD, SIG_IGN);
        bool right = kiohost::InstallSignals();
        kiohost::ChildWait wait;
        const pid_t child = fork();
        if (child == 0) {
          _exit(7);
        }
        wait.Wait(kPatience);
        int status = 0;
        right = right && waitpid(child, &status, WNOHANG) == child;
        _exit(right && WIFEXITED(status) && WEXITSTATUS(status) == 7 ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(SignalsTest, AWaitForChildrenServesStopsAndNoAlarm) {
  EXPECT_EXIT(
      {
        bool right = kiohost::InstallSignals();
        {
          kiohost::ChildWait wait;
          raise(SIGALRM);
          raise(SIGTERM);
          right = right && !kiohost::StopRequested();
          wait.Wait(kPatience);
          right = right && kiohost::StopRequested();
        }
        _exit(right && kiohost::AlarmState() == kiohost::Alarm::kFired ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

// Where the alarm is served, nothing else is blocked: a stop must not slip through between a look
// at it and the wait.
TEST(SignalsTest, AWaitForChildrenHoldsStopsBackUntilItWaits) {
  EXPECT_EXIT(
      {
        bool right = kiohost::InstallSignals();
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        {
          kiohost::ChildWait wait;
          raise(SIGTERM);
          right = right && !kiohost::StopRequested();
          wait.Wait(kPatience);
          right = right && kiohost::StopRequested();
        }
        sigset_t after;
        sigprocmask(SIG_SETMASK, nullptr, &after);
        _exit(right && sigismember(&after, SIGTERM) == 0 ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
