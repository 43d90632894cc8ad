// Element paths, as messages name elements: "Device/Wireless5/Channel".
#ifndef KIO_SETTINGS_XML_ELEMENT_PATH_H
#define KIO_SETTINGS_XML_ELEMENT_PATH_H

#include "platform/text.h"

namespace kio::settings {

// Sets `path` to "parent/key", or to "key" without a parent.
void JoinPath(char (&path)[128], const char* parent, platform::TextView key);

}  // namespace kio::settings

#endif
