// The directories that the library uses through its small buffers.
#ifndef HOST_DIRECTORIES_H
#define HOST_DIRECTORIES_H

#include <cstddef>
#include <string>

#include "status.h"

namespace kiohost {

// The library writes the result document by six shell commands of at most 127 characters each,
// which hold the document's path. These are the longest directory with which a document with an
// empty message is whole, and the longest message that is whole in a given directory.
size_t MaxTempDirLength();
size_t MaxMessageLength(const std::string& temp_dir);

// The longest message that an exchange can give rise to.
size_t LongestMessageLength();

// A directory as the store keeps it, for hosts that are started elsewhere.
std::string AbsoluteDirectory(const std::string& directory);

// Fails unless `directory` exists and the library can use it: its path stands unquoted in shell
// commands and must fit.
Status CheckTempDir(const std::string& directory);
Status CheckScriptDir(const std::string& directory);

}  // namespace kiohost

#endif  // HOST_DIRECTORIES_H
