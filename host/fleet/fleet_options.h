// The command line of kiofleet.
#ifndef HOST_FLEET_FLEET_OPTIONS_H
#define HOST_FLEET_FLEET_OPTIONS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "status.h"

namespace kiofleet {

using kiohost::ExitCode;
using kiohost::Status;

struct FleetOptions {
  enum class Command { kServe, kHelp, kVersion };

  Command command = Command::kServe;
  int count = 0;
  std::string profile;                   // a name or a file; empty: the default one
  std::string directory;                 // of the stores; empty: one that is removed at the end
  int port = 0;                          // of the first router; 0: any free one for each
  std::optional<int> control;            // the same of the control ports; absent: there are none
  std::optional<uint32_t> address;       // of the first router; absent: 127.0.0.1 for all
  std::string name = "Router";           // the number is added to it
  std::vector<std::string> for_kiohost;  // arguments for each router
};

Status ParseFleetOptions(int argc, char** argv, FleetOptions* options);

// The text of --help.
const char* FleetHelp();

// The dotted form of an address.
std::string AddressText(uint32_t address);

}  // namespace kiofleet

#endif  // HOST_FLEET_FLEET_OPTIONS_H
