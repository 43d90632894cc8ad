// The machine of the scenarios: what the library gets of libc that depends on the world. Files, the
// clock, commands, the network and memory are made up; nothing of the real machine is seen.
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
  // What `stat` tells, when it is another than the size of the content.
  std::optional<std::uint64_t> told_size = std::nullopt;
  // Reading at or behind this place fails.
  std::size_t bad_from = std::string::npos;
};

struct Machine {
  // The machine that the library runs on.
  static Machine& Get();

  // While it is off, what is replaced here goes to the real libc.
  bool is_on = false;

  long uptime = 0;
  bool clock_fails = false;
  std::int64_t time_of_day = 0;

  std::map<std::string, File, std::less<>> files;
  // A file whose path ends so is there, too: for paths that the library builds.
  std::map<std::string, File, std::less<>> files_ending;
  bool nothing_opens = false;
  bool nothing_is_written = false;
  // The next file that is opened gets the descriptor 0.
  bool gives_descriptor_0 = false;
  // Reads and writes do less than they are asked for, or are interrupted, each so many calls; 0 for
  // never.
  int interruption = 0;

  // What a command returns, and what it does besides.
  int command_status = 0;
  std::string last_background_command;
  // Runs after each command.
  std::function<void(const std::string& command)> on_command;

  // Interfaces that are up, as a set of bits: 4 for each radio.
  unsigned interfaces_up = 0;
  bool no_socket = false;
  bool no_memory = false;

  // What `signal` was given last.
  void (*handler)(int) = nullptr;

  // Clients that the library may free: their passwords must be gone by then.
  std::vector<const ClientAuthInfo*> clients;
};

// What a command does here.
void RunCommand(std::string_view command);

// Makes events of what the library prints, for the life of the process.
void WatchConsole();

}  // namespace kio::differential

#endif
