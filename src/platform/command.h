// The only way to the shell.
#ifndef KIO_PLATFORM_COMMAND_H
#define KIO_PLATFORM_COMMAND_H

namespace kio::platform {

// Runs a shell command and returns its status as `system` does.
int RunCommand(const char* command);

}  // namespace kio::platform

#endif
