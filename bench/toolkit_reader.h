// Reading a settings document by searching its raw text.
#ifndef KIO_BENCH_TOOLKIT_READER_H
#define KIO_BENCH_TOOLKIT_READER_H

#include "settings.h"

namespace kio::bench {

// The exported finders, or others of the same meaning (kioapp/xml.h).
struct Toolkit {
  char* (*find)(char* text, int len, const char* key, int* out_len);
  char* (*find_header)(char* text, int len, const char* key);
  char* (*find_block)(const char* parent_path, char* text, int len, const char* key, char* out_path,
                      int* out_len);
  int (*read_text)(char* block, int len, const char* parent_path, const char* key, char* dst,
                   int cap);
  int (*read_int)(char* block, int len, const char* parent_path, const char* key, int* out);
  char* (*strstri)(const char* haystack, const char* needle);
};

// The library's.
extern const Toolkit kLibraryToolkit;

// The same library built without vector instructions; ends the program when it cannot be loaded.
const Toolkit& ScalarToolkit();

// The searches of the library without their speed: a case-folding comparison at every byte.
extern const Toolkit kPlainToolkit;

// Reads the document. Each search is bounded by the block in which it looks, as the library's own
// parser does.
void ReadByToolkit(const Toolkit& toolkit, char* document, Settings& out);

}  // namespace kio::bench

#endif
