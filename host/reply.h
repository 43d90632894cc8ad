// What the host answers to a request, and what is left to do when the answer has left.
#ifndef HOST_REPLY_H
#define HOST_REPLY_H

#include <microhttpd.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kiohost {

// Work that a request leaves behind. Its request keeps its turn until the work is done.
struct AfterReply {
  // Does the work. Called once: when the answer was delivered, or its client has gone, and `ready`
  // says so; or when the host stops.
  std::function<void()> run;
  // Whether the work can be done yet, asked after each wait of the host; empty: at once.
  std::function<bool()> ready;
  // How long the router is away for it, as the app was told.
  int wait_seconds = 0;
};

struct Reply {
  unsigned int status = MHD_HTTP_OK;
  std::string content_type = "text/plain; charset=utf-8";
  std::string body;
  std::vector<std::pair<std::string, std::string>> headers;  // further ones
  AfterReply after_reply;                                    // none without `run`
};

// A reply of one line that says what is wrong.
Reply ErrorReply(unsigned int status, const std::string& reason);

// All headers that the host chooses, those of every answer among them.
std::vector<std::pair<std::string, std::string>> AllHeaders(const Reply& reply);

// The bytes of a reply with which the host itself ends a connection, past the HTTP server.
std::string RawResponse(const Reply& reply);

}  // namespace kiohost

#endif  // HOST_REPLY_H
