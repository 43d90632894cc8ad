// Reading a settings document by searching its raw text.
#ifndef KIO_BENCH_TOOLKIT_READER_H
#define KIO_BENCH_TOOLKIT_READER_H

#include "settings.h"
#include "testing/plain_toolkit.h"

namespace kio::bench {

using test::kPlainToolkit;
using test::Toolkit;

// The library's.
extern const Toolkit kLibraryToolkit;

// Reads the document. Each search is bounded by the block in which it looks, as the library's own
// parser does.
void ReadByToolkit(const Toolkit& toolkit, char* document, Settings& out);

}  // namespace kio::bench

#endif
