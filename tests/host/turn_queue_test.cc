#include "turn_queue.h"

#include <gtest/gtest.h>

namespace kiohost {
namespace {

// It is the turn of `a_`; `b_` and `c_` wait.
class TurnQueueTest : public ::testing::Test {
 protected:
  void SetUp() override {
    EXPECT_TRUE(queue_.Take(&a_));
    EXPECT_FALSE(queue_.Take(&b_));
    EXPECT_FALSE(queue_.Take(&c_));
  }

  TurnQueue<int*> queue_;
  int a_ = 0;
  int b_ = 0;
  int c_ = 0;
};

TEST_F(TurnQueueTest, AreTakenInTheOrderOfArrival) {
  EXPECT_TRUE(queue_.Take(&a_));
  EXPECT_FALSE(queue_.Take(&b_));  // waits once, not twice
  EXPECT_EQ(queue_.waiting().size(), 2U);
  EXPECT_EQ(queue_.Leave(&a_), &b_);
  EXPECT_FALSE(queue_.Take(&a_));  // now behind c
  EXPECT_TRUE(queue_.Take(&b_));
  EXPECT_EQ(queue_.Leave(&b_), &c_);
  EXPECT_EQ(queue_.Leave(&c_), &a_);
  EXPECT_EQ(queue_.Leave(&a_), nullptr);
  EXPECT_TRUE(queue_.Take(&b_));
}

TEST_F(TurnQueueTest, WhoLeavesTheLineIsNotCalled) {
  EXPECT_EQ(queue_.Leave(&b_), nullptr);
  EXPECT_EQ(queue_.Leave(&a_), &c_);
}

TEST_F(TurnQueueTest, ATurnThatIsNeverUsedPassesOn) {
  EXPECT_EQ(queue_.Leave(&a_), &b_);
  EXPECT_EQ(queue_.Leave(&b_), &c_);  // b's client went away before its turn
}

}  // namespace
}  // namespace kiohost
