// The shell commands of the library: what became of them, and what they left running.
#ifndef HOST_COMMAND_H
#define HOST_COMMAND_H

#include <functional>
#include <string>
#include <vector>

namespace kiohost {

struct CommandResult {
  std::string command;
  int status = -1;   // as of waitpid; -1 when it could not be started
  int ended_by = 0;  // the signal by which the stopping host ended it

  bool ok() const { return status == 0; }
};

// "exit status 7" and the like.
std::string DescribeStatus(const CommandResult& result);

// Whether a shell runs the commands that write documents, too. By default the host writes those
// itself (echo_command.h).
void AlwaysRunShell(bool always);

// Is told of each command of the library that a shell runs, as it begins and when it has ended. One
// watch at a time: a later one takes the place of the one before.
struct CommandWatch {
  std::function<void(const std::string& command)> begins;
  std::function<void(const CommandResult& result)> ended;
};
void WatchCommands(CommandWatch watch);

// The results since the last call, the oldest first. Of many, the latest are kept.
std::vector<CommandResult> TakeCommandResults();

// As long as one lives, the library's commands do not run: each counts as done well, and leaves no
// result.
class HeldCommands {
 public:
  HeldCommands();
  ~HeldCommands();
  HeldCommands(const HeldCommands&) = delete;
  HeldCommands& operator=(const HeldCommands&) = delete;
};

// Collects processes that commands left in the background and that have ended since.
void NoteEndedProcesses();

// Ends processes that commands left running in their process groups, by SIGKILL if needed.
void EndLeftProcesses();

}  // namespace kiohost

#endif  // HOST_COMMAND_H
