// The resync actions that a commit runs.
#ifndef HOST_ACTIONS_H
#define HOST_ACTIONS_H

#include <string>
#include <vector>

namespace kiohost {

// A line for each action of a mask (kioapp/platform.h), in the order in which they run.
std::vector<std::string> DescribeActions(unsigned int mask);

// Says on standard output that the actions of a mask ran.
void PrintActions(unsigned int mask);

}  // namespace kiohost

#endif  // HOST_ACTIONS_H
