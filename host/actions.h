// The resync actions that a commit runs.
#ifndef HOST_ACTIONS_H
#define HOST_ACTIONS_H

#include <string>
#include <vector>

#include "command.h"
#include "events.h"

namespace kiohost {

struct NamedAction {
  unsigned int bit;
  const char* name;
};

// The actions of a mask (kioapp/platform.h), in the order in which they run.
std::vector<NamedAction> ActionsOf(unsigned int mask);

// Tells what becomes of the actions of a mask, in the order in which they run: by events as they
// begin and end, and by a line of output for each. The library runs a command for some of them
// alone; the others count as done when the next command begins, or in the end.
class ActionReport {
 public:
  // To be made before the actions run, or before the alarm that will run them. There is one at a
  // time.
  ActionReport(unsigned int mask, Events* events);
  ~ActionReport();
  ActionReport(const ActionReport&) = delete;
  ActionReport& operator=(const ActionReport&) = delete;

  // To be called when they have run. Returns the mask of the actions whose scripts failed.
  unsigned int Finish();

 private:
  void Begin(const std::string& command);
  void End(const CommandResult& result);
  void TellTo(unsigned int end);

  unsigned int left_;  // that were not told of
  unsigned int failed_ = 0;
  Events* events_;
};

}  // namespace kiohost

#endif  // HOST_ACTIONS_H
