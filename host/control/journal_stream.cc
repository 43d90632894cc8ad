#include "control/journal_stream.h"

#include <algorithm>

#include "uptime.h"

namespace kiohost {
namespace {

// What is told instead of entries that were dropped. Their number is not known when they are those
// of an earlier run of the host.
std::string LostBlock(const std::string& boot, std::optional<uint64_t> missed, uint64_t next) {
  return StreamBlock({}, "lost",
                     {{"uptime", UptimeSeconds()},
                      {"kind", "lost"},
                      {"entries", missed ? Json(*missed) : Json()},
                      {"next", StreamId(boot, next)}});
}

class JournalStream : public NumberedStream {
 public:
  using Readers = std::shared_ptr<std::atomic<int>>;

  struct Begin {
    uint64_t next;
    std::string bytes;
  };
  JournalStream(const Journal* journal, const std::string& boot, Begin begin,
                std::vector<std::string> kinds, Readers readers)
      : NumberedStream(boot, begin.next, std::move(begin.bytes)),
        journal_(journal),
        kinds_(std::move(kinds)),
        readers_(std::move(readers)) {
    ++*readers_;
  }
  ~JournalStream() override { --*readers_; }
  JournalStream(const JournalStream&) = delete;
  JournalStream& operator=(const JournalStream&) = delete;

 private:
  // Entries of a transaction wait until it is known whether they stay.
  uint64_t Last() const override { return journal_->settled(); }
  uint64_t Oldest() const override { return journal_->dropped() + 1; }
  std::string GapBlock(uint64_t missed, uint64_t next) override {
    return LostBlock(boot(), missed, next);
  }
  std::optional<std::string> BlockOf(uint64_t number) override;

  const Journal* journal_;
  std::vector<std::string> kinds_;
  Readers readers_;
};

std::optional<std::string> JournalStream::BlockOf(uint64_t number) {
  const std::optional<Json> entry = journal_->Find(number);
  if (!entry) {
    return std::nullopt;
  }
  const auto kind = (*entry)["kind"].get<std::string>();
  const bool is_asked_for =
      kinds_.empty() || std::find(kinds_.begin(), kinds_.end(), kind) != kinds_.end();
  return is_asked_for ? StreamBlock(StreamId(boot(), number), kind.c_str(), *entry) : std::string();
}

}  // namespace

std::shared_ptr<BodyStream> JournalStreams::Open(Asked asked) {
  if (!open_.HasRoom()) {
    return nullptr;
  }
  const uint64_t oldest = journal_->dropped() + 1;
  const uint64_t newest = journal_->settled();
  JournalStream::Begin begin = {std::min(asked.since, newest) + 1, {}};
  if (asked.last_id) {
    const std::optional<uint64_t> last = NumberOfStreamId(*asked.last_id, boot_, newest);
    begin = last ? JournalStream::Begin{*last + 1, {}}
                 : JournalStream::Begin{oldest, LostBlock(boot_, std::nullopt, oldest)};
  }
  return open_.Add(std::make_shared<JournalStream>(journal_, boot_, std::move(begin),
                                                   std::move(asked.kinds), readers_));
}

}  // namespace kiohost
