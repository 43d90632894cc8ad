#include "turns.h"

#include <gtest/gtest.h>

namespace kiohost {
namespace {

TEST(TurnsTest, AreTakenInTheOrderOfArrival) {
  Turns<int*> turns;
  int a = 0;
  int b = 0;
  int c = 0;
  EXPECT_TRUE(turns.Take(&a));
  EXPECT_TRUE(turns.Take(&a));
  EXPECT_FALSE(turns.Take(&b));
  EXPECT_FALSE(turns.Take(&c));
  EXPECT_FALSE(turns.Take(&b));  // waits once, not twice
  EXPECT_EQ(turns.waiting().size(), 2U);
  EXPECT_EQ(turns.Leave(&a), &b);
  EXPECT_FALSE(turns.Take(&a));  // now behind c
  EXPECT_TRUE(turns.Take(&b));
  EXPECT_EQ(turns.Leave(&b), &c);
  EXPECT_EQ(turns.Leave(&c), &a);
  EXPECT_EQ(turns.Leave(&a), nullptr);
  EXPECT_TRUE(turns.Take(&b));
}

TEST(TurnsTest, WhoLeavesTheLineIsNotCalled) {
  Turns<int*> turns;
  int a = 0;
  int b = 0;
  int c = 0;
  EXPECT_TRUE(turns.Take(&a));
  EXPECT_FALSE(turns.Take(&b));
  EXPECT_FALSE(turns.Take(&c));
  EXPECT_EQ(turns.Leave(&b), nullptr);
  EXPECT_EQ(turns.Leave(&a), &c);
}

TEST(TurnsTest, ATurnThatIsNeverUsedPassesOn) {
  Turns<int*> turns;
  int a = 0;
  int b = 0;
  int c = 0;
  EXPECT_TRUE(turns.Take(&a));
  EXPECT_FALSE(turns.Take(&b));
  EXPECT_FALSE(turns.Take(&c));
  EXPECT_EQ(turns.Leave(&a), &b);
  EXPECT_EQ(turns.Leave(&b), &c);  // b's client went away before its turn
}

}  // namespace
}  // namespace kiohost
