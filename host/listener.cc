#include "listener.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <memory>

namespace kiohost {
namespace {

struct AddressDeleter {
  void operator()(addrinfo* info) const { freeaddrinfo(info); }
};
using AddressInfo = std::unique_ptr<addrinfo, AddressDeleter>;

AddressInfo Resolve(const std::string& address, int port) {
  addrinfo hints = {};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
  addrinfo* found = nullptr;
  if (getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found) != 0) {
    return nullptr;
  }
  return AddressInfo(found);
}

bool BindAndListen(int fd, const addrinfo& address) {
  // A router that comes back from a restart must get its port although old connections linger.
  const int on = 1;
  return setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) == 0 &&
         bind(fd, address.ai_addr, address.ai_addrlen) == 0 && listen(fd, SOMAXCONN) == 0;
}

int BoundPort(int fd) {
  union {
    sockaddr any;
    sockaddr_in v4;
    sockaddr_in6 v6;
  } address = {};
  socklen_t length = sizeof address;
  if (getsockname(fd, &address.any, &length) != 0) {
    return 0;
  }
  return ntohs(address.any.sa_family == AF_INET6 ? address.v6.sin6_port : address.v4.sin_port);
}

}  // namespace

Status Listen(const std::string& address, int* port, FileDescriptor* listener) {
  const AddressInfo info = Resolve(address, *port);
  if (info == nullptr) {
    return {ExitCode::kNetwork, "\"" + address + "\" is not a numeric address"};
  }
  // The resync scripts must not inherit the socket: they may outlive the host.
  FileDescriptor fd(socket(info->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!fd.valid() || !BindAndListen(fd.get(), *info)) {
    return {ExitCode::kNetwork,
            "cannot listen on " + HostAndPort(address, *port) + ": " + std::strerror(errno)};
  }
  *port = BoundPort(fd.get());
  *listener = std::move(fd);
  return {};
}

bool IsLoopback(const std::string& address) {
  in_addr v4 = {};
  in6_addr v6 = {};
  return (inet_pton(AF_INET, address.c_str(), &v4) == 1 &&
          (ntohl(v4.s_addr) >> IN_CLASSA_NSHIFT) == IN_LOOPBACKNET) ||
         (inet_pton(AF_INET6, address.c_str(), &v6) == 1 && IN6_IS_ADDR_LOOPBACK(&v6));
}

std::string HostAndPort(const std::string& address, int port) {
  const bool is_v6 = address.find(':') != std::string::npos;
  return (is_v6 ? "[" + address + "]" : address) + ":" + std::to_string(port);
}

}  // namespace kiohost
