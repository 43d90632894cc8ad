// Text functions that the library needs in a bounded form.
#ifndef KIO_PLATFORM_TEXT_FUNCTIONS_H
#define KIO_PLATFORM_TEXT_FUNCTIONS_H

#include <cstddef>

#include "platform/text.h"

namespace kio::platform {

// Replaces "$lanip" and "$rssport" in `text`, a buffer of `size` bytes, by the router's own address
// and port from the store. The result is cut to 255 characters and to the buffer.
void ReplaceRssKeywords(char* text, std::size_t size);

// Whether `subject` fits a wildcard pattern that need not be terminated: strWildcardCmp gives 0.
inline bool FitsWildcard(const char* subject, TextView pattern) {
  for (const char wanted : pattern) {
    if (wanted == '*' || wanted == '\0') {
      return wanted == '*' || *subject == '\0';
    }
    if (wanted != '?' && *subject != wanted) {
      return false;
    }
    subject += *subject != '\0' ? 1 : 0;
  }
  return *subject == '\0';
}

}  // namespace kio::platform

#endif
