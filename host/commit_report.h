// What is told of a commit, to clients and to the store.
#ifndef HOST_COMMIT_REPORT_H
#define HOST_COMMIT_REPORT_H

#include "actions.h"
#include "events.h"
#include "exchange.h"

namespace kiohost {

class CommitReport {
 public:
  // To be made before the actions of the mask run (actions.h).
  CommitReport(Exchange* exchange, Events* events, unsigned int mask)
      : exchange_(exchange), events_(events), mask_(mask), actions_(mask, events) {}

  // To be called when they have run: notes so in the store.
  void Finish();

 private:
  Exchange* exchange_;
  Events* events_;
  unsigned int mask_;
  ActionReport actions_;
};

}  // namespace kiohost

#endif  // HOST_COMMIT_REPORT_H
