// What a test expects of the journal.
#ifndef HOST_CONTROL_EXPECTATION_H
#define HOST_CONTROL_EXPECTATION_H

#include <vector>

#include "json.h"

namespace kiohost {

// Compares entries of the journal with a list of expectations, in order. Of the entries, those
// count whose kind stands in `kinds`; writes that were undone only count when an expectation names
// "undone". Each member of an expectation must be in its entry; a text may have the wildcards of a
// shell. The answer has "ok" and, without it, the first difference: its place in the list, and what
// was expected and found there, null for nothing.
Json Compare(const std::vector<Json>& entries, const Json& kinds, const Json& expected);

}  // namespace kiohost

#endif  // HOST_CONTROL_EXPECTATION_H
