#include "core_dumps.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace kiohost {

bool ForbidCoreDumps() {
  // The limit holds for the programs that this one runs, too. A system that hands core dumps to a
  // program does not look at it.
  constexpr rlimit kNone = {0, 0};
  return setrlimit(RLIMIT_CORE, &kNone) == 0 && prctl(PR_SET_DUMPABLE, 0) == 0;
}

}  // namespace kiohost
