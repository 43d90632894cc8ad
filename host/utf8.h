// Characters of more than one byte.
#ifndef HOST_UTF8_H
#define HOST_UTF8_H

#include <cstddef>
#include <string_view>

namespace kiohost {

// The length of the multi-byte UTF-8 character that `text`, which is not empty, begins with; 0 when
// there is none, or when it is not well-formed.
size_t MultiByteLength(std::string_view text);

// Whether a text is well-formed UTF-8.
bool IsUtf8(std::string_view text);

}  // namespace kiohost

#endif  // HOST_UTF8_H
