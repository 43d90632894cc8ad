// Text functions that the library needs in a bounded form.
#ifndef KIO_PLATFORM_TEXT_FUNCTIONS_H
#define KIO_PLATFORM_TEXT_FUNCTIONS_H

#include <cstddef>

namespace kio::platform {

// Replaces "$lanip" and "$rssport" in `text`, a buffer of `size` bytes, by the router's own address
// and port from the store. The result is cut to 255 characters and to the buffer.
void ReplaceRssKeywords(char* text, std::size_t size);

}  // namespace kio::platform

#endif
