// How a command ends that does not do what was asked for.
#ifndef CTL_FAILURE_H
#define CTL_FAILURE_H

#include <nlohmann/json.hpp>
#include <string>

namespace kioctl {

enum class ExitCode {
  kDone = 0,
  kRefused = 1,
  kUsage = 2,
  kNotLoggedIn = 3,
  kUnreachable = 4,
  kTimeout = 5,
  kNotInForce = 6,
  kLocal = 7,
  kDifferent = 8,
  kInterrupted = 130,  // as a shell reports SIGINT
};

// Thrown by whatever cannot go on, and caught once for each router. The JSON library and the reader
// of the command line throw as well, so nothing here is compiled without exceptions.
struct Failure {
  ExitCode code = ExitCode::kLocal;
  std::string what;
  std::string next;                                   // what to do about it
  nlohmann::json details = nlohmann::json::object();  // more members for --json
  bool is_reported = false;                           // the output has it already
};

// The word for the kind of a failure, as --json has it.
const char* KindOf(ExitCode code);

// The answer is not what the interface promises.
Failure Strange(const std::string& what);

// Ends the command when Ctrl-C was pressed.
Failure Interrupted();

}  // namespace kioctl

#endif  // CTL_FAILURE_H
