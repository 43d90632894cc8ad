// The words that may come next on a command line, for the shells' completion.
#ifndef CTL_COMPLETION_H
#define CTL_COMPLETION_H

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace kioctl {

// Prints the words that may stand in place of the last of `words`, one a line: commands and
// options, each with a tab and its description behind it.
void Complete(const CLI::App& app, const std::vector<std::string>& words);

}  // namespace kioctl

#endif  // CTL_COMPLETION_H
