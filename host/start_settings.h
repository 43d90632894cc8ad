// What the store is given before the host serves: a profile, and the nodes of the command line.
#ifndef HOST_START_SETTINGS_H
#define HOST_START_SETTINGS_H

#include <filesystem>

#include "options.h"
#include "status.h"
#include "store.h"

namespace kiohost {

// The delivered profiles, those of `directory`: a line each with the name and what its first
// comment says.
std::string ProfileList(const std::filesystem::path& directory);

// Fills a store that is empty, or that is to be reset, with the profile, and writes the nodes of
// --set. `directory` has the delivered profiles. What the library could not use is warned of, or
// refused: then the store stays as it was.
Status ApplyStartSettings(const Options& options, const std::filesystem::path& directory,
                          Store* store);

}  // namespace kiohost

#endif  // HOST_START_SETTINGS_H
