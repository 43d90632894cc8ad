#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "guarded.h"
#include "kioapp/validate.h"

namespace kio::test {
namespace {

int IsWpa(const std::string& key) {
  return is_Valid_WpaPskKey(Guarded(std::string_view(key)).data());
}
int IsWep(const std::string& key, int n) {
  return is_Valid_WepKey(Guarded(std::string_view(key)).data(), n);
}
bool IsUpperHexDigit(int byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'F');
}

TEST(WpaKey, EveryLength) {
  for (std::size_t length = 0; length <= 70; ++length) {
    EXPECT_EQ(IsWpa(std::string(length, '\xFF')), length >= 8 && length <= 63) << length;
    EXPECT_EQ(IsWpa(std::string(length, 'A')), length >= 8 && length <= 64) << length;
  }
  EXPECT_EQ(IsWpa(std::string(5000, 'A')), 0);
}

TEST(WpaKey, EveryByteAsAHexadecimalDigit) {
  for (const std::size_t place : {0U, 31U, 63U}) {
    for (int byte = 1; byte < 256; ++byte) {
      std::string key(64, '0');
      key[place] = static_cast<char>(byte);
      EXPECT_EQ(IsWpa(key), IsUpperHexDigit(byte)) << byte;
    }
  }
}

TEST(WpaKey, LowerCaseHexKeyRefused) {
  EXPECT_EQ(IsWpa(std::string(64, 'A')), 1);
  EXPECT_EQ(IsWpa(std::string(64, 'a')), 0);
  EXPECT_EQ(IsWpa(std::string(63, 'A') + "f"), 0);
  EXPECT_EQ(IsWpa(std::string(63, 'a')), 1);
}

TEST(WepKey, EveryLength) {
  for (const std::size_t n : {5U, 13U}) {
    for (std::size_t length = 0; length <= 70; ++length) {
      EXPECT_EQ(IsWep(std::string(length, '\xFF'), static_cast<int>(n)), length == n) << length;
      EXPECT_EQ(IsWep(std::string(length, 'F'), static_cast<int>(n)),
                length == n || length == 2 * n)
          << length;
    }
  }
}

TEST(WepKey, EveryByteAsAHexadecimalDigit) {
  for (const std::size_t place : {0U, 9U}) {
    for (int byte = 1; byte < 256; ++byte) {
      std::string key(10, '9');
      key[place] = static_cast<char>(byte);
      EXPECT_EQ(IsWep(key, 5), IsUpperHexDigit(byte)) << byte;
    }
  }
}

TEST(WepKey, LowerCaseHexKeyRefused) {
  EXPECT_EQ(IsWep("0123456789ABCDEF0123456789", 13), 1);
  EXPECT_EQ(IsWep("0123456789abcdef0123456789", 13), 0);
  EXPECT_EQ(IsWep("abcde", 5), 1);
}

TEST(WepKey, OtherSizes) {
  EXPECT_EQ(IsWep("", 0), 1);
  EXPECT_EQ(IsWep("A", 0), 0);
  EXPECT_EQ(IsWep("", -1), 0);
  EXPECT_EQ(IsWep("AA", INT_MIN), 0);
  EXPECT_EQ(IsWep("AA", INT_MAX), 0);
}

}  // namespace
}  // namespace kio::test
