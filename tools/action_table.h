// The actions of a commit: what the library does for each of them and what it leaves to the host.
#ifndef TOOLS_ACTION_TABLE_H
#define TOOLS_ACTION_TABLE_H

#include <string>
#include <vector>

namespace kio::tools {

struct Action {
  unsigned int bit = 0;
  std::string name = {};
  int seconds = 0;           // that it takes, as get_ExternalCall_UseSec says
  std::string asked = {};    // by what
  std::string library = {};  // what the library does itself; empty for nothing
  std::string script = {};   // that it runs, below the script directory
  std::string host = {};     // what is left to the host
};

// All actions that the library knows, in the order of their bits.
std::vector<Action> ListActions();

// The table of the actions, in Markdown.
std::string ActionTable(const std::vector<Action>& actions);

}  // namespace kio::tools

#endif  // TOOLS_ACTION_TABLE_H
