// Running the functions that encode and decode texts.
#ifndef KIO_TESTS_PLATFORM_CODER_H
#define KIO_TESTS_PLATFORM_CODER_H

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "guarded.h"

namespace kio::test {

using Coder = char* (*)(char*, const char*, int);

// What a coder writes: all bytes of a buffer of `size` bytes, '~' where it wrote nothing.
inline std::string Written(Coder coder, std::string_view src, int n, std::size_t size) {
  const Guarded dst(size, '~');
  const Guarded guarded_src(src);
  EXPECT_EQ(coder(dst.data(), guarded_src.data(), n), dst.data());
  return dst.Bytes();
}

// The text that a coder writes with room to spare.
inline std::string Text(Coder coder, std::string_view src, int n = 64) {
  return Written(coder, src, n, 1024).c_str();
}

}  // namespace kio::test

#endif
