// What the library leaves behind in its exported data.
#ifndef KIO_DIFFERENTIAL_OBSERVE_H
#define KIO_DIFFERENTIAL_OBSERVE_H

#include "kioapp/auth.h"
#include "transcript.h"

namespace kio::differential {

// A second list of clients, beside the library's own.
extern ClientAuthInfo* g_other_clients;

// Makes events of what has changed in the exported data since the last call of one of these two.
void Observe();

// Takes the data as they are: the scenario has changed them itself.
void Accept();

// Before a call: the clients of both lists, whose passwords must be gone when they are freed.
void WatchClients();

// A call of the library, or an answer of it, with what has changed.
inline void Answer(std::string_view name, Parts parts) {
  Event(name, parts);
  Observe();
}

// The place of a pointer in a text that was given to the library; -1 for null, -2 for elsewhere.
long Place(const char* pointer, const char* text, std::size_t size);

}  // namespace kio::differential

#endif
