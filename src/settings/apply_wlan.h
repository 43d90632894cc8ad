// Applying radios.
#ifndef KIO_SETTINGS_APPLY_WLAN_H
#define KIO_SETTINGS_APPLY_WLAN_H

namespace kio::settings {

// Writes what differs of the radios. Returns false when a change is refused, which is then
// reported.
bool ApplyRadios();

}  // namespace kio::settings

#endif
