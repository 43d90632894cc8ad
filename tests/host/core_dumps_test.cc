#include "core_dumps.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// Ends the process with 0 when it is one that is never dumped.
[[noreturn]] void ForbidAndLook() {
  rlimit limit = {1, 1};
  const bool forbidden = prctl(PR_GET_DUMPABLE) == 1 && kiohost::ForbidCoreDumps() &&
                         prctl(PR_GET_DUMPABLE) == 0 && getrlimit(RLIMIT_CORE, &limit) == 0 &&
                         limit.rlim_cur == 0 && limit.rlim_max == 0;
  _exit(forbidden ? 0 : 1);
}

TEST(CoreDumpsTest, NeitherAFileNorAProgramGetsOne) {
  EXPECT_EXIT(ForbidAndLook(), testing::ExitedWithCode(0), "");
}

}  // namespace
