#include "library_desk.h"

#include <gtest/gtest.h>
#include <poll.h>

namespace kiohost {
namespace {

bool IsReadable(int descriptor) {
  pollfd look = {descriptor, POLLIN, 0};
  return poll(&look, 1, 0) == 1;
}

TEST(LibraryDeskTest, AJobIsTakenOnceAndTold) {
  LibraryDesk desk;
  ASSERT_TRUE(desk.valid());
  EXPECT_FALSE(IsReadable(desk.work_descriptor()));
  EXPECT_FALSE(desk.TakeJob().has_value());
  int runs = 0;
  desk.Put({[&runs] { return ++runs == 1; }, true});
  EXPECT_TRUE(IsReadable(desk.work_descriptor()));
  const auto job = desk.TakeJob();
  ASSERT_TRUE(job.has_value());
  EXPECT_TRUE(job->is_long);
  EXPECT_TRUE(job->run());
  EXPECT_EQ(runs, 1);
  EXPECT_FALSE(IsReadable(desk.work_descriptor()));
  EXPECT_FALSE(desk.TakeJob().has_value());
  EXPECT_FALSE(IsReadable(desk.news_descriptor()));
  desk.TellJobDone();
  EXPECT_TRUE(IsReadable(desk.news_descriptor()));
  const LibraryDesk::News news = desk.TakeNews();
  EXPECT_TRUE(news.job_done);
  EXPECT_FALSE(news.turn_over || news.stop);
  EXPECT_FALSE(IsReadable(desk.news_descriptor()));
  EXPECT_FALSE(desk.TakeNews().job_done);
}

TEST(LibraryDeskTest, AJobIsTakenBackUntilItIsTaken) {
  LibraryDesk desk;
  EXPECT_FALSE(desk.TakeBackJob());
  desk.Put({[] { return false; }, false});
  EXPECT_TRUE(desk.TakeBackJob());
  EXPECT_FALSE(desk.TakeJob().has_value());
  desk.Put({[] { return false; }, false});
  EXPECT_TRUE(desk.TakeJob().has_value());
  EXPECT_FALSE(desk.TakeBackJob());
}

TEST(LibraryDeskTest, NewsAreToldTogether) {
  LibraryDesk desk;
  desk.TellTurnOver();
  desk.TellStop();
  desk.TellPublished();
  const LibraryDesk::News news = desk.TakeNews();
  EXPECT_TRUE(news.turn_over && news.published && news.stop);
  EXPECT_FALSE(news.job_done);
  EXPECT_FALSE(IsReadable(desk.news_descriptor()));
}

TEST(LibraryDeskTest, TheWorkAfterAReplyOutlivesAJobThatIsForgotten) {
  LibraryDesk desk;
  bool ran = false;
  desk.Put({[] { return false; }, false});
  desk.PutAfterReply({[&ran] { ran = true; }, {}, 3});
  desk.TellJobDone();
  desk.ForgetJob();
  EXPECT_FALSE(desk.TakeJob().has_value());
  EXPECT_FALSE(desk.TakeNews().job_done);
  const auto after_reply = desk.TakeAfterReply();
  ASSERT_TRUE(after_reply.has_value());
  EXPECT_EQ(after_reply->wait_seconds, 3);
  after_reply->run();
  EXPECT_TRUE(ran);
  EXPECT_FALSE(desk.TakeAfterReply().has_value());
}

}  // namespace
}  // namespace kiohost
