#include "event_streams.h"

#include <cstdint>

#include "numbered_stream.h"
#include "uptime.h"

namespace kiohost {
namespace {

using Source = EventStreams::Source;

std::string TextOf(const Events::Happened& happened, const std::string& boot) {
  const std::string id = StreamId(boot, happened.number);
  const char* const kind = KindWord(happened.event.kind);
  Json data = {{"id", id}, {"uptime", happened.uptime}, {"kind", kind}};
  data.update(happened.event.about);
  if (!happened.event.text.empty()) {
    data["text"] = happened.event.text;
  }
  return StreamBlock(id, kind, data);
}

class EventStream : public NumberedStream {
 public:
  // `next` is the first event that is told, `opened` the last one before the stream.
  EventStream(const Source& source, std::string address, uint64_t next, uint64_t opened,
              std::string begin)
      : NumberedStream(source.boot, next, std::move(begin)),
        source_(source),
        address_(std::move(address)),
        opened_(opened) {}

 private:
  uint64_t Last() const override { return source_.events->last(); }
  uint64_t Oldest() const override { return source_.events->oldest(); }
  std::optional<std::string> BlockOf(uint64_t number) override;
  void BeforeLook() override {
    if (source_.is_logged_in && !source_.is_logged_in(address_)) {
      End();
    }
  }

  Source source_;
  std::string address_;  // of the client
  uint64_t opened_;
};

std::optional<std::string> EventStream::BlockOf(uint64_t number) {
  const std::optional<Events::Happened> happened = source_.events->Find(number);
  if (!happened) {
    return std::nullopt;
  }
  const EventKind kind = happened->event.kind;
  // One before the stream has ended an earlier login.
  const bool ends_login =
      number > opened_ && (kind == EventKind::kLogout || kind == EventKind::kLapse);
  if (source_.is_logged_in && ends_login && happened->event.about["client"] == address_) {
    EndWith(number);
  }
  return TextOf(*happened, source_.boot);
}

}  // namespace

std::shared_ptr<BodyStream> EventStreams::Open(const std::string& address,
                                               std::optional<std::string_view> last_id) {
  if (!open_.HasRoom()) {
    return nullptr;
  }
  const uint64_t opened = source_.events->last();
  uint64_t next = opened + 1;
  // An id alone is no event. A client that comes back names it.
  std::string begin = "id: " + StreamId(source_.boot, opened) + "\n\n";
  if (last_id) {
    const std::optional<uint64_t> last = NumberOfStreamId(*last_id, source_.boot, opened);
    next = std::max(last.value_or(0) + 1, source_.events->oldest());
    begin = last && next == *last + 1 ? ""
                                      : StreamBlock({}, "lost",
                                                    {{"id", nullptr},
                                                     {"uptime", UptimeSeconds()},
                                                     {"kind", "lost"},
                                                     {"next", StreamId(source_.boot, next)}});
  }
  return open_.Add(std::make_shared<EventStream>(source_, address, next, opened, std::move(begin)));
}

}  // namespace kiohost
