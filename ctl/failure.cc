#include "failure.h"

namespace kioctl {

const char* KindOf(ExitCode code) {
  switch (code) {
    case ExitCode::kDone:
      return "done";
    case ExitCode::kRefused:
      return "refused";
    case ExitCode::kUsage:
      return "usage";
    case ExitCode::kNotLoggedIn:
      return "not-logged-in";
    case ExitCode::kUnreachable:
      return "unreachable";
    case ExitCode::kTimeout:
      return "timeout";
    case ExitCode::kNotInForce:
      return "not-in-force";
    case ExitCode::kLocal:
      return "local";
    case ExitCode::kDifferent:
      return "different";
    case ExitCode::kInterrupted:
      return "interrupted";
  }
  return "unknown";
}

Failure Strange(const std::string& what) {
  return {ExitCode::kUnreachable, what,
          "check that --router names a router with this interface; docs/http.md describes it"};
}

Failure Interrupted() {
  return {ExitCode::kInterrupted, "interrupted",
          "nothing was left half-done; kioctl device tells what the router has done"};
}

}  // namespace kioctl
