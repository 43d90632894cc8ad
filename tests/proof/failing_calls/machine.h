// The machine of the scenarios, all of it in memory: files, commands, the network, the clock and
// the console. So a process that is forked in the middle of a scenario has a machine of its own.
#ifndef KIO_TESTS_PROOF_FAILING_CALLS_MACHINE_H
#define KIO_TESTS_PROOF_FAILING_CALLS_MACHINE_H

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kio::proof {

struct OpenFile {
  std::string path;
  bool is_written = false;
  std::size_t position = 0;
  std::string written = {};
  bool is_full = false;  // nothing more can be written
};

struct Machine {
  static Machine& Get();

  // While it is off, calls are those of the program, and go to the real machine.
  bool is_on = false;

  std::map<std::string, std::string> files;
  // What a download finds, by address.
  std::map<std::string, std::string> server;
  // What the list of processes shows.
  std::string processes;
  std::set<std::string> interfaces_up;
  long uptime = 1000;

  // What the library did, in order. A file that is written is one event, when it is closed.
  std::vector<std::string> trace;
  // The formats of its messages.
  std::set<std::string> formats;

  // What the library holds.
  std::map<int, OpenFile> open_files;
  std::set<int> sockets;
  std::set<void*> blocks;
  std::map<void*, std::size_t> mappings;
  // What it did that is wrong in any case, such as to close what is not open.
  std::vector<std::string> faults;

  void Note(std::string_view what, std::string_view text);
  int LowestDescriptor() const;
  // Does what a command does to the files.
  void RunCommand(const std::string& command);
  // The whole content of the store.
  static std::map<std::string, std::string> Store();
};

}  // namespace kio::proof

#endif
