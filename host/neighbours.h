// The addresses of the machines on the same links, as the kernel has come to know them.
#ifndef HOST_NEIGHBOURS_H
#define HOST_NEIGHBOURS_H

#include <string>

namespace kiohost {

// The hardware address of an IPv4 neighbour; empty when it is not known. `table` is in the form of
// the kernel's.
std::string MacOf(const std::string& address, const std::string& table = "/proc/net/arp");

}  // namespace kiohost

#endif  // HOST_NEIGHBOURS_H
