// The addresses of a connection, as texts.
#ifndef HOST_PEER_ADDRESS_H
#define HOST_PEER_ADDRESS_H

#include <sys/socket.h>

#include <string>
#include <string_view>

namespace kiohost {

// The numeric address of a socket, without port and zone; empty when there is none. An IPv4 address
// has one text, also when it comes in over IPv6.
std::string AddressText(const sockaddr* address);

// The same form of an address that was written by somebody, with or without brackets; empty when
// the text is no address.
std::string AddressText(std::string_view text);

}  // namespace kiohost

#endif  // HOST_PEER_ADDRESS_H
