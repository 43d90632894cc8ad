// Profiles: a store's content as readable text.
//
//     # a comment
//     include dual-band-router.profile
//     without /lan/wireless5:1
//     /sys/friendlyname = Home router
//     /sys/notice       = "  quoted where blanks at the ends or unprintable bytes matter\x0a"
//
// One node a line. Blanks around path and text do not count. Within quotes, \" and \\ stand for the
// quote and the backslash and \xHH for any byte but NUL. A file may begin with what other files
// hold, named from its own directory, without some nodes and what is below them.
#ifndef HOST_PROFILE_H
#define HOST_PROFILE_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "status.h"
#include "store.h"

namespace kiohost {

// A node and where it is written: "router.profile: line 3".
struct ProfileNode {
  Node node;
  std::string place;
};

// Reads a whole profile that includes nothing. The first broken line fails with its number and
// changes nothing; a node named twice is a broken line.
Status ParseProfile(std::string_view text, std::vector<Node>* nodes);

// Reads a file with all that it includes. A node may stand in a file and in one that it includes;
// the outer one counts.
Status ReadProfile(const std::string& file, std::vector<ProfileNode>* nodes);

// The text of a file; nothing when it cannot be read.
using ProfileFiles = std::function<std::optional<std::string>(const std::string& file)>;

// The same with files that stand elsewhere than on a disk.
Status ReadProfileOf(const ProfileFiles& files, const std::string& file,
                     std::vector<ProfileNode>* nodes);

// Reads "path = text". Returns what is wrong with it, or an empty text.
std::string ParseNode(std::string_view line, Node* node);

// Adds a node, or replaces the one with its path.
void PutNode(ProfileNode node, std::vector<ProfileNode>* nodes);

// The node with a path; null when there is none.
const ProfileNode* FindNode(const std::vector<ProfileNode>& nodes, std::string_view path);

// The nodes without their places.
std::vector<Node> PlainNodes(const std::vector<ProfileNode>& nodes);

// The nodes as a profile that reads back as the same nodes.
std::string FormatProfile(const std::vector<Node>& nodes);

}  // namespace kiohost

#endif  // HOST_PROFILE_H
