#include "event_streams.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <utility>

#include "uptime.h"

namespace kiohost {
namespace {

// A reader that has gone without a word is found by a line that it does not take.
constexpr std::chrono::seconds kLongestSilence(15);
constexpr char kComment[] = ": no news\n\n";
constexpr uint64_t kNoEnd = std::numeric_limits<uint64_t>::max();

using Source = EventStreams::Source;

std::string IdOf(const std::string& boot, uint64_t number) {
  return boot + "-" + std::to_string(number);
}

// The number of an event that the client names; nothing for one that this run of the host has not
// told.
std::optional<uint64_t> NumberOf(std::string_view id, const Source& source) {
  if (!id.starts_with(source.boot + "-")) {
    return std::nullopt;
  }
  id.remove_prefix(source.boot.size() + 1);
  uint64_t number = 0;
  const auto [stop, error] = std::from_chars(id.data(), id.data() + id.size(), number);
  const bool is_number = error == std::errc() && stop == id.data() + id.size();
  return is_number && number <= source.events->last() ? std::optional(number) : std::nullopt;
}

std::string Block(const std::string& id, const char* kind, const Json& data) {
  return (id.empty() ? "" : "id: " + id + "\n") + "event: " + kind + "\ndata: " + JsonLine(data) +
         "\n\n";
}

std::string TextOf(const Events::Happened& happened, const std::string& boot) {
  const std::string id = IdOf(boot, happened.number);
  const char* const kind = KindWord(happened.event.kind);
  Json data = {{"id", id}, {"uptime", happened.uptime}, {"kind", kind}};
  data.update(happened.event.about);
  if (!happened.event.text.empty()) {
    data["text"] = happened.event.text;
  }
  return Block(id, kind, data);
}

class EventStream : public BodyStream {
 public:
  EventStream(Source source, std::string address, std::optional<std::string_view> last_id);

  State Look(Clock::time_point now) override;
  size_t Take(char* bytes, size_t size) override;
  bool IsOver() const override { return pending_.empty() && next_ > end_; }
  void End() override { end_ = std::min(end_, source_.events->last()); }

 private:
  bool HasNext() const { return next_ <= std::min(end_, source_.events->last()); }
  void TakeNext();

  Source source_;
  std::string address_;    // of the client
  uint64_t opened_;        // the number of the last event before the stream
  uint64_t next_;          // the number of the event that comes next
  uint64_t end_ = kNoEnd;  // the number of the last one that is sent
  std::string pending_;    // what was begun with, and not sent in full
  Clock::time_point now_;
  Clock::time_point spoken_;  // when something was last sent
};

EventStream::EventStream(Source source, std::string address,
                         std::optional<std::string_view> last_id)
    : source_(std::move(source)),
      address_(std::move(address)),
      opened_(source_.events->last()),
      next_(opened_ + 1),
      now_(Clock::now()),
      spoken_(now_) {
  if (!last_id) {
    // An id alone is no event. A client that comes back names it.
    pending_ = "id: " + IdOf(source_.boot, next_ - 1) + "\n\n";
    return;
  }
  const std::optional<uint64_t> last = NumberOf(*last_id, source_);
  next_ = std::max(last.value_or(0) + 1, source_.events->oldest());
  if (!last || next_ != *last + 1) {
    pending_ = Block({}, "lost",
                     {{"id", nullptr},
                      {"uptime", UptimeSeconds()},
                      {"kind", "lost"},
                      {"next", IdOf(source_.boot, next_)}});
  }
}

BodyStream::State EventStream::Look(Clock::time_point now) {
  now_ = now;
  if (source_.is_logged_in && !source_.is_logged_in(address_)) {
    End();
  }
  if (IsOver()) {
    return State::kOver;
  }
  if (HasNext() && next_ < source_.events->oldest()) {
    return State::kLost;
  }
  if (pending_.empty() && !HasNext() && now - spoken_ >= kLongestSilence) {
    pending_ = kComment;
  }
  return pending_.empty() && !HasNext() ? State::kWaits : State::kHasBytes;
}

size_t EventStream::Take(char* bytes, size_t size) {
  size_t taken = 0;
  while (taken < size) {
    if (pending_.empty()) {
      TakeNext();
    }
    if (pending_.empty()) {
      break;
    }
    const size_t part = std::min(size - taken, pending_.size());
    std::copy_n(pending_.data(), part, bytes + taken);
    pending_.erase(0, part);
    taken += part;
    spoken_ = now_;
  }
  return taken;
}

void EventStream::TakeNext() {
  const std::optional<Events::Happened> happened =
      HasNext() ? source_.events->Find(next_) : std::nullopt;
  if (!happened) {
    return;
  }
  pending_ = TextOf(*happened, source_.boot);
  const EventKind kind = happened->event.kind;
  // One before the stream has ended an earlier login.
  const bool ends_login =
      next_ > opened_ && (kind == EventKind::kLogout || kind == EventKind::kLapse);
  if (source_.is_logged_in && ends_login && happened->event.about["client"] == address_) {
    end_ = next_;
  }
  ++next_;
}

}  // namespace

std::shared_ptr<BodyStream> EventStreams::Open(const std::string& address,
                                               std::optional<std::string_view> last_id) {
  std::erase_if(streams_, [](const auto& stream) { return stream.expired(); });
  if (streams_.size() >= kMost) {
    return nullptr;
  }
  auto stream = std::make_shared<EventStream>(source_, address, last_id);
  streams_.push_back(stream);
  return stream;
}

}  // namespace kiohost
