// Reading the uplink of a settings document.
#ifndef KIO_SETTINGS_PARSE_UPLINK_H
#define KIO_SETTINGS_PARSE_UPLINK_H

#include "kioapp/record.h"
#include "settings/xml/find_element.h"

namespace kio::settings {

// Each reads a section of `block` and returns false for a missing element, which is then reported.
bool ParseUplink(const char* parent_path, const Block& device);
bool ParseProvider(const char* parent_path, const Block& block, RssIsp& isp,
                   platform::TextView key);
bool ParseSite(const char* parent_path, const Block& block, RssExtenderSite& site);

}  // namespace kio::settings

#endif
