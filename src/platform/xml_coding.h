// XML entity decoding of text that need not be terminated.
#ifndef KIO_PLATFORM_XML_CODING_H
#define KIO_PLATFORM_XML_CODING_H

#include <cstddef>

#include "platform/text.h"

namespace kio::platform {

// Decodes the first `limit` characters of `src` to `dst`, which must hold as many. An entity that
// begins within the limit is decoded although it ends beyond it, if `src` holds the whole of it;
// nothing beyond `src` is looked at. Returns the number of characters written; writes no
// terminator. `limit` is at most `src.size()`.
std::size_t DecodeXml(char* dst, TextView src, std::size_t limit);

// The same for the whole of `src`: an entity that its end cuts stays as it is.
inline std::size_t DecodeXml(char* dst, TextView src) { return DecodeXml(dst, src, src.size()); }

}  // namespace kio::platform

#endif
