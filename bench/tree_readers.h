// Reading a settings document with XML parsers of other makes.
//
// Each reader takes the document as a text of known size that it must not change, parses it anew
// and copies the same leaves into the same buffers as the others, entities decoded. Names are
// compared exactly, which is less than the library's finders do.
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
