// Reading the command line. The one file that knows its words.
#ifndef CTL_COMMAND_LINE_H
#define CTL_COMMAND_LINE_H

#include <optional>

#include "failure.h"
#include "options.h"

namespace kioctl {

// Reads the command line. Gives the exit code when there is nothing more to do: after --help, a
// mistake, or the words that complete a line.
std::optional<ExitCode> ReadCommandLine(int argc, char** argv, Options* options);

}  // namespace kioctl

#endif  // CTL_COMMAND_LINE_H
