#include "turn_queue.h"

#include <gtest/gtest.h>

namespace kiohost {
namespace {

TEST(TurnQueueTest, AreTakenInTheOrderOfArrival) {
  TurnQueue<int*> queue;
  int a = 0;
  int b = 0;
  int c = 0;
  EXPECT_TRUE(queue.Take(&a));
  EXPECT_TRUE(queue.Take(&a));
  EXPECT_FALSE(queue.Take(&b));
  EXPECT_FALSE(queue.Take(&c));
  EXPECT_FALSE(queue.Take(&b));  // waits once, not twice
  EXPECT_EQ(queue.waiting().size(), 2U);
  EXPECT_EQ(queue.Leave(&a), &b);
  EXPECT_FALSE(queue.Take(&a));  // now behind c
  EXPECT_TRUE(queue.Take(&b));
  EXPECT_EQ(queue.Leave(&b), &c);
  EXPECT_EQ(queue.Leave(&c), &a);
  EXPECT_EQ(queue.Leave(&a), nullptr);
  EXPECT_TRUE(queue.Take(&b));
}

TEST(TurnQueueTest, WhoLeavesTheLineIsNotCalled) {
  TurnQueue<int*> queue;
  int a = 0;
  int b = 0;
  int c = 0;
  EXPECT_TRUE(queue.Take(&a));
  EXPECT_FALSE(queue.Take(&b));
  EXPECT_FALSE(queue.Take(&c));
  EXPECT_EQ(queue.Leave(&b), nullptr);
  EXPECT_EQ(queue.Leave(&a), &c);
}

TEST(TurnQueueTest, ATurnThatIsNeverUsedPassesOn) {
  TurnQueue<int*> queue;
  int a = 0;
  int b = 0;
  int c = 0;
  EXPECT_TRUE(queue.Take(&a));
  EXPECT_FALSE(queue.Take(&b));
  EXPECT_FALSE(queue.Take(&c));
  EXPECT_EQ(queue.Leave(&a), &b);
  EXPECT_EQ(queue.Leave(&b), &c);  // b's client went away before its turn
}

}  // namespace
}  // namespace kiohost
