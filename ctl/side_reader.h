// What is compared, by what the command line says.
#ifndef CTL_SIDE_READER_H
#define CTL_SIDE_READER_H

#include <string>

#include "options.h"
#include "router.h"
#include "side.h"

namespace kioctl {

// A router by its URL, a delivered profile by its name, or a file that holds an archive (sealed or
// not), a settings document or a profile. With `secrets` routers are asked for those as well.
Side ReadSide(const std::string& word, const Options& options);

// What a router says now.
Side SideOfRouter(Router* router, bool secrets);

// The archive in a text; opened with the passphrase when it is sealed.
std::string OpenedArchive(const std::string& text);

}  // namespace kioctl

#endif  // CTL_SIDE_READER_H
