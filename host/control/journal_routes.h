// The journal on the control port: /journal, /journal/stream and /journal/expect.
#ifndef HOST_CONTROL_JOURNAL_ROUTES_H
#define HOST_CONTROL_JOURNAL_ROUTES_H

#include <functional>

#include "control/journal_stream.h"
#include "journal.h"
#include "router.h"

namespace kiohost {

// `settle` has all done that is due. It is called in the thread of the library before the journal
// is read.
void AddJournalRoutes(const Journal* journal, JournalStreams* streams,
                      const std::function<void()>& settle, Router* router);

}  // namespace kiohost

#endif  // HOST_CONTROL_JOURNAL_ROUTES_H
