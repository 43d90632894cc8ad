#include "channel_watch.h"

#include <kioapp/settings.h>
#include <kioapp/xml.h>

#include <algorithm>

#include "nodes.h"

namespace kiohost {

long ChannelWatch::MillisecondsToWait() const {
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(next_ - std::chrono::steady_clock::now());
  return std::max(0L, static_cast<long>(left.count()));
}

void ChannelWatch::CheckWhenDue() {
  const auto now = std::chrono::steady_clock::now();
  if (now < next_) {
    return;
  }
  next_ = now + std::chrono::seconds(1);
  if (checkWlanChannelUsing() != 0) {
    NoteMoves();
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
    const std::string channel = chooses ? store_->Get(node + "channelusing").value_or("") : set;
    if (chooses && channel != channels_[radio]) {
      std::string text = "the " + band;
      text += " GHz radio moved to channel ";
      events_->Add(text += channel);
    }
    channels_[radio] = channel;
  }
}

}  // namespace kiohost
