#include "silent_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>

namespace {

constexpr int kPollPatience = 20000;  // milliseconds

bool IsReadable(int fd) {
  pollfd wanted = {fd, POLLIN, 0};
  return poll(&wanted, 1, kPollPatience) == 1;
}

}  // namespace

SilentServer::SilentServer() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  if (bind(listener_, reinterpret_cast<const sockaddr*>(&address), length) == 0 &&
      listen(listener_, 1) == 0 &&
      getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length) == 0) {
    port_ = ntohs(address.sin_port);
  }
}

SilentServer::~SilentServer() {
  ends_ = true;
  if (dripping_.joinable()) {
    dripping_.join();
  }
  close(client_);
  close(listener_);
}

bool SilentServer::WaitForClient() {
  if (IsReadable(listener_)) {
    client_ = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  }
  return client_ >= 0;
}

void SilentServer::Drip() {
  dripping_ = std::thread([this] {
    const std::string head = "HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n";
    send(client_, head.data(), head.size(), MSG_NOSIGNAL);
    while (!ends_ && send(client_, "x", 1, MSG_NOSIGNAL) == 1) {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  });
}

bool SilentServer::WaitForClientToLeave() const {
  std::array<char, 1024> request;
  ssize_t count = 0;
  do {
    if (!IsReadable(client_)) {
      return false;
    }
    count = recv(client_, request.data(), request.size(), 0);
  } while (count > 0 || (count < 0 && errno == EINTR));
  return true;
}
