// Which nodes hold secrets: what the host tells without being asked for secrets masks their texts.
#ifndef HOST_SECRETS_H
#define HOST_SECRETS_H

#include <string_view>

namespace kiohost {

// What stands for a secret that is not told.
inline constexpr std::string_view kMasked = "********";

// Whether the node of a path holds a password or a key.
bool IsSecret(std::string_view path);

}  // namespace kiohost

#endif  // HOST_SECRETS_H
