// A store in memory for the library, which lint asks about documents.
#ifndef CTL_SCRATCH_STORE_H
#define CTL_SCRATCH_STORE_H

#include <cstddef>
#include <map>
#include <string>

namespace kioctl {

// The nodes by their paths in lower case.
using Nodes = std::map<std::string, std::string>;

// What the library's five functions read and write.
Nodes& ScratchStore();

std::string LowerCase(std::string text);

// The number that stands at a place of a text, 0 without one.
int NumberAt(const std::string& text, size_t at);

}  // namespace kioctl

#endif  // CTL_SCRATCH_STORE_H
