// Profiles: a store's content as readable text.
//
//     # a comment
//     /sys/friendlyname = Home router
//     /sys/notice       = "  quoted where blanks at the ends or unprintable bytes matter\x0a"
//
// One node a line. Blanks around path and text do not count. Within quotes, \" and \\ stand for the
// quote and the backslash and \xHH for any byte but NUL.
#ifndef HOST_PROFILE_H
#define HOST_PROFILE_H

#include <string>
#include <string_view>
#include <vector>

#include "status.h"
#include "store.h"

namespace kiohost {

// Reads a whole profile. The first broken line fails with its number and changes nothing; a node
// named twice is a broken line.
Status ParseProfile(std::string_view text, std::vector<Node>* nodes);

// The same for a file.
Status ReadProfile(const std::string& file, std::vector<Node>* nodes);

// The nodes as a profile that reads back as the same nodes.
std::string FormatProfile(const std::vector<Node>& nodes);

}  // namespace kiohost

#endif  // HOST_PROFILE_H
