// Reading a settings document by searching its raw text.
#ifndef KIO_BENCH_TOOLKIT_READER_H
#define KIO_BENCH_TOOLKIT_READER_H

#include "settings.h"
#include "testing/plain_toolkit.h"

namespace kio::bench {

using test::kPlainToolkit;
using test::Toolkit;

// The finders that the library exports.
extern const Toolkit kLibraryToolkit;

// Reads the document. Each search is limited to the block that holds the leaf, as in the library's
// own parser.
void ReadByToolkit(const Toolkit& toolkit, char* document, Settings& out);

}  // namespace kio::bench

#endif
