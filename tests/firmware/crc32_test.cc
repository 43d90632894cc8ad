// CRC-32: the known values, and the same as other implementations at every size and place.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>

#include "image_file.h"
#include "kioapp/firmware.h"

namespace kio::test {
namespace {

unsigned int Crc(const std::string& data, unsigned int seed = 0) {
  return crc32(seed, reinterpret_cast<const unsigned char*>(data.data()),
               static_cast<unsigned int>(data.size()));
}

TEST(Crc32, KnownValues) {
  EXPECT_EQ(Crc(""), 0U);
  EXPECT_EQ(Crc("a"), 0xE8B7BE43U);
  EXPECT_EQ(Crc("123456789"), 0xCBF43926U);
  EXPECT_EQ(Crc("The quick brown fox jumps over the lazy dog"), 0x414FA339U);
  EXPECT_EQ(Crc(std::string(32, '\0')), 0x190A55ADU);
  EXPECT_EQ(Crc(std::string(32, '\xFF')), 0xFF6CAB0BU);
}

TEST(Crc32, NothingLeavesTheSeed) { EXPECT_EQ(crc32(0x12345678, nullptr, 0), 0x12345678U); }

TEST(Crc32, EverySizeAndPlace) {
  const std::string bytes = SomeBytes(300);
  for (std::size_t begin = 0; begin < 16; ++begin) {
    for (std::size_t size = 0; begin + size <= bytes.size(); ++size) {
      const std::string data = bytes.substr(begin, size);
      ASSERT_EQ(crc32(0, reinterpret_cast<const unsigned char*>(bytes.data()) + begin,
                      static_cast<unsigned int>(size)),
                PlainCrc32(data))
          << begin << " " << size;
    }
  }
}

// Long texts are folded in pieces of 2048 bytes, each of which changes the 1200 bytes behind it.
TEST(Crc32, SizesAroundThePieces) {
  const std::string bytes = SomeBytes(20000, 2);
  for (const std::size_t middle : {1200U, 2048U, 3248U, 4096U, 5296U, 7344U, 9392U, 16384U}) {
    for (std::size_t size = middle - 20; size <= middle + 20; ++size) {
      ASSERT_EQ(Crc(bytes.substr(size % 7, size)), PlainCrc32(bytes.substr(size % 7, size)))
          << size;
    }
  }
}

TEST(Crc32, SeedContinues) {
  const std::string bytes = SomeBytes(20000, 3);
  const unsigned int whole = PlainCrc32(bytes);
  for (const std::size_t size :
       {0U, 1U, 7U, 64U, 1199U, 3247U, 3248U, 5000U, 16751U, 19999U, 20000U}) {
    EXPECT_EQ(Crc(bytes.substr(size), Crc(bytes.substr(0, size))), whole) << size;
  }
}

// Each bit anywhere in a folded text counts.
TEST(Crc32, SingleBitsOfALongText) {
  const std::string zeros(10000, '\0');
  for (std::size_t byte = 0; byte < zeros.size(); byte += 37) {
    std::string text = zeros;
    text[byte] = static_cast<char>(1 << (byte % 8));
    ASSERT_EQ(Crc(text), PlainCrc32(text)) << byte;
  }
}

// The other library's function has the same name, so it is looked up.
#ifdef KIO_ZLIB
TEST(Crc32, SameAsZlib) {
  void* const zlib = dlopen(KIO_ZLIB, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(zlib, nullptr);
  using Function = unsigned long (*)(unsigned long, const unsigned char*, unsigned int);
  const auto function = reinterpret_cast<Function>(dlsym(zlib, "crc32"));
  ASSERT_NE(function, nullptr);
  const std::string bytes = SomeBytes(std::size_t{1} << 20, 4);
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{4095},
                                 std::size_t{65536}, std::size_t{999999}, bytes.size()}) {
    for (const unsigned int seed : {0U, 1U, 0xFFFFFFFFU, 0xDEADBEEFU}) {
      EXPECT_EQ(Crc(bytes.substr(0, size), seed),
                function(seed, reinterpret_cast<const unsigned char*>(bytes.data()),
                         static_cast<unsigned int>(size)));
    }
  }
  dlclose(zlib);
}
#endif

}  // namespace
}  // namespace kio::test
