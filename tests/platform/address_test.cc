#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <random>
#include <string>

#include "guarded.h"
#include "kioapp/validate.h"

namespace kio::test {
namespace {

std::string Dotted(std::uint32_t bits) {
  return std::to_string(bits >> 24) + "." + std::to_string(bits >> 16 & 255) + "." +
         std::to_string(bits >> 8 & 255) + "." + std::to_string(bits & 255);
}

int IsIp(const std::string& text) { return is_Valid_IP(Guarded(std::string_view(text)).data()); }
int IsMask(const std::string& text) {
  return is_Valid_Netmask(Guarded(std::string_view(text)).data());
}

TEST(IsInRange, BothEndsBelongToTheRange) {
  EXPECT_EQ(is_in_range(1, 1, 3), 1);
  EXPECT_EQ(is_in_range(3, 1, 3), 1);
  EXPECT_EQ(is_in_range(0, 1, 3), 0);
  EXPECT_EQ(is_in_range(4, 1, 3), 0);
  EXPECT_EQ(is_in_range(-1, -2, -1), 1);
  EXPECT_EQ(is_in_range(2, 3, 1), 0);
  EXPECT_EQ(is_in_range(INT_MIN, INT_MIN, INT_MAX), 1);
  EXPECT_EQ(is_in_range(INT_MAX, INT_MIN, INT_MAX), 1);
}

TEST(IsValidIp, Accepts) {
  for (const char* const text :
       {"10.0.0.255", "1.0.0.1", "126.255.255.255", "128.0.0.1", "223.255.255.255", "192.168.1.1",
        "192.168.1.1/24", "192.168.1.1.5", "192.168.1.1 and more", " 192. 168.\t1.\n1", "+10.0.0.1",
        "010.000.000.001", "10.-0.0.1"}) {
    EXPECT_EQ(IsIp(text), 1) << text;
  }
}

TEST(IsValidIp, Refuses) {
  for (const char* const text :
       {"127.0.0.1",  "224.0.0.1",  "10.0.0.0",   "0.1.2.3",   "255.255.255.255",
        "10.256.0.1", "10.0.256.1", "10.0.0.256", "-1.0.0.1",  "10.-1.0.1",
        "10.0.-1.1",  "10.0.0.-1",  "",           "1.2.3",     "1.2.3.",
        "1.2",        "1",          ".1.2.3.4",   "1..2.3",    "a.b.c.d",
        "10.0.0.x",   "1 .2.3.4",   "10,0,0,1",   "0x10.0.0.1"}) {
    EXPECT_EQ(IsIp(text), 0) << text;
  }
}

TEST(IsValidIp, MissingNumbersAreInvalid) {
  // Whatever was judged before.
  EXPECT_EQ(IsIp("1.2.3.4"), 1);
  EXPECT_EQ(IsIp("1.2.3"), 0);
}

TEST(IsValidIp, NumbersBeyondIntAreRefused) {
  for (const char* const number : {"4294967297", "18446744073709551617", "2147483648",
                                   "-4294967295", "-18446744073709551615"}) {
    EXPECT_EQ(IsIp(number + std::string(".2.3.4")), 0) << number;
    EXPECT_EQ(IsIp("1.2.3." + std::string(number)), 0) << number;
  }
}

TEST(IsValidIp, EveryNumberInEveryPlace) {
  for (int number = -2; number <= 300; ++number) {
    const std::string text = std::to_string(number);
    EXPECT_EQ(IsIp(text + ".1.1.1"), number >= 1 && number <= 223 && number != 127) << number;
    EXPECT_EQ(IsIp("1." + text + ".1.1"), number >= 0 && number <= 255) << number;
    EXPECT_EQ(IsIp("1.1." + text + ".1"), number >= 0 && number <= 255) << number;
    EXPECT_EQ(IsIp("1.1.1." + text), number >= 1 && number <= 255) << number;
  }
}

TEST(IsValidNetmask, EveryValidMask) {
  for (int ones = 0; ones <= 32; ++ones) {
    const std::uint32_t mask = ones == 0 ? 0 : 0xFFFFFFFFU << (32 - ones);
    EXPECT_EQ(IsMask(Dotted(mask)), 1) << ones;
  }
}

TEST(IsValidNetmask, EveryMaskWithOneBitWrong) {
  for (int ones = 0; ones <= 32; ++ones) {
    const std::uint32_t mask = ones == 0 ? 0 : 0xFFFFFFFFU << (32 - ones);
    for (int bit = 0; bit < 32; ++bit) {
      // At the border between ones and zeros the change gives another mask.
      const bool border = bit == 32 - ones || bit == 31 - ones;
      EXPECT_EQ(IsMask(Dotted(mask ^ 1U << bit)), border ? 1 : 0) << ones << " " << bit;
    }
  }
}

TEST(IsValidNetmask, RandomMasks) {
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    const auto mask = static_cast<std::uint32_t>(random());
    bool ends = false;
    bool valid = true;
    for (int bit = 31; bit >= 0; --bit) {
      const bool one = (mask >> bit & 1) != 0;
      valid = valid && !(ends && one);
      ends = ends || !one;
    }
    ASSERT_EQ(IsMask(Dotted(mask)), valid ? 1 : 0) << Dotted(mask);
  }
}

TEST(IsValidNetmask, Texts) {
  for (const char* const text :
       {"255.255.255.0", "0.0.0.0", "255.255.255.255", "128.0.0.0", "255.255.255.0 x"}) {
    EXPECT_EQ(IsMask(text), 1) << text;
  }
  for (const char* const text :
       {"255.0.255.0", "0.0.0.1", "0.255.255.255", "255.255.255.1", "256.0.0.0", "255.255.255.-1",
        "255.255.255.256", "511.255.255.0", "255.255.255", "255.255.255.", "", "255", "x",
        "4294967551.0.0.0", "0.0.0"}) {
    EXPECT_EQ(IsMask(text), 0) << text;
  }
}

TEST(IsValidIpCheckMask, SameSubnet) {
  EXPECT_EQ(is_Valid_IP_CheckMask("255.255.255.0", "192.168.1.1", "192.168.1.254"), 1);
  EXPECT_EQ(is_Valid_IP_CheckMask("255.255.255.0", "192.168.1.1", "192.168.2.1"), 0);
  EXPECT_EQ(is_Valid_IP_CheckMask("255.255.252.0", "192.168.1.1", "192.168.2.1"), 1);
  EXPECT_EQ(is_Valid_IP_CheckMask("255.255.252.0", "192.168.1.1", "192.168.4.1"), 0);
  EXPECT_EQ(is_Valid_IP_CheckMask("0.0.0.0", "10.0.0.1", "192.168.1.1"), 1);
  EXPECT_EQ(is_Valid_IP_CheckMask("255.255.255.255", "10.0.0.1", "10.0.0.1"), 1);
  EXPECT_EQ(is_Valid_IP_CheckMask("255.255.255.255", "10.0.0.1", "10.0.0.2"), 0);
  EXPECT_EQ(is_Valid_IP_CheckMask("128.0.0.0", "10.0.0.1", "192.168.1.1"), 0);
}

TEST(IsValidIpCheckMask, EachOctetCounts) {
  const std::string base = "10.10.10.10";
  for (const char* const other : {"11.10.10.10", "10.11.10.10", "10.10.11.10", "10.10.10.11"}) {
    EXPECT_EQ(is_Valid_IP_CheckMask("255.255.255.255", base.c_str(), other), 0) << other;
    EXPECT_EQ(is_Valid_IP_CheckMask("0.0.0.0", base.c_str(), other), 1) << other;
  }
}

TEST(IsValidIpCheckMask, AllThreeMustBeValid) {
  EXPECT_EQ(is_Valid_IP_CheckMask("255.0.255.0", "10.0.0.1", "10.0.0.1"), 0);
  EXPECT_EQ(is_Valid_IP_CheckMask("255.255.255.0", "10.0.0.0", "10.0.0.1"), 0);
  EXPECT_EQ(is_Valid_IP_CheckMask("255.255.255.0", "10.0.0.1", "10.0.0.0"), 0);
  EXPECT_EQ(is_Valid_IP_CheckMask("", "10.0.0.1", "10.0.0.1"), 0);
  EXPECT_EQ(is_Valid_IP_CheckMask("255.255.255.0", "", "10.0.0.1"), 0);
  EXPECT_EQ(is_Valid_IP_CheckMask("255.255.255.0", "10.0.0.1", ""), 0);
}

}  // namespace
}  // namespace kio::test
