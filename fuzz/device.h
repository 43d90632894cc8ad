// The device behind the targets: a store in memory, no command run, no log kept.
#ifndef KIO_FUZZ_DEVICE_H
#define KIO_FUZZ_DEVICE_H

#include <cstddef>
#include <string>

#include "input.h"

namespace kio::fuzz {

// Gives the store the sample device's nodes and empties the record: each input starts afresh. Every
// message of the log is formatted for one size of input in eight, which takes most of a run; the
// file is off.
void ResetDevice(std::size_t input_size);

// Nodes of the store: "path=text" sets one, "path" deletes one with what is below it. An instance
// with a number of more than two digits is left out, and so is a count of instances: the library
// deletes instances one by one, so a host keeps their numbers small.
void ChangeNode(const std::string& line);

// Changes a node for each line at the front of the input that begins with '/', up to a limit.
void ChangeNodes(Input* input);

// Loads the record for variables.
void StartVariables();

// Ends the program when a text of the record has lost its terminator.
void CheckRecord();

}  // namespace kio::fuzz

#endif
