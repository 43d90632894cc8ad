#include "login_throttle.h"

#include <gtest/gtest.h>

#include <string>

namespace kiohost {
namespace {

constexpr char kAddress[] = "192.168.1.20";

void AddWrongKey(LoginThrottle* throttle, const std::string& address,
                 std::initializer_list<long> times) {
  for (const long time : times) {
    throttle->AddWrongKey(address, time);
  }
}

TEST(LoginThrottleTest, FifthWrongKeyWithinAMinuteBlocksForAMinute) {
  LoginThrottle throttle;
  AddWrongKey(&throttle, kAddress, {100, 101, 102, 103});
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 103), 0);
  throttle.AddWrongKey(kAddress, 159);
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 159), 60);
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 218), 1);
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 219), 0);
}

TEST(LoginThrottleTest, WrongKeysOfMoreThanAMinuteDoNotBlock) {
  LoginThrottle throttle;
  AddWrongKey(&throttle, kAddress, {100, 101, 102, 103, 160});
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 160), 0);
  // 101 to 161 is more than the window, 102 to 161 is not.
  throttle.AddWrongKey(kAddress, 161);
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 161), 0);
  throttle.AddWrongKey(kAddress, 161);
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 161), 60);
}

TEST(LoginThrottleTest, AfterABlockCountingStartsAnew) {
  LoginThrottle throttle;
  AddWrongKey(&throttle, kAddress, {100, 100, 100, 100, 100});
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 100), 60);
  AddWrongKey(&throttle, kAddress, {160, 160, 160, 160});
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 160), 0);
  throttle.AddWrongKey(kAddress, 160);
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 160), 60);
}

TEST(LoginThrottleTest, GoodKeyForgetsTheWrongOnes) {
  LoginThrottle throttle;
  AddWrongKey(&throttle, kAddress, {100, 100, 100, 100});
  throttle.Forget(kAddress);
  AddWrongKey(&throttle, kAddress, {101, 101, 101, 101});
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 101), 0);
}

TEST(LoginThrottleTest, AddressesAreCountedApart) {
  LoginThrottle throttle;
  AddWrongKey(&throttle, kAddress, {100, 100, 100, 100, 100});
  AddWrongKey(&throttle, "192.168.1.2", {100, 100, 100, 100});
  EXPECT_EQ(throttle.SecondsBlocked("192.168.1.2", 100), 0);
  EXPECT_EQ(throttle.SecondsBlocked("192.168.1.200", 100), 0);
}

TEST(LoginThrottleTest, ManyAddressesDoNotPushOutABlockedOne) {
  LoginThrottle throttle;
  AddWrongKey(&throttle, kAddress, {100, 100, 100, 100, 100});
  for (size_t i = 0; i < 10 * LoginThrottle::kAddresses; ++i) {
    throttle.AddWrongKey(std::to_string(i), 101);
  }
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 101), 59);
}

TEST(LoginThrottleTest, ManyAddressesInTurnGuessNoMoreThanTheirPlacesAllow) {
  LoginThrottle throttle;
  size_t keys_looked_at = 0;
  for (long now = 1000; now < 1000 + LoginThrottle::kWindowSeconds; ++now) {
    for (size_t i = 0; i < 4 * LoginThrottle::kAddresses; ++i) {
      const std::string address = std::to_string(i);
      if (throttle.SecondsBlocked(address, now) == 0) {
        ++keys_looked_at;
        throttle.AddWrongKey(address, now);
      }
    }
  }
  EXPECT_EQ(keys_looked_at, LoginThrottle::kMostWrong * LoginThrottle::kAddresses);
}

TEST(LoginThrottleTest, PlaceIsFreeAMinuteAfterItsLastWrongKey) {
  LoginThrottle throttle;
  for (size_t i = 0; i < LoginThrottle::kAddresses; ++i) {
    AddWrongKey(&throttle, std::to_string(i), {100, i == 7 ? 110 : 120});
  }
  EXPECT_EQ(throttle.SecondsBlocked("7", 120), 0) << "it has a place of its own";
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 120), 50);
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 170), 0);
  throttle.AddWrongKey(kAddress, 170);
  EXPECT_EQ(throttle.SecondsBlocked("another", 170), 10);
}

TEST(LoginThrottleTest, WhenAllPlacesAreBlockedOthersWaitForTheFirst) {
  LoginThrottle throttle;
  for (size_t i = 0; i < LoginThrottle::kAddresses; ++i) {
    const long time = i == 7 ? 100 : 110;
    AddWrongKey(&throttle, std::to_string(i), {time, time, time, time, time});
  }
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 110), 50);
  throttle.AddWrongKey(kAddress, 110);
  EXPECT_EQ(throttle.SecondsBlocked("8", 110), 60);
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 160), 0);
  AddWrongKey(&throttle, kAddress, {160, 160, 160, 160, 160});
  EXPECT_EQ(throttle.SecondsBlocked(kAddress, 160), 60);
}

}  // namespace
}  // namespace kiohost
