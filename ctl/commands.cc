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
      {"diff", RunDiff},
      {"capture", RunCapture},
      {"conform", RunConform},
      {"lint", RunLint},
      {"schema", RunSchema},
  };
  return commands.at(name);
}

void RefuseOneFileForMany(const Options& options, const std::string& file) {
  if (options.routers.size() > 1 && file != "-") {
    throw Failure{ExitCode::kUsage, "several routers would write " + file,
                  "name one router, and a file for each"};
  }
}

bool NeedsNoRouter(const std::string& name) {
  return name == "lint" || name == "schema" || name == "diff";
}

}  // namespace kioctl
