#include "core_dumps.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace kiohost {

bool ForbidCoreDumps() {
  // The limit is inherited by the programs that this one runs. A system that pipes core dumps to a
  // program ignores it, so the process is made undumpable as well.
  constexpr rlimit kNone = {0, 0};
  return setrlimit(RLIMIT_CORE, &kNone) == 0 && prctl(PR_SET_DUMPABLE, 0) == 0;
}

}  // namespace kiohost
