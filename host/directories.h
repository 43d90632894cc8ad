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

// The length of the longest message of an exchange.
size_t LongestMessageLength();

// The absolute path of a directory, so that it holds for a host that is started elsewhere.
std::string AbsoluteDirectory(const std::string& directory);

// The temporary directory when no other is given: private, and short enough for every message.
std::string DefaultTempDir();

// Whether the text of the store's node means the default: an empty text, the default of any user,
// or "/tmp", which earlier versions wrote.
bool MeansDefaultTempDir(const std::string& directory);

// Makes a directory for this user alone, unless it is there already.
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
