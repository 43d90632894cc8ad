// The commands by which the library writes its documents, run without a shell.
#ifndef HOST_ECHO_COMMAND_H
#define HOST_ECHO_COMMAND_H

#include <optional>
#include <string>
#include <string_view>

namespace kiohost {

// What "echo 'TEXT' > FILE" or "echo 'TEXT' >> FILE" asks for.
struct EchoCommand {
  std::string text;  // without its quotes
  bool appends = false;
  std::string file;
};

// The parts of a command of exactly this shape, as the library writes it: each quote in the text is
// escaped as '\'', and the file is an absolute path of characters that mean nothing to a shell.
// Nothing for any other command.
std::optional<EchoCommand> ReadEchoCommand(std::string_view command);

// Does what a router's shell does with the command; its echo takes backslashes as they are. Returns
// the wait status of such a shell, or nothing, without any effect, when the file is not a regular
// one that can be written: a shell then has to say why, or to wait.
std::optional<int> RunEchoCommand(const EchoCommand& command);

}  // namespace kiohost

#endif  // HOST_ECHO_COMMAND_H
