#include "pace.h"

#include <gtest/gtest.h>

namespace kiohost {
namespace {

using std::chrono::seconds;
using Phase = Pace::Phase;

const Pace::Clock::time_point kBegin{std::chrono::hours(1)};

class PaceTest : public ::testing::Test {
 protected:
  // In seconds from the beginning.
  long Deadline() const {
    return std::chrono::duration_cast<seconds>(pace_.Deadline() - kBegin).count();
  }

  Pace pace_{kBegin};
};

TEST_F(PaceTest, IdleAndHeadHave10Seconds) {
  EXPECT_EQ(pace_.phase(), Phase::kIdle);
  EXPECT_EQ(Deadline(), 10);
  pace_.Enter(Phase::kHead, kBegin + seconds(9));
  EXPECT_EQ(Deadline(), 19);
  pace_.Enter(Phase::kIdle, kBegin + seconds(12));
  EXPECT_EQ(Deadline(), 22);
}

TEST_F(PaceTest, WhoWaitsForATurnHasTime) {
  pace_.Enter(Phase::kWaits, kBegin);
  EXPECT_EQ(pace_.Deadline(), Pace::Clock::time_point::max());
}

TEST_F(PaceTest, ADripDoesNotPutTheEndOff) {
  for (const Phase phase : {Phase::kBody, Phase::kAnswer}) {
    pace_.Enter(phase, kBegin);
    EXPECT_EQ(Deadline(), 10);
    for (int second = 0; second < 10; ++second) {
      pace_.Add(100, kBegin + seconds(second));
    }
    EXPECT_EQ(Deadline(), 10);
    pace_.Add(1048, kBegin + seconds(9));  // 2 KiB by now
    EXPECT_EQ(Deadline(), 12);
  }
}

TEST_F(PaceTest, NoAmountOfBytesExcusesSilence) {
  pace_.Enter(Phase::kBody, kBegin);
  pace_.Add(1000000, kBegin + seconds(3));
  EXPECT_EQ(Deadline(), 13);
  pace_.Add(0, kBegin + seconds(8));
  EXPECT_EQ(Deadline(), 13);
  pace_.Add(1, kBegin + seconds(12));
  EXPECT_EQ(Deadline(), 22);
}

TEST_F(PaceTest, EachPhaseCountsItsOwnBytes) {
  pace_.Enter(Phase::kBody, kBegin);
  pace_.Add(1000000, kBegin);
  pace_.Enter(Phase::kAnswer, kBegin + seconds(5));
  pace_.Add(1, kBegin + seconds(14));
  EXPECT_EQ(Deadline(), 15);
}

TEST_F(PaceTest, TheTimeOfTheHostIsNotTheClients) {
  pace_.Enter(Phase::kBody, kBegin);
  pace_.Add(1, kBegin + seconds(1));
  pace_.Forgive(seconds(20));
  EXPECT_EQ(Deadline(), 30);
  pace_.Enter(Phase::kHead, kBegin);
  pace_.Forgive(seconds(3));
  EXPECT_EQ(Deadline(), 13);
}

}  // namespace
}  // namespace kiohost
