// The nodes of the store that several places of the host read.
#ifndef HOST_NODES_H
#define HOST_NODES_H

#include <string>

namespace kiohost {

inline constexpr char kNameNode[] = "/sys/friendlyname";
inline constexpr char kPasswordNode[] = "/sys/user:1/password";
inline constexpr char kModelNode[] = "/sys/modelnumber";
inline constexpr char kFirmwareNode[] = "/fwupgradeinfo/currfwfilename";
inline constexpr char kLanAddressNode[] = "/runtime/zentrolinks/lanip";
// The version of the settings documents.
inline constexpr char kMajorNode[] = "/zentrolinks/specversion/major";
inline constexpr char kMinorNode[] = "/zentrolinks/specversion/minor";

// What the nodes of a radio begin with; its band is "2.4" or "5".
inline std::string RadioNodes(const std::string& band) { return "/lan/wireless" + band + ":1/"; }

}  // namespace kiohost

#endif  // HOST_NODES_H
