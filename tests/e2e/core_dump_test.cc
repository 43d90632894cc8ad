// What a host that crashes leaves behind.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "host_process.h"

namespace {

// Core dumps are allowed, and are written into a directory of the test's own.
class CoreDumpTest : public ::testing::Test {
 protected:
  CoreDumpTest() {
    getrlimit(RLIMIT_CORE, &before_);
    const rlimit most = {before_.rlim_max, before_.rlim_max};
    setrlimit(RLIMIT_CORE, &most);
    std::filesystem::current_path(dir_.path());
  }
  ~CoreDumpTest() override {
    std::filesystem::current_path(working_directory_);
    setrlimit(RLIMIT_CORE, &before_);
  }

  // Whether the crash of a process leaves a core dump. The process remains to be waited for.
  static bool LeavesDump(pid_t pid) {
    kill(pid, SIGABRT);
    siginfo_t info = {};
    EXPECT_EQ(waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(info.si_status, SIGABRT);
    return info.si_code == CLD_DUMPED;
  }

  static bool HostLeavesDump(const std::vector<std::string>& arguments) {
    HostProcess host;
    EXPECT_TRUE(host.Start(arguments));
    const bool dumped = LeavesDump(host.pid());
    EXPECT_EQ(host.WaitForEnd(), 128 + SIGABRT);
    return dumped;
  }

 private:
  rlimit before_ = {};
  const std::filesystem::path working_directory_ = std::filesystem::current_path();
  TempDir dir_;
};

// Whether the machine has any process leave one is seen on a process that does nothing about it.
TEST_F(CoreDumpTest, AHostLeavesNoneUnlessToldTo) {
  const pid_t other = fork();
  if (other == 0) {
    pause();
    _exit(0);
  }
  const bool machine_dumps = LeavesDump(other);
  waitpid(other, nullptr, 0);
  EXPECT_FALSE(HostLeavesDump({}));
  HostProcess host;
  ASSERT_TRUE(host.Start());
  // With a sanitized host a dump would hold what the sanitizer maps.
  if (!host.IsSanitized()) {
    EXPECT_EQ(HostLeavesDump({"--core-dumps"}), machine_dumps);
  }
}

TEST_F(CoreDumpTest, TheLimitIsZeroUnlessToldOtherwise) {
  // The address sanitizer sets the limit to 0 by itself, unless told otherwise, too.
  const char* const options = getenv("ASAN_OPTIONS");
  const std::string before = options == nullptr ? "" : options;
  setenv("ASAN_OPTIONS", (before + ":disable_coredump=0").c_str(), 1);
  const std::string name = "Max core file size";
  const auto limit_of = [&name](const std::string& process) {
    const std::string limits = ReadFile("/proc/" + process + "/limits");
    const size_t begin = limits.find(name) + name.size();
    const size_t text = limits.find_first_not_of(' ', begin);
    return limits.substr(text, limits.find(' ', text) - text);
  };
  HostProcess host;
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(limit_of(std::to_string(host.pid())), "0");
  EXPECT_EQ(host.End(SIGTERM), 0);
  ASSERT_TRUE(host.Start({"--core-dumps"}));
  EXPECT_EQ(limit_of(std::to_string(host.pid())), limit_of("self"));
  EXPECT_EQ(host.End(SIGTERM), 0);
  setenv("ASAN_OPTIONS", before.c_str(), 1);
}

}  // namespace
