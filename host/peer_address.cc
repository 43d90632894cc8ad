#include "peer_address.h"

#include <arpa/inet.h>
#include <netinet/in.h>

namespace kiohost {
namespace {

std::string IPv4Text(const in_addr& address) {
  char text[INET_ADDRSTRLEN] = "";
  inet_ntop(AF_INET, &address, text, sizeof text);
  return text;
}

std::string IPv6Text(const in6_addr& address) {
  if (IN6_IS_ADDR_V4MAPPED(&address)) {
    constexpr size_t kMappedAt = 12;
    in_addr mapped = {};
    static_assert(sizeof mapped + kMappedAt == sizeof address);
    __builtin_memcpy(&mapped, address.s6_addr + kMappedAt, sizeof mapped);
    return IPv4Text(mapped);
  }
  char text[INET6_ADDRSTRLEN] = "";
  inet_ntop(AF_INET6, &address, text, sizeof text);
  return text;
}

}  // namespace

std::string AddressText(const sockaddr* address) {
  if (address == nullptr) {
    return {};
  }
  switch (address->sa_family) {
    case AF_INET:
      return IPv4Text(reinterpret_cast<const sockaddr_in*>(address)->sin_addr);
    case AF_INET6:
      return IPv6Text(reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr);
    default:
      return {};
  }
}

std::string AddressText(std::string_view text) {
  if (text.size() >= 2 && text.front() == '[' && text.back() == ']') {
    text = text.substr(1, text.size() - 2);
  }
  const std::string terminated(text);
  in_addr ipv4 = {};
  if (inet_pton(AF_INET, terminated.c_str(), &ipv4) == 1) {
    return IPv4Text(ipv4);
  }
  in6_addr ipv6 = {};
  return inet_pton(AF_INET6, terminated.c_str(), &ipv6) == 1 ? IPv6Text(ipv6) : std::string();
}

}  // namespace kiohost
