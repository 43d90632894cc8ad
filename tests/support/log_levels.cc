#include "support/log_levels.h"

#include <gmock/gmock.h>

#include "kioapp/log.h"
#include "support/fake_host.h"

namespace kio::test {
namespace {

std::string LogOf(const std::function<void()>& scenario, int level) {
  // A line that the last scenario left open ends here.
  log_file::Start(level);
  logPrintf(level, "\n");
  log_file::Start(level);
  scenario();
  return log_file::Contents();
}

}  // namespace

void ExpectLevels(const std::vector<LoggedMessage>& messages) {
  for (const LoggedMessage& message : messages) {
    EXPECT_THAT(LogOf(message.scenario, message.level), ::testing::HasSubstr(message.text))
        << message.name << " is not logged at level " << message.level;
    EXPECT_THAT(LogOf(message.scenario, message.level - 1),
                ::testing::Not(::testing::HasSubstr(message.text)))
        << message.name << " is logged below level " << message.level;
  }
}

}  // namespace kio::test
