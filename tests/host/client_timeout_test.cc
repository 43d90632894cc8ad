#include "client_timeout.h"

#include <gtest/gtest.h>

namespace kiohost {
namespace {

using std::chrono::seconds;
using Phase = ClientTimeout::Phase;

const ClientTimeout::Clock::time_point kBegin{std::chrono::hours(1)};

class ClientTimeoutTest : public ::testing::Test {
 protected:
  // In seconds from the beginning.
  long Deadline() const {
    return std::chrono::duration_cast<seconds>(timeout_.Deadline() - kBegin).count();
  }

  ClientTimeout timeout_{kBegin};
};

TEST_F(ClientTimeoutTest, IdleAndHeadHave10Seconds) {
  EXPECT_EQ(timeout_.phase(), Phase::kIdle);
  EXPECT_EQ(Deadline(), 10);
  timeout_.Enter(Phase::kHead, kBegin + seconds(9));
  EXPECT_EQ(Deadline(), 19);
  timeout_.Enter(Phase::kIdle, kBegin + seconds(12));
  EXPECT_EQ(Deadline(), 22);
}

TEST_F(ClientTimeoutTest, WhoWaitsForATurnHasTime) {
  timeout_.Enter(Phase::kWaits, kBegin);
  EXPECT_EQ(timeout_.Deadline(), ClientTimeout::Clock::time_point::max());
}

TEST_F(ClientTimeoutTest, ADripDoesNotPutTheEndOff) {
  for (const Phase phase : {Phase::kBody, Phase::kAnswer}) {
    timeout_.Enter(phase, kBegin);
    EXPECT_EQ(Deadline(), 10);
    for (int second = 0; second < 10; ++second) {
      timeout_.Add(100, kBegin + seconds(second));
    }
    EXPECT_EQ(Deadline(), 10);
    timeout_.Add(1048, kBegin + seconds(9));  // 2 KiB by now
    EXPECT_EQ(Deadline(), 12);
  }
}

TEST_F(ClientTimeoutTest, NoAmountOfBytesExcusesSilence) {
  timeout_.Enter(Phase::kBody, kBegin);
  timeout_.Add(1000000, kBegin + seconds(3));
  EXPECT_EQ(Deadline(), 13);
  timeout_.Add(0, kBegin + seconds(8));
  EXPECT_EQ(Deadline(), 13);
  timeout_.Add(1, kBegin + seconds(12));
  EXPECT_EQ(Deadline(), 22);
}

TEST_F(ClientTimeoutTest, AStreamMayGoOnForLongAndSlowly) {
  timeout_.Enter(Phase::kStream, kBegin);
  for (int second = 0; second < 1000; second += 9) {
    timeout_.Add(1, kBegin + seconds(second));
    EXPECT_EQ(Deadline(), second + 10);
  }
}

TEST_F(ClientTimeoutTest, EachPhaseCountsItsOwnBytes) {
  timeout_.Enter(Phase::kBody, kBegin);
  timeout_.Add(1000000, kBegin);
  timeout_.Enter(Phase::kAnswer, kBegin + seconds(5));
  timeout_.Add(1, kBegin + seconds(14));
  EXPECT_EQ(Deadline(), 15);
}

}  // namespace
}  // namespace kiohost
