// The searches of kioapp/xml.h as one would write them first: what the library finds, and how fast,
// is compared with them.
#ifndef KIO_TESTING_PLAIN_TOOLKIT_H
#define KIO_TESTING_PLAIN_TOOLKIT_H

namespace kio::test {

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

// The searches of the library without their speed: a case-folding comparison at every byte.
extern const Toolkit kPlainToolkit;

}  // namespace kio::test

#endif
