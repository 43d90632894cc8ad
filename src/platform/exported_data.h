// The data that the library exports, as its own code reaches it: never by the exported names. Those
// of the rooms that a build may leave out stand in the rooms.
//
// The dynamic linker binds an exported name to the first definition in the process, whatever that
// is: the library's own; the copy of it that the linker put into an executable that uses the name;
// or something else of the host's that happens to be called so. The library uses one of the first
// two, which it chooses when it is loaded, and leaves the third alone.
#ifndef KIO_PLATFORM_EXPORTED_DATA_H
#define KIO_PLATFORM_EXPORTED_DATA_H

#include "kioapp/record.h"

namespace kio {

enum ExportedData : int {
  kDataRecord,
  kDataLostKeyHandler,
  kDataLogPath,
  kDataLogHeader,
  kDataLogLevel,
  kDataLogFileSize,
  kDataCount
};

// Where each of them lies. Chosen before any other code runs, so that it is constant to all of
// that.
[[gnu::visibility("hidden")]] extern void* const kExportedData[kDataCount] __asm__(
    "kio_exported_data");

using LostKeyHandler = void (*)(const char* path, const char* key);

inline RssXmlData& Record() { return *static_cast<RssXmlData*>(kExportedData[kDataRecord]); }
inline LostKeyHandler& OnLostKey() {
  return *static_cast<LostKeyHandler*>(kExportedData[kDataLostKeyHandler]);
}
inline char (&DaemonLogPath())[64] {
  return *static_cast<char(*)[64]>(kExportedData[kDataLogPath]);
}
inline char (&DaemonLogHeader())[32] {
  return *static_cast<char(*)[32]>(kExportedData[kDataLogHeader]);
}
inline int& DaemonLogLevel() { return *static_cast<int*>(kExportedData[kDataLogLevel]); }
inline int& DaemonLogFileSize() { return *static_cast<int*>(kExportedData[kDataLogFileSize]); }

}  // namespace kio

#endif
