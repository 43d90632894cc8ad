// What reading and setting variables takes: no heap, and reading no system call.
#include <gtest/gtest.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "kioapp/kioapp.h"
#include "libc_calls.h"
#include "testing/memory_store.h"
#include "testing/temporary_root.h"

namespace kio::test {
namespace {

constexpr const char* kRead[] = {"rss_DeviceName",       "rss_Ver_major",
                                 "rss_Upl_IP",           "rss_Upl_Ets_EncryptionKey",
                                 "rss_Wl5_Acl_WlAcMode", "/Device/Wireless2.4/WirelessName",
                                 "rss_Nothing"};

// From here on the process is killed by any system call but its exit.
bool ForbidSystemCalls() {
  sock_filter program[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_exit_group, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
  };
  const sock_fprog filter = {static_cast<unsigned short>(std::size(program)), program};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

// Runs `function` in a process without system calls. Returns its result; or the negative number of
// the signal that ended it, -SIGSYS after a system call.
int RunWithoutSystemCalls(int (*function)()) {
  constexpr int kNoFilter = 99;
  const pid_t child = fork();
  if (child == 0) {
    syscall(SYS_exit_group, ForbidSystemCalls() ? function() : kNoFilter);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

int ReadAll() {
  char value[KIOAPP_VAR_SIZE];
  int read = 0;
  for (const char* name : kRead) {
    read += get_RssVar(name, value, 0) == KIOAPP_VAR_DONE ? 1 : 0;
    read += get_RssVar(name, value, 1) == KIOAPP_VAR_DONE ? 1 : 0;
  }
  return read;
}

constexpr int kReadings = 2 * (static_cast<int>(std::size(kRead)) - 1);

class VariableBudgetTest : public ::testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    directory_ = std::string(TemporaryRoot()) + KIO_TEMPORARY_NAME;
    ASSERT_NE(mkdtemp(directory_.data()), nullptr);
    std::snprintf(daemon_log_path, sizeof(daemon_log_path), "%s", directory_.c_str());
    daemon_log_file_size_k = 100000;
    daemon_log_level = GetParam();
    UseLibcFormatting(true);
    StoreFactoryDevice();
    init_RssVar();
  }
  void TearDown() override { std::filesystem::remove_all(directory_); }

 private:
  std::string directory_;
};

TEST_P(VariableBudgetTest, ReadingAndSettingTakeNoHeap) {
  char value[KIOAPP_VAR_SIZE] = "Attic";
  char batch[] = "rss_DeviceName=Loft&rss_Wl2_WirelessName=Sofa";
  const long before = HeapCalls();
  const int read = ReadAll();
  const unsigned int set = set_RssVar("rss_DeviceName", value);
  const int checked = validate_RssVar("rss_Upl_IP", value);
  const int batch_code = do_RssVar_Parser(batch, '&', value, 0);
  EXPECT_EQ(HeapCalls() - before, 0);
  EXPECT_EQ(read, kReadings);
  EXPECT_EQ(set, 0U);
  EXPECT_EQ(checked, 2);
  EXPECT_EQ(batch_code, 0) << value;
}

INSTANTIATE_TEST_SUITE_P(Levels, VariableBudgetTest, ::testing::Values(4, 5, 7));

using VariableCallTest = VariableBudgetTest;

TEST_P(VariableCallTest, ReadingTakesNoSystemCall) {
  EXPECT_EQ(RunWithoutSystemCalls(ReadAll), kReadings);
}

// Otherwise the test before would prove nothing.
TEST_P(VariableCallTest, ASystemCallIsSeen) {
  EXPECT_EQ(RunWithoutSystemCalls([] { return static_cast<int>(getppid()); }), -SIGSYS);
  EXPECT_EQ(RunWithoutSystemCalls([] {
              daemon_log_level = 7;
              return ReadAll();
            }),
            -SIGSYS);
}

INSTANTIATE_TEST_SUITE_P(Levels, VariableCallTest, ::testing::Values(4, 5));

}  // namespace
}  // namespace kio::test
