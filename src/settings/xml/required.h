// Elements that a document must hold.
#ifndef KIO_SETTINGS_XML_REQUIRED_H
#define KIO_SETTINGS_XML_REQUIRED_H

#include "platform/text.h"
#include "settings/xml/find_element.h"

namespace kio::settings {

// Calls the lost-key hook, when one is installed. `key` is terminated, `path` may be null.
void ReportLostKey(const char* path, platform::TextView key);

// Finds a required block and appends its name to the parent's path in `path` (128 bytes). A missing
// one is reported to the lost-key hook and gives a null text; `path` is then left as it was.
Block FindRequiredBlock(const char* parent_path, const Block& block, platform::TextView key,
                        char (&path)[128]);

}  // namespace kio::settings

#endif
