// Watching the channels that the radios use.
#include "kioapp/settings.h"
#include "platform/log.h"
#include "platform/store.h"
#include "settings/record.h"

namespace kio::settings {
namespace {

constexpr int kNoneSeen = -1;

// The last channel seen on each radio.
int g_last_channels[kRadioCount] = {kNoneSeen, kNoneSeen};

// Whether the channel of a radio differs from the last one seen, which is then remembered.
bool HasMoved(int radio) {
  SectionPath nodes(SectionId::kRadio, radio);
  const int configured = platform::ReadStoreInt(nodes.Node(RowOf(kWlanFields, "Channel").node));
  const int in_use = platform::ReadStoreInt(nodes.Node("/channelusing"));
  if (configured < 0 || in_use < 1) {
    return false;
  }
  const int effective = configured != 0 ? configured : in_use;
  int& last = g_last_channels[radio];
  // Quirk "fixed-channels-never-move": a channel that is set counts as the last one seen, whichever
  // is in use.
  if (last == kNoneSeen || configured != 0) {
    last = configured;
  }
  if (effective == last) {
    return false;
  }
  KIO_LOG_NAMED("checkWlanChannelUsing", "Wlan_%s Channel:%d ChannelUsing:%d->%d\n",
                kRadioWords[radio], configured, last, effective);
  last = effective;
  return true;
}

}  // namespace
}  // namespace kio::settings

int checkWlanChannelUsing(void) {
  int moved = 0;
  for (int radio = 0; radio < kio::settings::kRadioCount; ++radio) {
    if (kio::settings::HasMoved(radio)) {
      moved = 1;
    }
  }
  return moved;
}
