// Reading the radios of a settings document.
#ifndef KIO_SETTINGS_PARSE_WLAN_H
#define KIO_SETTINGS_PARSE_WLAN_H

#include "settings/xml/find_element.h"

namespace kio::settings {

// Reads a radio. Returns false for a missing element, which is then reported.
bool ParseRadio(const char* parent_path, const Block& device, int radio);

}  // namespace kio::settings

#endif
