// Checking radios.
#ifndef KIO_SETTINGS_VERIFY_WLAN_H
#define KIO_SETTINGS_VERIFY_WLAN_H

#include "kioapp/record.h"

namespace kio::settings {

// The checks of radios' fields. Each returns a result code, 0 for a valid value.
int CheckEncryptionType(const RssWlan& wlan);
int CheckRadioKey(const RssWlan& wlan);
int CheckChannel(RssWlan& wlan);

// Whether a channel is one of the radio's list.
bool IsListedChannel(const RssWlan& wlan, const char* channel);

// Verifies the radios that exist and may be changed.
bool VerifyRadios();

}  // namespace kio::settings

#endif
