#include "channel_watch.h"

#include <kioapp/settings.h>
#include <kioapp/xml.h>

#include "fault_points.h"
#include "journal.h"
#include "nodes.h"

namespace kiohost {

namespace {

// Where the clock stands still, the host looks about it in real time.
constexpr long kMost = 1000;

constexpr char kChannelInUse[] = "channelusing";

}  // namespace

long ChannelWatch::MillisecondsToWait() const { return TheClock().MillisecondsUntil(next_, kMost); }

void ChannelWatch::CheckWhenDue() {
  const auto now = TheClock().Now();
  if (now < next_) {
    return;
  }
  next_ = now + std::chrono::seconds(1);
  MoveRadiosByRule();
  const UnnotedStore look;
  if (checkWlanChannelUsing() != 0) {
    NoteMoves();
  }
}

// Does what the driver of a radio does that moves to another channel.
void ChannelWatch::MoveRadiosByRule() {
  FaultPoints* const faults = LibraryFaults();
  if (faults == nullptr) {
    return;
  }
  for (const FaultPoints::RadioMove& move : faults->TakeRadioMoves()) {
    store_->Set(RadioNodes(move.radio) + kChannelInUse, move.channel);
  }
}

// Notes which radios have moved: the library only says that one has.
void ChannelWatch::NoteMoves() {
  for (size_t radio = 0; radio < channels_.size(); ++radio) {
    const std::string band = WirelessTypeArray[radio];
    const std::string node = RadioNodes(band);
    const std::string set = store_->Get(node + "channel").value_or("");
    // A radio whose channel is set counts as being on it, as it does in the library.
    const bool chooses = set == "0";
    const std::string channel = chooses ? store_->Get(node + kChannelInUse).value_or("") : set;
    if (chooses && channel != channels_[radio]) {
      std::string text = "the " + band;
      text += " GHz radio moved to channel ";
      text += channel;
      events_->Add({EventKind::kChannel, {{"radio", band}, {"channel", channel}}, text});
    }
    channels_[radio] = channel;
  }
}

}  // namespace kiohost
