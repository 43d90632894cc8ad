#include "conform/raw.h"

#include <curl/curl.h>
#include <poll.h>

#include <array>
#include <cstdlib>

#include "failure.h"

namespace kioctl::conform {
namespace {

// Whether the text is an answer with all of its body.
bool IsWhole(const std::string& text) {
  const size_t head = text.find("\r\n\r\n");
  if (head == std::string::npos) {
    return false;
  }
  std::string lower;
  for (const char c : text.substr(0, head)) {
    lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  const size_t length = lower.find("\r\ncontent-length:");
  constexpr size_t kName = 17;
  const long body =
      length == std::string::npos ? 0 : std::strtol(lower.c_str() + length + kName, nullptr, 10);
  return text.size() >= head + 4 + static_cast<size_t>(body);
}

}  // namespace

RawConnection::RawConnection(const std::string& url, std::chrono::milliseconds patience)
    : handle_(curl_easy_init()), patience_(patience) {
  constexpr long kConnectSeconds = 5;
  curl_easy_setopt(handle_, CURLOPT_URL, url.c_str());
  curl_easy_setopt(handle_, CURLOPT_CONNECT_ONLY, 1L);
  curl_easy_setopt(handle_, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(handle_, CURLOPT_PROXY, "");
  curl_easy_setopt(handle_, CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
  curl_socket_t socket = CURL_SOCKET_BAD;
  if (curl_easy_perform(handle_) != CURLE_OK ||
      curl_easy_getinfo(handle_, CURLINFO_ACTIVESOCKET, &socket) != CURLE_OK) {
    curl_easy_cleanup(handle_);
    throw Failure{ExitCode::kUnreachable, "no connection to " + url,
                  "check the address and that the router is on"};
  }
  socket_ = socket;
}

RawConnection::~RawConnection() { curl_easy_cleanup(handle_); }

void RawConnection::Send(const std::string& bytes) {
  size_t done = 0;
  while (done < bytes.size()) {
    size_t sent = 0;
    const CURLcode code = curl_easy_send(handle_, bytes.data() + done, bytes.size() - done, &sent);
    done += sent;
    if (code == CURLE_AGAIN) {
      pollfd ready = {socket_, POLLOUT, 0};
      if (poll(&ready, 1, static_cast<int>(patience_.count())) <= 0) {
        return;
      }
    } else if (code != CURLE_OK) {
      // The router has closed the connection, as it may. What it said is read.
      return;
    }
  }
}

std::string RawConnection::Read() { return ReadUntil(false); }

std::string RawConnection::ReadAnswer() { return ReadUntil(true); }

std::string RawConnection::ReadUntil(bool one_answer) {
  constexpr size_t kBlock = 4096;
  std::string text;
  while (!one_answer || !IsWhole(text)) {
    std::array<char, kBlock> block = {};
    size_t got = 0;
    const CURLcode code = curl_easy_recv(handle_, block.data(), block.size(), &got);
    if (code == CURLE_AGAIN) {
      pollfd ready = {socket_, POLLIN, 0};
      if (poll(&ready, 1, static_cast<int>(patience_.count())) <= 0) {
        break;
      }
    } else if (code != CURLE_OK || got == 0) {
      break;
    } else {
      text.append(block.data(), got);
    }
  }
  return text;
}

}  // namespace kioctl::conform
