// The machine of the scenarios: all that libc gives the library and that depends on the machine.
// Files, the clock, commands, the network and memory are made up, and nothing of the real machine
// is used.
#ifndef KIO_DIFFERENTIAL_MACHINE_H
#define KIO_DIFFERENTIAL_MACHINE_H

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kioapp/auth.h"

namespace kio::differential {

struct File {
  std::string content;
  // The size that `stat` reports, when it differs from that of the content.
  std::optional<std::uint64_t> reported_size = std::nullopt;
  // A read at or behind this offset fails.
  std::size_t bad_from = std::string::npos;
};

struct Machine {
  // The machine that the library runs on.
  static Machine& Get();

  // While it is off, the functions that replace libc's call the real ones.
  bool is_on = false;

  long uptime = 0;
  bool clock_fails = false;
  std::int64_t time_of_day = 0;

  std::map<std::string, File, std::less<>> files;
  // Files by the end of their path: for paths that the library builds.
  std::map<std::string, File, std::less<>> files_ending;
  bool nothing_opens = false;
  bool nothing_is_written = false;
  // The next file that is opened gets the descriptor 0.
  bool gives_descriptor_0 = false;
  // When it is N and not 0: every Nth call is interrupted, and reads and writes move fewer bytes
  // than they are asked for.
  int interruption = 0;

  // The status of every command.
  int command_status = 0;
  // The last command that was started in the background.
  std::string last_background_command;
  // Called after each command.
  std::function<void(const std::string& command)> on_command;

  // Interfaces that are up, as a set of bits: 4 for each radio.
  unsigned interfaces_up = 0;
  bool no_socket = false;
  bool no_memory = false;

  // The handler of the last call of `signal`.
  void (*handler)(int) = nullptr;

  // Clients that the library may free. The event of a freed client has its password, which must
  // have been cleared.
  std::vector<const ClientAuthInfo*> clients;
};

// Does what a command does to the files of this machine.
void RunCommand(std::string_view command);

// From here on, what the library prints becomes events.
void WatchConsole();

}  // namespace kio::differential

#endif
