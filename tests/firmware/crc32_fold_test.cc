// The folding of the CRC: where its distances come from, and that it changes no remainder.
#include "firmware/crc32_fold.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "image_file.h"

namespace kio::test {
namespace {

using firmware::CrcFolder;
using Remainder = firmware::Crc;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::size_t kReach = 300;

// The remainder times x^bits, by the definition of the division.
Remainder Shifted(Remainder crc, int bits) {
  for (int bit = 0; bit < bits; ++bit) {
    const bool divides = (crc & 1) != 0;
    crc >>= 1;
    if (divides) {
      crc ^= firmware::kCrcPolynomial;
    }
  }
  return crc;
}

// The remainders of y^0 to y^kReach, y being a shift by one word.
std::vector<Remainder> Powers() {
  std::vector<Remainder> powers = {0x80000000};
  while (powers.size() <= kReach) {
    powers.push_back(Shifted(powers.back(), 32));
  }
  return powers;
}

// The CRC of the bytes, begun with `crc`; nothing is inverted.
Remainder PlainRemainder(Remainder crc, const unsigned char* data, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) {
    crc = Shifted(crc ^ data[i], 8);
  }
  return crc;
}

TEST(Crc32Fold, PolynomialIsThatOfTheStandard) {
  // x^26 + x^23 + x^22 + x^16 + x^12 + x^11 + x^10 + x^8 + x^7 + x^5 + x^4 + x^2 + x + 1
  Remainder polynomial = 0;
  for (const int power : {26, 23, 22, 16, 12, 11, 10, 8, 7, 5, 4, 2, 1, 0}) {
    polynomial |= Remainder{1} << (31 - power);
  }
  EXPECT_EQ(firmware::kCrcPolynomial, polynomial);
}

// Sums of 1, y^d and one or two powers between them.
TEST(Crc32Fold, NoSumOfFewerPowersIsDivided) {
  const std::vector<Remainder> powers = Powers();
  std::vector<std::pair<std::size_t, std::size_t>> found;
  for (std::size_t d = 1; d <= kReach; ++d) {
    for (std::size_t j = 1; j < d; ++j) {
      Remainder sum = powers[0] ^ powers[d] ^ powers[j];
      for (std::size_t i = 0; i < j; ++i) {
        if (sum == 0 || sum == powers[i]) {
          found.emplace_back(j, d);
        }
      }
    }
  }
  EXPECT_THAT(found, IsEmpty());
}

// Sums of 1, y^d and three powers between them.
TEST(Crc32Fold, OneSumOfFivePowersIsDivided) {
  const std::vector<Remainder> powers = Powers();
  std::vector<std::array<std::size_t, 4>> found;
  std::unordered_map<Remainder, std::pair<std::size_t, std::size_t>> pairs;
  for (std::size_t k = 1; k < kReach; ++k) {
    // The pairs below k are known here.
    for (std::size_t d = k + 1; d <= kReach; ++d) {
      if (const auto pair = pairs.find(powers[0] ^ powers[d] ^ powers[k]); pair != pairs.end()) {
        found.push_back({pair->second.first, pair->second.second, k, d});
      }
    }
    for (std::size_t i = 1; i < k; ++i) {
      EXPECT_TRUE(pairs.emplace(powers[i] ^ powers[k], std::pair(i, k)).second);
    }
  }
  ASSERT_THAT(found, ElementsAre(std::array<std::size_t, 4>{89, 117, 155, 300}));
  EXPECT_THAT(firmware::kFoldDistances, ElementsAre(300 - 155, 300 - 117, 300 - 89, 300));
}

TEST(Crc32Fold, KeepsTheRemainder) {
  const std::size_t pieces = 3;
  const std::string bytes = SomeBytes(pieces * CrcFolder::kPieceBytes + CrcFolder::kReachBytes, 7);
  const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
  for (const Remainder before : {0U, 0xFFFFFFFFU, 0x12345678U}) {
    CrcFolder folder;
    folder.Fold(data, before);
    for (std::size_t piece = 1; piece < pieces; ++piece) {
      folder.Fold(data + piece * CrcFolder::kPieceBytes, 0);
    }
    const unsigned char* rest = folder.Finish(data + pieces * CrcFolder::kPieceBytes);
    EXPECT_EQ(PlainRemainder(0, rest, CrcFolder::kReachBytes),
              PlainRemainder(before, data, bytes.size()))
        << before;
  }
}

}  // namespace
}  // namespace kio::test
