// Clearing of secrets.
#ifndef KIO_PLATFORM_WIPE_H
#define KIO_PLATFORM_WIPE_H

#include <cstddef>
#include <cstring>

#include "platform/inline.h"

namespace kio::platform {

// Overwrites memory that is not read any more. The compiler must assume that it is read afterwards,
// so it cannot leave the clearing out, as it may a plain memset.
KIO_INLINE inline void Wipe(void* data, std::size_t size) {
  std::memset(data, 0, size);
  __asm__ volatile("" : : "r"(data) : "memory");
}
template <typename Object>
KIO_INLINE inline void Wipe(Object& object) {
  Wipe(&object, sizeof(object));
}

// Clears what functions that have returned left on the stack below the caller, copies that the
// compiler made included.
template <std::size_t kSize>
[[gnu::noinline]] void WipeStack() {
  char area[kSize];
  Wipe(area);
}

}  // namespace kio::platform

#endif
