// What the key check shares with the list of clients.
#ifndef KIO_AUTH_CLIENT_LIST_H
#define KIO_AUTH_CLIENT_LIST_H

#include <cstdint>

namespace kio::auth {

// How long a login lasts after the last request that passed.
inline constexpr long kLoginSeconds = 300;

// The uptime at which a login lapses whose last request passed at `uptime`. It goes on beyond the
// range of a 32-bit long.
constexpr std::uint32_t LogoutAfter(long uptime) {
  return static_cast<std::uint32_t>(uptime) + static_cast<std::uint32_t>(kLoginSeconds);
}

}  // namespace kio::auth

#endif
