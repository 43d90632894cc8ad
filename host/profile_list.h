// The delivered profiles: the files of a directory, which are called by their names without the
// ending.
#ifndef HOST_PROFILE_LIST_H
#define HOST_PROFILE_LIST_H

#include <filesystem>
#include <string>

#include "status.h"

namespace kiohost {

// A line for each, with the name and what the first comment of the file says.
std::string ProfileList(const std::filesystem::path& directory);

// Finds the file of a profile that is told by its name, or else by the file itself. Without a name
// it is the default profile.
Status FindProfile(const std::string& name, const std::filesystem::path& directory,
                   std::string* file);

}  // namespace kiohost

#endif  // HOST_PROFILE_LIST_H
