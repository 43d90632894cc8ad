#include "numbered_stream.h"

#include <charconv>

namespace kiohost {
namespace {

// A reader that has gone without a word is found by a line that it does not take.
constexpr std::chrono::seconds kLongestSilence(15);

std::string IdLine(const std::string& id) { return id.empty() ? "" : "id: " + id + "\n"; }

}  // namespace

std::string StreamId(const std::string& boot, uint64_t number) {
  return boot + "-" + std::to_string(number);
}

std::optional<uint64_t> NumberOfStreamId(std::string_view id, const std::string& boot,
                                         uint64_t last) {
  if (!id.starts_with(boot + "-")) {
    return std::nullopt;
  }
  id.remove_prefix(boot.size() + 1);
  uint64_t number = 0;
  const auto [stop, error] = std::from_chars(id.data(), id.data() + id.size(), number);
  const bool is_number = error == std::errc() && stop == id.data() + id.size();
  return is_number && number <= last ? std::optional(number) : std::nullopt;
}

std::string StreamBlock(const std::string& id, const char* kind, const Json& data) {
  return IdLine(id) + "event: " + kind + "\ndata: " + JsonLine(data) + "\n\n";
}

NumberedStream::NumberedStream(std::string boot, uint64_t next, std::string begin)
    : boot_(std::move(boot)),
      next_(next),
      named_(next - 1),
      pending_(std::move(begin)),
      now_(Clock::now()),
      spoken_(now_) {}

BodyStream::State NumberedStream::Look(Clock::time_point now) {
  now_ = now;
  BeforeLook();
  if (IsOver()) {
    return State::kOver;
  }
  if (HasNext() && next_ < Oldest() && !TellGap()) {
    return State::kLost;
  }
  if (pending_.empty() && !HasNext() && now - spoken_ >= kLongestSilence) {
    // A client that comes back need not be told again what was left out meanwhile.
    pending_ =
        ": no news\n" + (named_ + 1 < next_ ? IdLine(StreamId(boot_, next_ - 1)) : "") + "\n";
    named_ = next_ - 1;
  }
  return pending_.empty() && !HasNext() ? State::kWaits : State::kHasBytes;
}

bool NumberedStream::TellGap() {
  const uint64_t oldest = Oldest();
  const std::string block = GapBlock(oldest - next_, oldest);
  pending_ += block;
  next_ = block.empty() ? next_ : oldest;
  return !block.empty();
}

size_t NumberedStream::Take(char* bytes, size_t size) {
  size_t taken = 0;
  while (taken < size) {
    while (pending_.empty() && HasNext() && TakeNext()) {
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

// Returns false when the entry is gone: the next look finds that.
bool NumberedStream::TakeNext() {
  std::optional<std::string> block = BlockOf(next_);
  if (!block) {
    return false;
  }
  pending_ = std::move(*block);
  named_ = pending_.empty() ? named_ : next_;
  ++next_;
  return true;
}

}  // namespace kiohost
