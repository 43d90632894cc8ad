// Reading a settings document with other XML parsers.
//
// Each reader takes the document as a text of known size, which it must not change, and parses it
// anew at each call. All copy the same leaves into the same buffers, with entities decoded. They
// compare names exactly; the library's finders do more, as they ignore the case of names.
#ifndef KIO_BENCH_TREE_READERS_H
#define KIO_BENCH_TREE_READERS_H

#include <cstddef>

#include "settings.h"

namespace kio::bench {

// Each returns false when the text is not well formed.
bool ReadByPugixml(const char* document, std::size_t size, Settings& out);
bool ReadByRapidxml(const char* document, std::size_t size, Settings& out);
bool ReadByExpat(const char* document, std::size_t size, Settings& out);

}  // namespace kio::bench

#endif
