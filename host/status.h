// The outcome of a step of the host that may fail, with the exit code it leads to.
#ifndef HOST_STATUS_H
#define HOST_STATUS_H

#include <string>
#include <utility>

namespace kiohost {

// Exit codes of the program; `--help` and docs/http.md list them.
enum class ExitCode {
  kSuccess = 0,
  kNodeAbsent = 1,
  kUsage = 2,
  kStore = 3,
  kProfile = 4,
  kDirectory = 5,
  kNetwork = 6,
  kOutput = 7,
};

class [[nodiscard]] Status {
 public:
  Status() = default;
  Status(ExitCode code, std::string reason) : code_(code), reason_(std::move(reason)) {}

  bool ok() const { return code_ == ExitCode::kSuccess; }
  ExitCode code() const { return code_; }
  const std::string& reason() const { return reason_; }

 private:
  ExitCode code_ = ExitCode::kSuccess;
  std::string reason_;
};

}  // namespace kiohost

#endif  // HOST_STATUS_H
