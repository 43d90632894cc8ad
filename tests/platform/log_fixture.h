// What the tests of the log have in common.
#ifndef KIO_TESTS_PLATFORM_LOG_FIXTURE_H
#define KIO_TESTS_PLATFORM_LOG_FIXTURE_H

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "kioapp/log.h"
#include "sandbox.h"

namespace kio::test {

// The library chooses the log file once in a process, so each test of the log logs in a new
// process. An emulated program cannot start itself again: there the process is a fork, and each
// test is run in a program of its own.
class LogTest : public SandboxTest {
 protected:
  LogTest() { GTEST_FLAG_SET(death_test_style, KIO_TEST_EMULATED ? "fast" : "threadsafe"); }

  // Fails when an expectation in the body fails.
  template <typename Body>
  static void InNewProcess(Body body) {
    EXPECT_EXIT(
        {
          body();
          EndProcess(HasFailure() ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "");
  }

  // A fork must not remove what it shares with the test, such as the sandbox's files.
  [[noreturn]] static void EndProcess(int status) {
    if (KIO_TEST_EMULATED) {
      std::fflush(nullptr);
      std::_Exit(status);
    }
    std::exit(status);
  }

  void LogTo(const std::string& directory) const {
    std::snprintf(daemon_log_path, sizeof(daemon_log_path), "%s", directory.c_str());
  }
  [[nodiscard]] std::string File() const { return directory_.File("DL_log.txt"); }

  TemporaryDirectory directory_;
};

}  // namespace kio::test

#endif
