// Streams of events for GET /events, in the form of server-sent events.
#ifndef HOST_EVENT_STREAMS_H
#define HOST_EVENT_STREAMS_H

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "body_stream.h"
#include "events.h"
#include "numbered_stream.h"

namespace kiohost {

// They belong to the thread of the sockets.
class EventStreams {
 public:
  static constexpr size_t kMost = OpenStreams::kMost;

  // What streams of events go by.
  struct Source {
    const Events* events;
    // Begins the ids of events: so none of an earlier run of the host is taken for one of this run.
    std::string boot;
    // Whether an address is logged in; empty when nobody needs to be.
    std::function<bool(const std::string& address)> is_logged_in;
  };

  explicit EventStreams(Source source) : source_(std::move(source)) {}

  // A stream for a client, or null when there are kMost. It begins behind the event that the client
  // had last, or with the next one.
  std::shared_ptr<BodyStream> Open(const std::string& address,
                                   std::optional<std::string_view> last_id);

 private:
  Source source_;
  OpenStreams open_;
};

}  // namespace kiohost

#endif  // HOST_EVENT_STREAMS_H
