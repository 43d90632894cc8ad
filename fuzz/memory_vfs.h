// SQLite's files in memory: what it opens stands in a map, and is never locked.
#ifndef KIO_FUZZ_MEMORY_VFS_H
#define KIO_FUZZ_MEMORY_VFS_H

#include <map>
#include <string>

namespace kio::fuzz {

// The files by their names. From the first call on, SQLite uses them and no others.
std::map<std::string, std::string>& MemoryFiles();

}  // namespace kio::fuzz

#endif
