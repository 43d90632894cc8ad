// Streams of server-sent events that tell what is numbered from 1 and kept for a while.
#ifndef HOST_NUMBERED_STREAM_H
#define HOST_NUMBERED_STREAM_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "body_stream.h"
#include "json.h"

namespace kiohost {

// The id of an entry: none of an earlier run of the host is taken for one of this run.
std::string StreamId(const std::string& boot, uint64_t number);

// The number of an entry that a client names by its id; nothing for one that this run of the host,
// which has told `last` entries, has not told.
std::optional<uint64_t> NumberOfStreamId(std::string_view id, const std::string& boot,
                                         uint64_t last);

// A server-sent event; one without an id does not change where the client comes back.
std::string StreamBlock(const std::string& id, const char* kind, const Json& data);

class NumberedStream : public BodyStream {
 public:
  State Look(Clock::time_point now) override;
  size_t Take(char* bytes, size_t size) override;
  bool IsOver() const override { return pending_.empty() && next_ > end_; }
  void End() override { EndWith(Last()); }

 protected:
  // Before anything else come the bytes of `begin`.
  NumberedStream(std::string boot, uint64_t next, std::string begin);

  // The numbers of the last entry and of the oldest one that is kept.
  virtual uint64_t Last() const = 0;
  virtual uint64_t Oldest() const = 0;

  // The block of an entry; empty for one that this stream leaves out, nothing for one that is gone.
  virtual std::optional<std::string> BlockOf(uint64_t number) = 0;

  // Called at each look, before anything else.
  virtual void BeforeLook() {}

  // What is sent when entries are gone that the client should get next; `next` is the first that is
  // kept. Empty: the client is lost.
  virtual std::string GapBlock(uint64_t /*missed*/, uint64_t /*next*/) { return {}; }

  const std::string& boot() const { return boot_; }
  // The stream ends with this entry.
  void EndWith(uint64_t number) { end_ = std::min(end_, number); }

 private:
  static constexpr uint64_t kNoEnd = std::numeric_limits<uint64_t>::max();

  bool HasNext() const { return next_ <= std::min(end_, Last()); }
  bool TakeNext();
  // Whether what is gone could be told.
  bool TellGap();

  std::string boot_;
  uint64_t next_;          // the number of the entry that comes next
  uint64_t end_ = kNoEnd;  // the number of the last one that is sent
  uint64_t named_;         // by the last id that was sent
  std::string pending_;    // what was begun with, and not sent in full
  Clock::time_point now_;
  Clock::time_point spoken_;  // when something was last sent
};

// The streams of one kind that are open. They belong to the thread of the sockets.
class OpenStreams {
 public:
  static constexpr size_t kMost = 8;

  bool HasRoom() {
    std::erase_if(streams_, [](const auto& stream) { return stream.expired(); });
    return streams_.size() < kMost;
  }
  std::shared_ptr<BodyStream> Add(std::shared_ptr<BodyStream> stream) {
    streams_.push_back(stream);
    return stream;
  }

 private:
  std::vector<std::weak_ptr<BodyStream>> streams_;
};

}  // namespace kiohost

#endif  // HOST_NUMBERED_STREAM_H
