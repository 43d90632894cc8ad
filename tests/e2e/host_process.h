// Runs kiohost in a directory of its own.
#ifndef TESTS_E2E_HOST_PROCESS_H
#define TESTS_E2E_HOST_PROCESS_H

#include <sys/types.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "../host/temp_dir.h"

// Waits until `condition` holds; returns whether it came to hold within some seconds. `pause` is
// for conditions that take time themselves.
template <typename Condition>
bool WaitFor(Condition condition, std::chrono::milliseconds pause = std::chrono::milliseconds(2)) {
  constexpr auto kPatience = std::chrono::seconds(20);
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) {
      return false;
    }
    std::this_thread::sleep_for(pause);
  }
  return true;
}

// The kiohost that is tested: that of this build, or the one that KIO_E2E_HOST names.
std::string HostProgram();

struct CommandResult {
  int exit_code = -1;  // 128 and the signal's number when a signal ended it
  std::string output;
  std::string errors;
};

// Runs kiohost to its end.
CommandResult RunKiohost(const std::vector<std::string>& arguments);

// The delivered factory settings with more lines at the end, of which a later one for the same node
// replaces the earlier.
std::string ProfileWith(const std::vector<std::string>& lines);

void WriteFile(const std::string& file, const std::string& content);
std::string ReadFile(const std::string& file);

// A resync script that writes "begun", goes on when the file `go` is there, and writes "done". It
// ends with the test, too.
inline constexpr char kHeldScript[] =
    "#!/bin/sh\ncd \"$KIOHOST_STATE_DIR\"\necho begun >begun\n"
    "until [ -e go ] || [ ! -e begun ]; do sleep 0.02; done\necho done >>done\n";

// How often a text holds another.
size_t Count(const std::string& text, const std::string& part);

// A host that serves on a free loopback port, with the store, the temporary directory and the
// scripts in `dir()`. It is killed, if it still runs, when it goes out of scope.
class HostProcess {
 public:
  HostProcess();
  ~HostProcess();
  HostProcess(const HostProcess&) = delete;
  HostProcess& operator=(const HostProcess&) = delete;

  // Uses other factory settings than the delivered ones.
  void UseProfile(const std::string& profile);

  // Leaves the temporary directory to the store and the default.
  void UseTempDirOfTheStore();

  // Replaces a resync script.
  void UseScript(const std::string& name, const std::string& script);

  // Starts the host and waits until it listens. Returns false when it does not within some seconds.
  // Nobody needs to log in.
  bool Start(const std::vector<std::string>& more_arguments = {});

  // The same with the login.
  bool StartClosed(const std::vector<std::string>& more_arguments = {});

  const TempDir& dir() const { return dir_; }
  int port() const { return port_; }
  // The control port, if it was asked for.
  int control_port() const { return control_port_; }
  pid_t pid() const { return pid_; }

  // Sends a signal and waits for the end; returns the exit code as CommandResult does.
  int End(int signal_number);

  // Waits for the host to end by itself.
  int WaitForEnd();

  // What the host said on standard output since its last start, and on standard error.
  std::string Output() const;
  std::string Errors() const;

  // Waits some seconds for a text in the output.
  bool WaitForOutput(const std::string& text) const;

  // The processor time that the host has taken, in milliseconds; its memory that no other process
  // shares, in KiB; and its open descriptors.
  long ProcessorTime() const;
  long PrivateMemory() const;
  size_t Descriptors() const;
  // Whether a sanitizer watches the host.
  bool IsSanitized() const;

  // The store as a profile, read by another kiohost. The nodes of the directories are left out.
  std::string Dump() const;

  // The text of a node; "(absent)" without it.
  std::string Node(const std::string& path) const;

 private:
  TempDir dir_;
  std::vector<std::string> arguments_;
  pid_t pid_ = -1;
  int port_ = 0;
  int control_port_ = 0;
};

#endif  // TESTS_E2E_HOST_PROCESS_H
