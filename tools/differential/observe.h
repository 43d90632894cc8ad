// What the library changes in its exported data.
#ifndef KIO_DIFFERENTIAL_OBSERVE_H
#define KIO_DIFFERENTIAL_OBSERVE_H

#include "kioapp/auth.h"
#include "transcript.h"

namespace kio::differential {

// A second list of clients, beside the library's own.
extern ClientAuthInfo* g_other_clients;

// Makes events of what has changed in the exported data since the last Observe or AcceptChanges.
void Observe();

// Makes no events of the changes so far: the scenario itself has made them.
void AcceptChanges();

// Notes the clients of both lists before a call that may free them (Machine::clients).
void WatchClients();

// Makes an event of a call and its answer, and of what the call has changed.
inline void Answer(std::string_view name, Parts parts) {
  Event(name, parts);
  Observe();
}

// The offset of a pointer in a text that was given to the library; -1 for null, -2 when it points
// elsewhere.
long OffsetIn(const char* pointer, const char* text, std::size_t size);

}  // namespace kio::differential

#endif
