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

// The temporary directory of a host that is told of no other: private, and as short as the commands
// want it.
std::string DefaultTempDir();

// Whether the text of the store's node stands for the default: it is empty, the default of any
// user, or "/tmp", which was the default once.
bool MeansDefaultTempDir(const std::string& directory);

// Makes a directory that is for this user alone, unless it is there.
Status MakePrivateDirectory(const std::string& directory);

// Fails when others can write to a directory: they could plant links where files are written. The
// sticky bit does not help against that. `purpose` is what it is used for ("temporary").
Status CheckPrivate(const std::string& directory, const std::string& purpose);

// Fails unless `directory` exists and the library can use it: its path stands unquoted in shell
// commands and must fit.
Status CheckTempDir(const std::string& directory);
Status CheckScriptDir(const std::string& directory);

// Fails unless the directory for what the scripts write exists.
Status CheckStateDir(const std::string& directory);

}  // namespace kiohost

#endif  // HOST_DIRECTORIES_H
