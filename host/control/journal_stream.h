// The journal as a stream of server-sent events.
#ifndef HOST_CONTROL_JOURNAL_STREAM_H
#define HOST_CONTROL_JOURNAL_STREAM_H

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "journal.h"
#include "numbered_stream.h"

namespace kiohost {

// They belong to the thread of the control port's sockets.
class JournalStreams {
 public:
  // What a client asks for.
  struct Asked {
    std::optional<std::string> last_id;  // of the entry that it had last; decides before `since`
    uint64_t since = 0;
    std::vector<std::string> kinds;  // empty: all
  };

  // `boot` begins the ids of entries.
  JournalStreams(const Journal* journal, std::string boot)
      : journal_(journal), boot_(std::move(boot)) {}

  // A stream for a client, or null when there are too many.
  std::shared_ptr<BodyStream> Open(Asked asked);

  // Whether anybody waits for news. Any thread may ask.
  bool IsRead() const { return *readers_ > 0; }

 private:
  const Journal* journal_;
  std::string boot_;
  OpenStreams open_;
  std::shared_ptr<std::atomic<int>> readers_ = std::make_shared<std::atomic<int>>(0);
};

}  // namespace kiohost

#endif  // HOST_CONTROL_JOURNAL_STREAM_H
