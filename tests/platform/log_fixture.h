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

// The file's name is chosen once in a process, so each test of this file logs in a process of its
// own, started afresh.
class LogTest : public SandboxTest {
 protected:
  LogTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

  // Fails when an expectation in the body fails.
  template <typename Body>
  static void InNewProcess(Body body) {
    EXPECT_EXIT(
        {
          body();
          std::exit(HasFailure() ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "");
  }

  void LogTo(const std::string& directory) const {
    std::snprintf(daemon_log_path, sizeof(daemon_log_path), "%s", directory.c_str());
  }
  [[nodiscard]] std::string File() const { return directory_.File("DL_log.txt"); }

  TemporaryDirectory directory_;
};

}  // namespace kio::test

#endif
