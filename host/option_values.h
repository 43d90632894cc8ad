// Values of a command line, and what is said of wrong ones.
#ifndef HOST_OPTION_VALUES_H
#define HOST_OPTION_VALUES_H

#include <string>

#include "status.h"

namespace kiohost {

Status UsageError(const std::string& reason);

// Reads a number from `min` to `max`. `name` is what the user knows it by.
Status ParseNumber(const char* name, const char* text, int min, int max, int* number);

}  // namespace kiohost

#endif  // HOST_OPTION_VALUES_H
