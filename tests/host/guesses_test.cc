#include "guesses.h"

#include <gtest/gtest.h>

#include <string>

namespace kiohost {
namespace {

constexpr char kAddress[] = "192.168.1.20";

void AddWrong(Guesses* guesses, const std::string& address, std::initializer_list<long> times) {
  for (const long time : times) {
    guesses->AddWrong(address, time);
  }
}

TEST(GuessesTest, FifthWrongKeyWithinAMinuteBlocksForAMinute) {
  Guesses guesses;
  AddWrong(&guesses, kAddress, {100, 101, 102, 103});
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 103), 0);
  guesses.AddWrong(kAddress, 159);
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 159), 60);
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 218), 1);
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 219), 0);
}

TEST(GuessesTest, WrongKeysOfMoreThanAMinuteDoNotBlock) {
  Guesses guesses;
  AddWrong(&guesses, kAddress, {100, 101, 102, 103, 160});
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 160), 0);
  // 101 to 161 is more than the window, 102 to 161 is not.
  guesses.AddWrong(kAddress, 161);
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 161), 0);
  guesses.AddWrong(kAddress, 161);
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 161), 60);
}

TEST(GuessesTest, AfterABlockCountingStartsAnew) {
  Guesses guesses;
  AddWrong(&guesses, kAddress, {100, 100, 100, 100, 100});
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 100), 60);
  AddWrong(&guesses, kAddress, {160, 160, 160, 160});
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 160), 0);
  guesses.AddWrong(kAddress, 160);
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 160), 60);
}

TEST(GuessesTest, GoodKeyForgetsTheWrongOnes) {
  Guesses guesses;
  AddWrong(&guesses, kAddress, {100, 100, 100, 100});
  guesses.Forget(kAddress);
  AddWrong(&guesses, kAddress, {101, 101, 101, 101});
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 101), 0);
}

TEST(GuessesTest, AddressesAreCountedApart) {
  Guesses guesses;
  AddWrong(&guesses, kAddress, {100, 100, 100, 100, 100});
  AddWrong(&guesses, "192.168.1.2", {100, 100, 100, 100});
  EXPECT_EQ(guesses.SecondsBlocked("192.168.1.2", 100), 0);
  EXPECT_EQ(guesses.SecondsBlocked("192.168.1.200", 100), 0);
}

TEST(GuessesTest, ManyAddressesDoNotPushOutABlockedOne) {
  Guesses guesses;
  AddWrong(&guesses, kAddress, {100, 100, 100, 100, 100});
  for (size_t i = 0; i < 10 * Guesses::kAddresses; ++i) {
    guesses.AddWrong(std::to_string(i), 101);
  }
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 101), 59);
}

TEST(GuessesTest, ManyAddressesInTurnGuessNoMoreThanTheirPlacesAllow) {
  Guesses guesses;
  size_t keys_looked_at = 0;
  for (long now = 1000; now < 1000 + Guesses::kWindowSeconds; ++now) {
    for (size_t i = 0; i < 4 * Guesses::kAddresses; ++i) {
      const std::string address = std::to_string(i);
      if (guesses.SecondsBlocked(address, now) == 0) {
        ++keys_looked_at;
        guesses.AddWrong(address, now);
      }
    }
  }
  EXPECT_EQ(keys_looked_at, Guesses::kMostWrong * Guesses::kAddresses);
}

TEST(GuessesTest, PlaceIsFreeAMinuteAfterItsLastWrongKey) {
  Guesses guesses;
  for (size_t i = 0; i < Guesses::kAddresses; ++i) {
    AddWrong(&guesses, std::to_string(i), {100, i == 7 ? 110 : 120});
  }
  EXPECT_EQ(guesses.SecondsBlocked("7", 120), 0) << "it has a place of its own";
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 120), 50);
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 170), 0);
  guesses.AddWrong(kAddress, 170);
  EXPECT_EQ(guesses.SecondsBlocked("another", 170), 10);
}

TEST(GuessesTest, WhenAllPlacesAreBlockedOthersWaitForTheFirst) {
  Guesses guesses;
  for (size_t i = 0; i < Guesses::kAddresses; ++i) {
    const long time = i == 7 ? 100 : 110;
    AddWrong(&guesses, std::to_string(i), {time, time, time, time, time});
  }
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 110), 50);
  guesses.AddWrong(kAddress, 110);
  EXPECT_EQ(guesses.SecondsBlocked("8", 110), 60);
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 160), 0);
  AddWrong(&guesses, kAddress, {160, 160, 160, 160, 160});
  EXPECT_EQ(guesses.SecondsBlocked(kAddress, 160), 60);
}

}  // namespace
}  // namespace kiohost
