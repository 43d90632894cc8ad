// The command line.
#ifndef HOST_OPTIONS_H
#define HOST_OPTIONS_H

#include <optional>
#include <string>
#include <vector>

#include "status.h"
#include "store.h"

namespace kiohost {

struct Options {
  enum class Command { kServe, kReplay, kDump, kGet, kProfiles, kHelp, kVersion };

  Command command = Command::kServe;
  std::string node;  // of kDump (empty: all) and kGet
  std::string store = "kiohost.db";
  std::string profile;     // a name or a file
  bool strict = false;     // what the library could not use is refused
  std::vector<Node> sets;  // nodes that are written at the start
  std::string temp_dir;    // empty: as the store says, or the default
  std::string script_dir;  // empty: as the store says
  std::string state_dir;   // empty: the temporary directory
  std::string listen = "127.0.0.1";
  std::optional<int> port;  // absent: as the store says
  int log_level = 5;
  bool factory_reset = false;
  bool shared_temp_dir = false;  // others may write to the directories
  bool real_waits = false;
  bool open = false;
  bool core_dumps = false;
  std::string control_listen;  // empty: there is no control port
  int control_port = 0;
  bool control_anywhere = false;  // it may listen on another address than a loopback one
  bool manual_clock = false;
  bool show_secrets = false;                    // in the journal of the control port
  std::string record;                           // a file for the session; empty: none
  std::string record_secrets;                   // a file for its secrets; empty: none
  std::string replay;                           // of kReplay: the record,
  std::string replay_secrets;                   // the file of its secrets, or empty,
  std::string against;                          // and the router; empty: this one
  bool always_shell = false;                    // for the library's documents, too
  std::vector<std::string> names = {"router"};  // the router's, in Host headers
};

Status ParseOptions(int argc, char** argv, Options* options);

// The text of --help.
const char* HelpText();

}  // namespace kiohost

#endif  // HOST_OPTIONS_H
