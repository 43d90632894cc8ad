// The deviations that are agreed on: a file with a line `name: reason` for each.
#ifndef CTL_CONFORM_DEVIATIONS_H
#define CTL_CONFORM_DEVIATIONS_H

#include <map>
#include <string>

namespace kioctl::conform {

using Deviations = std::map<std::string, std::string>;

// Blank lines, and those that begin with "#", do not count. Gives what is wrong, with the number of
// the line; an empty text when nothing is.
std::string ReadDeviations(const std::string& text, Deviations* deviations);

}  // namespace kioctl::conform

#endif  // CTL_CONFORM_DEVIATIONS_H
