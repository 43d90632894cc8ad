// The record in the log at the end of a batch.
#include <gmock/gmock.h>

#include <string>

#include "variables/batch.h"

namespace kio::test {
namespace {

using ::testing::HasSubstr;

class BatchDumpTest : public BatchFixture {};

TEST_F(BatchDumpTest, ComesBeforeTheResult) {
  log_file::Start(7);
  Batch("rss_DeviceName=%s%n");
  const std::string log = log_file::Contents();
  EXPECT_THAT(log, HasSubstr("----RSSXML_BGN----\n"));
  EXPECT_THAT(log, HasSubstr(" +- DeviceName='%s%n'\n"));
  EXPECT_LT(log.find("----RSSXML_END----\n"), log.find("done, ret=0\n"));
}

TEST_F(BatchDumpTest, ComesAfterAFaultToo) {
  log_file::Start(7);
  Batch("rss_Wl2_WlSchedule=9");
  EXPECT_THAT(log_file::Contents(), HasSubstr("----RSSXML_END----\n"));
}

}  // namespace
}  // namespace kio::test
