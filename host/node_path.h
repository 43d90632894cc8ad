// The form of store paths: "/lan/wireless2.4:1/accesscontrol/acrule#".
#ifndef HOST_NODE_PATH_H
#define HOST_NODE_PATH_H

#include <cstddef>
#include <string_view>

namespace kiohost {

inline constexpr size_t kMaxPathLength = 255;

// The library reads the highest instance in use and may then visit all numbers below it, so they
// are limited.
inline constexpr int kMaxInstance = 4096;

// True for a path that may hold a text: one or more names, each with a '/' before it. A name is
// made of letters, digits, '.', '_' and '-', and may end in ':' and an instance number from 1 to
// `kMaxInstance` without leading zeros.
bool IsNodePath(std::string_view path);

// True for a path that counts instances: a node path without an instance number at its end,
// followed by '#'.
bool IsCountPath(std::string_view path);

}  // namespace kiohost

#endif  // HOST_NODE_PATH_H
