// What the key check shares with the list of clients.
#ifndef KIO_AUTH_CLIENT_LIST_H
#define KIO_AUTH_CLIENT_LIST_H

#include <cstdint>

namespace kio::auth {

// How long a login lasts after the last request that passed.
inline constexpr long kLoginSeconds = 300;

// When a login of that uptime lapses. Counts beyond the range of a 32-bit long, as the uptime does.
constexpr std::uint32_t LogoutAfter(long uptime) {
  return static_cast<std::uint32_t>(uptime) + static_cast<std::uint32_t>(kLoginSeconds);
}

}  // namespace kio::auth

#endif
