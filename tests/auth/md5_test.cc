// Digests, and their digits.
#include "auth/md5.h"

#include <cstdio>
#include <fstream>
#include <map>
#include <random>

#include "auth_fixture.h"
#include "platform/guarded.h"
#include "testing/heap_chars.h"

namespace kio::test {
namespace {

std::string Text(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  std::string text(size, ' ');
  for (char& character : text) {
    character = static_cast<char>(1 + random() % 255);  // anything but the terminator
  }
  return text;
}

class Md5Test : public AuthTest {};

TEST_F(Md5Test, Rfc1321TestSuite) {
  const std::map<std::string, std::string> suite = {
      {"", "d41d8cd98f00b204e9800998ecf8427e"},
      {"a", "0cc175b9c0f1b6a831c399e269772661"},
      {"abc", "900150983cd24fb0d6963f7d28e17f72"},
      {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
      {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
      {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
       "d174ab98d277d9f5a5611c2c9f419d9f"},
      {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
       "57edf4a22be3c955ac49da2e2107b67a"},
  };
  for (const auto& [text, digits] : suite) {
    EXPECT_EQ(Md5Text(text), digits) << text;
    EXPECT_EQ(MD5Encryption(text.c_str()), digits) << text;
  }
}

// Every length up to 300, and so every way in which a message may end in its blocks.
TEST_F(Md5Test, AgreesWithMd5sum) {
  constexpr std::size_t kLongest = 300;
  const TemporaryDirectory directory;
  for (std::size_t size = 0; size <= kLongest; ++size) {
    std::ofstream(directory.File(std::to_string(size)), std::ios::binary) << Text(size, 7);
  }
  FILE* const md5sum = popen(("cd " + directory.path() + " && md5sum *").c_str(), "r");
  ASSERT_NE(md5sum, nullptr);
  std::size_t compared = 0;
  HeapChars<33> digits;
  unsigned size = 0;
  // NOLINTNEXTLINE(cert-err34-c): the number of items read is looked at
  while (std::fscanf(md5sum, "%32s %u\n", digits.array(), &size) == 2) {
    EXPECT_EQ(Md5Text(Text(size, 7)), digits) << size;
    ++compared;
  }
  EXPECT_EQ(pclose(md5sum), 0);
  EXPECT_EQ(compared, kLongest + 1);
}

TEST_F(Md5Test, LengthIsNotUsed) {
  // Quirk "digest-length-unused"
  for (const unsigned length : {0U, 1U, 3U, 1000U}) {
    HeapChars<16, unsigned char> digest;
    MD5Digest("abc", length, digest);
    HeapChars<33> digits;
    Hex2String(digest, digits, 16);
    EXPECT_STREQ(digits, "900150983cd24fb0d6963f7d28e17f72");
  }
}

TEST_F(Md5Test, TouchesNothingBesideTextAndDigest) {
  for (std::size_t size = 0; size <= 130; ++size) {
    const std::string text = Text(size, 1);
    const Guarded guarded(text);  // at any distance from an aligned address
    const Guarded digest(16);
    MD5Digest(guarded.data(), 0, reinterpret_cast<unsigned char*>(digest.data()));
    auth::Digest expected;
    auth::Md5(text, expected);
    EXPECT_EQ(digest.Bytes(), std::string(reinterpret_cast<char*>(expected.bytes), 16)) << size;
  }
}

TEST_F(Md5Test, EncryptionReturnsTheSharedText) {
  EXPECT_EQ(MD5Encryption("a"), static_cast<char*>(string));
  EXPECT_STREQ(string, "0cc175b9c0f1b6a831c399e269772661");
  EXPECT_EQ(MD5Encryption("abc"), static_cast<char*>(string));
  EXPECT_STREQ(string, "900150983cd24fb0d6963f7d28e17f72");
  // The digest of the digits of a digest, from the very place where the new ones go.
  EXPECT_EQ(MD5Encryption(string), Md5Text("900150983cd24fb0d6963f7d28e17f72"));
}

TEST_F(Md5Test, HexWritesTwoLowerCaseDigitsForEachByte) {
  const unsigned char bytes[] = {0x00, 0x09, 0x0A, 0xF0, 0xFF, 0xBC};
  const Guarded output(13);
  Hex2String(bytes, output.data(), 6);
  EXPECT_STREQ(output.data(), "00090af0ffbc");
}

TEST_F(Md5Test, HexOfFewBytesStaysWithinTheirDigits) {
  const unsigned char bytes[] = {0xA1, 0xB2};
  for (const int count : {0, 1, 2}) {
    const Guarded output(static_cast<std::size_t>(2 * count) + 1);
    Hex2String(bytes, output.data(), count);
    EXPECT_EQ(output.data(), std::string("a1b2").substr(0, static_cast<std::size_t>(2 * count)));
  }
  const Guarded output(1);
  Hex2String(bytes, output.data(), -1);
  EXPECT_STREQ(output.data(), "");
}

TEST_F(Md5Test, HexEndsAfterThirtyTwoDigits) {
  // Quirk "hex-of-sixteen-bytes"
  const Guarded bytes(std::string_view("0123456789abcde"));  // 16 with the terminator
  for (const int count : {16, 17, 100}) {
    const Guarded output(33);
    Hex2String(reinterpret_cast<unsigned char*>(bytes.data()), output.data(), count);
    EXPECT_STREQ(output.data(), "30313233343536373839616263646500");
  }
}

TEST_F(Md5Test, NullPlacesGetNothingAndNullBytesHaveNoDigits) {
  MD5Digest("abc", 3, nullptr);
  const unsigned char bytes[] = {0xAB};
  Hex2String(bytes, nullptr, 1);
  HeapChars<8> digits("before");
  Hex2String(nullptr, digits, 1);
  EXPECT_STREQ(digits, "");
}

}  // namespace
}  // namespace kio::test
