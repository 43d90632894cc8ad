#include "commands.h"

#include <map>

namespace kioctl {

Command FindCommand(const std::string& name) {
  static const std::map<std::string, Command> commands = {
      {"login", RunLogin},
      {"logout", RunLogout},
      {"device", RunDevice},
      {"wait", RunWait},
      {"events", RunEvents},
      {"send", RunSend},
      {"confirm", RunConfirm},
      {"result", RunResult},
      {"get", RunGet},
      {"set", RunSet},
      {"validate", RunValidate},
      {"forget", RunForget},
      {"vars", RunVars},
      {"batch", RunBatch},
      {"apply", RunApply},
      {"commit", RunCommit},
      {"firmware status", RunFirmwareStatus},
      {"firmware search", RunFirmwareSearch},
      {"firmware download", RunFirmwareDownload},
      {"firmware upgrade", RunFirmwareUpgrade},
      {"backup", RunBackup},
      {"restore", RunRestore},
      {"replay", RunReplay},
      {"lint", RunLint},
      {"schema", RunSchema},
  };
  return commands.at(name);
}

bool NeedsNoRouter(const std::string& name) { return name == "lint" || name == "schema"; }

}  // namespace kioctl
