// One router of a fleet: a kiohost in a process of its own.
#ifndef HOST_FLEET_ROUTER_PROCESS_H
#define HOST_FLEET_ROUTER_PROCESS_H

#include <sys/types.h>

#include <csignal>
#include <string>
#include <vector>

#include "status.h"

namespace kiofleet {

class RouterProcess {
 public:
  // What kiohost prints goes to the file `log`.
  RouterProcess(std::vector<std::string> arguments, std::string log);
  ~RouterProcess();
  RouterProcess(RouterProcess&& other) noexcept;
  RouterProcess(const RouterProcess&) = delete;
  RouterProcess& operator=(const RouterProcess&) = delete;

  // Starts the program, with the signals that `signals` does not hold back. It gets SIGTERM when
  // this process ends, in whatever way.
  kiohost::Status Start(const std::string& program, const sigset_t& signals);

  // Takes what it has printed until now.
  void ReadOutput();

  // Notes that it has ended, with a status as wait(2) gives it.
  void NoteEnd(int wait_status);

  // "exit code 4: cannot read the profile": how it ended, and what it said last.
  std::string HowItEnded() const;

  bool runs() const { return pid_ > 0; }
  pid_t pid() const { return pid_; }
  int output() const { return output_; }  // to be read; negative for none
  // Where it serves; empty before it does.
  const std::string& url() const { return url_; }
  const std::string& control_url() const { return control_url_; }
  const std::string& log() const { return log_; }

 private:
  void TakeLine(const std::string& line);
  void CloseOutput();

  std::vector<std::string> arguments_;
  std::string log_;
  pid_t pid_ = -1;
  int output_ = -1;
  int log_file_ = -1;
  int wait_status_ = 0;
  std::string line_;  // that is not complete yet
  std::string url_;
  std::string control_url_;
};

}  // namespace kiofleet

#endif  // HOST_FLEET_ROUTER_PROCESS_H
