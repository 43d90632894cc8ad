// Checking radios.
#ifndef KIO_SETTINGS_VERIFY_WLAN_H
#define KIO_SETTINGS_VERIFY_WLAN_H

#include "kioapp/record.h"

namespace kio::settings {

// Checks that only radios know; each returns a result code, 0 for a valid value.
int CheckEncryptionType(const RssWlan& wlan);
int CheckRadioKey(const RssWlan& wlan);
int CheckChannel(RssWlan& wlan);

// Whether a channel is one of the radio's list.
bool IsListedChannel(const RssWlan& wlan, const char* channel);

// Checks the radios that the device has and lets be changed.
bool VerifyRadios();

}  // namespace kio::settings

#endif
