// The files that a command reads and writes.
#ifndef CTL_FILES_H
#define CTL_FILES_H

#include <string>

namespace kioctl {

// The whole of a file, of standard input for "-". Throws a Failure.
std::string ReadInput(const std::string& file);

// Writes a file for the user alone: the whole of it, or nothing. Standard output for "-".
void WriteOutput(const std::string& file, const std::string& content);

}  // namespace kioctl

#endif  // CTL_FILES_H
