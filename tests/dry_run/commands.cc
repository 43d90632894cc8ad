#include "commands.h"

#include "../../host/command.h"
#include "../../host/echo_command.h"

namespace {

std::vector<std::string> g_commands;
int g_holders = 0;

}  // namespace

const std::vector<std::string>& CommandsSoFar() { return g_commands; }

namespace kiohost {

HeldCommands::HeldCommands() { ++g_holders; }
HeldCommands::~HeldCommands() { --g_holders; }
// NOLINTNEXTLINE(performance-unnecessary-value-param): the host's own keeps it
void WatchCommands(CommandWatch /*watch*/) {}
std::string DescribeStatus(const CommandResult& /*result*/) { return {}; }

}  // namespace kiohost

extern "C" int system(const char* command) {
  if (g_holders == 0) {
    g_commands.emplace_back(command);
    // Other commands do nothing.
    if (const auto echo = kiohost::ReadEchoCommand(command)) {
      kiohost::RunEchoCommand(*echo);
    }
  }
  return 0;
}
