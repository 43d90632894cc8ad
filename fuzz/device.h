// The device behind the targets: a store in memory, no command run, no log kept.
#ifndef KIO_FUZZ_DEVICE_H
#define KIO_FUZZ_DEVICE_H

#include <string>

namespace kio::fuzz {

// Gives the store the sample device's nodes and empties the record: each input starts afresh.
void ResetDevice();

// Ends the program when a text of the record has lost its terminator.
void CheckRecord();

}  // namespace kio::fuzz

#endif
