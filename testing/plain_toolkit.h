// A plain model of the searches of kioapp/xml.h. What the library finds is compared with it, and
// how fast.
#ifndef KIO_TESTING_PLAIN_TOOLKIT_H
#define KIO_TESTING_PLAIN_TOOLKIT_H

namespace kio::test {

// The finders that the library exports (kioapp/xml.h), or functions that find the same.
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

// A comparison at every byte, without regard to case.
extern const Toolkit kPlainToolkit;

}  // namespace kio::test

#endif
