#include "value_history.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "temp_dir.h"

namespace kiohost {
namespace {

using ::testing::ElementsAre;

class ValueHistoryTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(store_.Open(file_, Store::Mode::kCreate).ok()); }

  TempDir dir_;
  std::string file_ = dir_.File("store.db");
  Store store_;
  ValueHistory history_;
};

TEST_F(ValueHistoryTest, AStateStaysAsItWas) {
  ASSERT_TRUE(store_.Set("/sys/a", "1"));
  history_.Note("one", &store_);
  ASSERT_TRUE(store_.Set("/sys/a", "2"));
  history_.Note("one", &store_);
  history_.Note("two", &store_);
  EXPECT_THAT(*history_.Find("one"), ElementsAre(Node{"/sys/a", "1"}));
  EXPECT_THAT(*history_.Find("two"), ElementsAre(Node{"/sys/a", "2"}));
  EXPECT_EQ(history_.Find("three"), nullptr);
}

TEST_F(ValueHistoryTest, AppliesAreNotedFromTheFirstQuestionOn) {
  history_.NoteApply("one", &store_);
  EXPECT_EQ(history_.Find("one"), nullptr);
  history_.Note("none", &store_);
  history_.NoteApply("two", &store_);
  history_.NoteApply("", &store_);
  EXPECT_NE(history_.Find("two"), nullptr);
  EXPECT_EQ(history_.Find(""), nullptr);
}

TEST_F(ValueHistoryTest, AStateThatIsInUseOutlivesItsPlace) {
  ASSERT_TRUE(store_.Set("/sys/a", "1"));
  history_.Note("first", &store_);
  const ValueHistory::State first = history_.Find("first");
  for (size_t i = 0; i < ValueHistory::kMost; ++i) {
    EXPECT_NE(history_.Find("first"), nullptr) << i;
    history_.Note(std::to_string(i), &store_);
  }
  EXPECT_EQ(history_.Find("first"), nullptr);
  EXPECT_THAT(*first, ElementsAre(Node{"/sys/a", "1"}));
}

// A state that was kept twice would take the place of another.
TEST_F(ValueHistoryTest, ThreadsKeepAStateOnce) {
  constexpr int kRounds = 50;
  Store own;
  ASSERT_TRUE(own.Open(file_, Store::Mode::kExisting).ok());
  for (int round = 0; round < kRounds; ++round) {
    ValueHistory history;
    const auto note = [&history](Store* store) {
      for (size_t i = 0; i < ValueHistory::kMost; ++i) {
        history.Note(std::to_string(i), store);
      }
    };
    std::thread other(note, &own);
    note(&store_);
    other.join();
    for (size_t i = 0; i < ValueHistory::kMost; ++i) {
      ASSERT_NE(history.Find(std::to_string(i)), nullptr) << i << " in round " << round;
    }
  }
}

}  // namespace
}  // namespace kiohost
