// What the host answers to a request, and the work that is left to do after the answer.
#ifndef HOST_REPLY_H
#define HOST_REPLY_H

#include <microhttpd.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "body_stream.h"
#include "json.h"

namespace kiohost {

// Work that a request leaves behind. Its request keeps its turn until the work is done.
struct AfterReply {
  // Does the work. It is called once: when the answer was sent or its client has gone, and `ready`
  // says so; or else when the host stops.
  std::function<void()> run;
  // Whether the work can be done now. It is asked after each wait of the host. Empty: always.
  std::function<bool()> ready;
  // How long the router cannot be reached meanwhile, as the app was told.
  int wait_seconds = 0;

  // Whether it may run commands, which take their time.
  bool runs_commands = true;
};

// What a refusal tells programs: problem details as in RFC 9457.
struct Refusal {
  unsigned int status = MHD_HTTP_BAD_REQUEST;
  std::string detail;             // what is wrong, in words
  Json members = Json::object();  // further ones, as far as they are known
};

struct Reply {
  unsigned int status = MHD_HTTP_OK;
  std::string content_type = "text/plain; charset=utf-8";
  std::string cache_control = "no-store";
  std::string body;
  std::vector<std::pair<std::string, std::string>> headers;  // further ones
  std::optional<Refusal> refusal;      // sent instead to a client that prefers problem details
  AfterReply after_reply;              // none without `run`
  std::shared_ptr<BodyStream> stream;  // sent in the place of `body`
};

// A refusal: a line that says what is wrong, or problem details.
Reply ErrorReply(unsigned int status, const std::string& reason);

// A refusal of what can be tried again after a time. 429 and 503 are always such ones.
Reply TryLater(unsigned int status, const std::string& reason, int64_t seconds);

// The reply in the form that a client prefers by its header Accept.
Reply InAcceptedForm(Reply reply, std::string_view accept);

// All headers that the host chooses: the reply's own and those of every reply.
std::vector<std::pair<std::string, std::string>> AllHeaders(const Reply& reply);

// The bytes of a reply that the host sends itself, without the HTTP server, to end a connection.
std::string RawResponse(const Reply& reply);

}  // namespace kiohost

#endif  // HOST_REPLY_H
