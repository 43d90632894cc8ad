// Reading the values of elements.
#ifndef KIO_SETTINGS_XML_VALUES_H
#define KIO_SETTINGS_XML_VALUES_H

#include <cstddef>

#include "platform/text.h"
#include "settings/find_element.h"

namespace kio::settings {

// Calls the lost-key hook, when one is installed. `key` is terminated, `path` may be null.
void ReportLostKey(const char* path, platform::TextView key);

// Reads the text or the integer of an element that was found, or not found, already; the rest is as
// below.
bool ReadText(const Element& element, char* dst, std::size_t size);
bool ReadInt(const Element& element, int& out);

// Reads the text of an element: at most `size` - 1 characters of the document, decoded. Without
// such an element the result is false and `dst` is empty.
bool ReadText(const Block& block, platform::TextView key, char* dst, std::size_t size);

// Reads the integer of an element. Without such an element the result is false and `out` keeps its
// value.
bool ReadInt(const Block& block, platform::TextView key, int& out);

// Whether an optional "Configurable" element is there and says 0.
bool IsLeftAlone(BlockReader& block);

}  // namespace kio::settings

#endif
