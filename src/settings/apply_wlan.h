// Applying radios.
#ifndef KIO_SETTINGS_APPLY_WLAN_H
#define KIO_SETTINGS_APPLY_WLAN_H

namespace kio::settings {

// Writes what differs of the radios. Returns false for a refused change, which is then reported.
bool ApplyRadios();

}  // namespace kio::settings

#endif
