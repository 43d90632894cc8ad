// Reading the values of elements.
#ifndef KIO_SETTINGS_XML_VALUES_H
#define KIO_SETTINGS_XML_VALUES_H

#include <cstddef>

#include "platform/text.h"
#include "settings/xml/find_element.h"

namespace kio::settings {

// Reads the text of an element: at most `size` - 1 characters of the document, decoded. Without
// such an element the result is false and `dst` is empty.
bool ReadText(const Element& element, char* dst, std::size_t size);

// Reads the integer of an element. Without such an element the result is false and `out` keeps its
// value.
bool ReadInt(const Element& element, int& out);

}  // namespace kio::settings

#endif
