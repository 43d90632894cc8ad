// The commands. Each does its work with one router, prints the result, and throws a Failure when
// the router, or something else, does not let it.
#ifndef CTL_COMMANDS_H
#define CTL_COMMANDS_H

#include "options.h"
#include "output.h"
#include "router.h"

namespace kioctl {

struct Context {
  const Options* options;
  const Output* out;
  Router* router;  // null for a command that needs none
};

// Throws a Failure when several routers would write the same file.
void RefuseOneFileForMany(const Options& options, const std::string& file);

using Command = void (*)(Context* context);

// The command of a name such as "firmware search".
Command FindCommand(const std::string& name);

// Whether a command does without a router.
bool NeedsNoRouter(const std::string& name);

// login, logout, device, wait: session_commands.cc
void RunLogin(Context* context);
void RunLogout(Context* context);
void RunDevice(Context* context);
void RunWait(Context* context);

// events_command.cc
void RunEvents(Context* context);

// settings_commands.cc
void RunSend(Context* context);
void RunConfirm(Context* context);
void RunResult(Context* context);

// variable_commands.cc
void RunGet(Context* context);
void RunSet(Context* context);
void RunValidate(Context* context);
void RunForget(Context* context);
void RunBatch(Context* context);
void RunApply(Context* context);
void RunCommit(Context* context);

// vars_command.cc
void RunVars(Context* context);

// firmware_commands.cc
void RunFirmwareStatus(Context* context);
void RunFirmwareSearch(Context* context);
void RunFirmwareDownload(Context* context);
void RunFirmwareUpgrade(Context* context);

// lint_command.cc; the router may be null
void RunLint(Context* context);
void RunSchema(Context* context);

// replay_command.cc
void RunReplay(Context* context);

// diff_command.cc; it names its routers itself
void RunDiff(Context* context);

// capture_command.cc
void RunCapture(Context* context);

// conform/conform_command.cc; the router is null for a list
void RunConform(Context* context);

// backup_commands.cc
void RunBackup(Context* context);
void RunRestore(Context* context);

}  // namespace kioctl

#endif  // CTL_COMMANDS_H
