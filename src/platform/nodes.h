// Store nodes that several rooms read.
#ifndef KIO_PLATFORM_NODES_H
#define KIO_PLATFORM_NODES_H

namespace kio::platform {

// Quirk "tempdirecory": the node is spelled so.
inline constexpr const char* kTempDirectoryNode = "/zentrolinks/tempdirecory";
// Quirk "scriptdirecory": the node is spelled so.
inline constexpr const char* kScriptDirectoryNode = "/zentrolinks/scriptdirecory";
inline constexpr const char* kPasswordNode = "/sys/user:1/password";

}  // namespace kio::platform

#endif
