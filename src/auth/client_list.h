// What the key check shares with the list of clients.
#ifndef KIO_AUTH_CLIENT_LIST_H
#define KIO_AUTH_CLIENT_LIST_H

namespace kio::auth {

// How long a login lasts after the last request that passed.
inline constexpr long kLoginSeconds = 300;

}  // namespace kio::auth

#endif
