#include "http_client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

namespace {

constexpr int kReadMilliseconds = 20000;
constexpr int kMillisecondsPerSecond = 1000;
constexpr char kHeadEnd[] = "\r\n\r\n";

// The number that a text begins with, 0 without one.
template <typename Number>
Number ToNumber(const std::string& text) {
  constexpr int kDecimal = 10;
  return static_cast<Number>(std::strtoul(text.c_str(), nullptr, kDecimal));
}

// What a test has told of. It may have clients in several threads.
std::mutex g_mutex;
std::set<int> g_control_ports;

}  // namespace

void NoteControlPort(int port) {
  const std::lock_guard lock(g_mutex);
  g_control_ports.insert(port);
}

std::string HttpResponse::Header(const std::string& name) const {
  for (size_t at = head.find("\r\n"); at != std::string::npos; at = head.find("\r\n", at)) {
    at += 2;
    if (strncasecmp(head.c_str() + at, (name + ": ").c_str(), name.size() + 2) == 0) {
      const size_t begin = at + name.size() + 2;
      return head.substr(begin, head.find("\r\n", begin) - begin);
    }
  }
  return {};
}

Connection::Connection(int port, const std::string& from, int receive_buffer)
    : fd_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)), port_(port) {
  if (receive_buffer > 0) {
    setsockopt(fd_, SOL_SOCKET, SO_RCVBUF, &receive_buffer, sizeof receive_buffer);
  }
  sockaddr_in own = {};
  own.sin_family = AF_INET;
  inet_pton(AF_INET, from.c_str(), &own.sin_addr);
  // Without it the port would be taken for good, and there would be fewer for other addresses.
  const int yes = 1;
  setsockopt(fd_, IPPROTO_IP, IP_BIND_ADDRESS_NO_PORT, &yes, sizeof yes);
  const bool bound = bind(fd_, reinterpret_cast<const sockaddr*>(&own), sizeof own) == 0;
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (!bound || connect(fd_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    close(fd_);
    fd_ = -1;
  }
}

Connection::~Connection() {
  if (fd_ >= 0) {
    close(fd_);
  }
}

bool Connection::Send(const std::string& bytes) {
  // Pieces of a request do not begin with its line.
  const std::string line = bytes.substr(0, bytes.find("\r\n"));
  if (line.find(" HTTP/1.") != std::string::npos) {
    asked_.push_back(line);
  }
  size_t sent = 0;
  while (sent < bytes.size()) {
    const ssize_t count = send(fd_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (count <= 0) {
      return false;
    }
    sent += static_cast<size_t>(count);
  }
  return true;
}

HttpResponse Connection::ReadHead() {
  HttpResponse response = TakeHead();
  Note(response, false);
  return response;
}

HttpResponse Connection::TakeHead() {
  size_t head_end = 0;
  while ((head_end = received_.find(kHeadEnd)) == std::string::npos) {
    if (!ReadMore()) {
      return {};
    }
  }
  HttpResponse response;
  response.head = received_.substr(0, head_end + 2);
  const size_t blank = response.head.find(' ');
  response.status = blank == std::string::npos ? 0 : ToNumber<int>(response.head.substr(blank));
  received_.erase(0, head_end + sizeof kHeadEnd - 1);
  return response;
}

HttpResponse Connection::Read() {
  HttpResponse response = TakeHead();
  const auto length = ToNumber<size_t>(response.Header("Content-Length"));
  while (received_.size() < length) {
    if (!ReadMore()) {
      return {};
    }
  }
  response.body = received_.substr(0, length);
  received_.erase(0, length);
  Note(response, true);
  return response;
}

std::optional<std::string> Connection::ReadChunk() {
  constexpr int kHexadecimal = 16;
  constexpr size_t kLineEnd = 2;
  size_t line_end = 0;
  while ((line_end = received_.find("\r\n")) == std::string::npos) {
    if (!ReadMore()) {
      return std::nullopt;
    }
  }
  const size_t size = std::strtoul(received_.c_str(), nullptr, kHexadecimal);
  const size_t begin = line_end + kLineEnd;
  while (received_.size() < begin + size + kLineEnd) {
    if (!ReadMore()) {
      return std::nullopt;
    }
  }
  std::string chunk = received_.substr(begin, size);
  received_.erase(0, begin + size + kLineEnd);
  return chunk;
}

void Connection::Note(const HttpResponse& response, bool has_body) {
  const char* directory = std::getenv("KIO_ANSWERS");
  if (directory == nullptr || response.status == 0) {
    return;
  }
  nlohmann::json note = {{"request", asked_.empty() ? "" : asked_.front()},
                         {"head", response.head}};
  if (!asked_.empty() && response.status >= 200) {
    asked_.pop_front();
  }
  if (has_body) {
    note["body"] = response.body;
  }
  const std::string line =
      note.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
  // A long line takes several writes.
  const std::lock_guard lock(g_mutex);
  const char* const prefix = g_control_ports.contains(port_) ? "/control-" : "/";
  std::ofstream file(directory + (prefix + std::to_string(getpid())), std::ios::app);
  file << line;
}

std::string Connection::ReadToEnd() {
  while (ReadMore()) {
  }
  return std::exchange(received_, {});
}

bool Connection::WaitForClose(int seconds) {
  pollfd wait = {fd_, POLLIN, 0};
  char byte = 0;
  return poll(&wait, 1, seconds * kMillisecondsPerSecond) == 1 && recv(fd_, &byte, 1, 0) <= 0;
}

bool Connection::StaysSilent(int seconds) {
  pollfd wait = {fd_, POLLIN, 0};
  return poll(&wait, 1, seconds * kMillisecondsPerSecond) == 0;
}

bool Connection::HasMore(int milliseconds) {
  pollfd wait = {fd_, POLLIN, 0};
  return !received_.empty() || poll(&wait, 1, milliseconds) == 1;
}

void Connection::Abort() {
  const linger now = {1, 0};
  setsockopt(fd_, SOL_SOCKET, SO_LINGER, &now, sizeof now);
  close(fd_);
  fd_ = -1;
}

bool Connection::ReadMore() {
  constexpr size_t kPiece = 4096;
  pollfd wait = {fd_, POLLIN, 0};
  char piece[kPiece];
  if (fd_ < 0 || poll(&wait, 1, kReadMilliseconds) != 1) {
    return false;
  }
  const ssize_t count = recv(fd_, piece, sizeof piece, 0);
  if (count <= 0) {
    return false;
  }
  received_.append(piece, static_cast<size_t>(count));
  return true;
}

std::string BodyRequest(const std::string& method, const std::string& url,
                        const std::string& body) {
  return method + " " + url +
         " HTTP/1.1\r\nHost: router\r\nContent-Length: " + std::to_string(body.size()) +
         "\r\n\r\n" + body;
}

std::string PostRequest(const std::string& url, const std::string& body) {
  return BodyRequest("POST", url, body);
}

HttpResponse Post(int port, const std::string& url, const std::string& body) {
  return Request(port, PostRequest(url, body));
}

HttpResponse Put(int port, const std::string& url, const std::string& body) {
  return Request(port, BodyRequest("PUT", url, body));
}

HttpResponse Get(int port, const std::string& url) {
  return Request(port, "GET " + url + " HTTP/1.1\r\nHost: router\r\n\r\n");
}

HttpResponse Delete(int port, const std::string& url) {
  return Request(port, "DELETE " + url + " HTTP/1.1\r\nHost: router\r\n\r\n");
}

HttpResponse Request(int port, const std::string& request) {
  Connection connection(port);
  return connection.Send(request) ? connection.Read() : HttpResponse();
}

bool WaitForTurn(int port) {
  constexpr int kNotFound = 404;
  return Post(port, "/actions/None", "").status == kNotFound;
}
