// What the command line asks for.
#ifndef CTL_OPTIONS_H
#define CTL_OPTIONS_H

#include <optional>
#include <string>
#include <vector>

namespace kioctl {

// Those of conform.
struct ConformOptions {
  std::vector<std::string> cases;  // names and patterns of cases and groups
  std::optional<unsigned long> seed;
  std::string form = "auto";  // auto, text or tap
  std::string junit;
  std::string report;
  std::string deviations;
  std::string control;
  bool disruptive = false;
  bool slow = false;
  bool list = false;
};

struct Options {
  // For all commands.
  std::vector<std::string> routers;
  bool json = false;
  std::string colour = "auto";
  std::string password_file;
  long timeout = 60;

  std::string command;  // with that below it: "firmware search"
  std::string operand;  // the document, file, variable, pattern
  std::optional<std::string> value;

  bool dry_run = false;
  int confirm_within = 0;
  bool cloning = false;
  bool full = false;
  std::string if_match;
  bool take_back = false;
  bool node_path = false;
  bool secrets = false;
  bool catalogue = false;
  std::string changed_since;
  std::string separator;
  bool other_firmware = false;
  bool yes = false;
  std::string output = "-";

  std::string profile;
  std::string form = "text";
  bool fix = false;
  std::string version = "1.1";
  bool firmware_list = false;

  std::string secrets_file;
  bool real_time = false;
  int patience = 5;

  ConformOptions conform;

  int count = 0;
  std::string since;

  bool wait = false;
  bool early = false;
  int grace = 30;
  int promised = 0;
  std::string apply_id;
  std::string boot_id;
};

}  // namespace kioctl

#endif  // CTL_OPTIONS_H
