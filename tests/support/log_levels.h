// Expecting messages of the library's log at exactly their level.
#ifndef KIO_TESTS_SUPPORT_LOG_LEVELS_H
#define KIO_TESTS_SUPPORT_LOG_LEVELS_H

#include <functional>
#include <string>
#include <vector>

namespace kio::test {

// The levels of the library's messages.
inline constexpr int kFailureLevel = 4;
inline constexpr int kEventLevel = 5;
inline constexpr int kActionLevel = 6;
inline constexpr int kDetailLevel = 7;

// Before some messages the library logs the uptime by a call of its own, here behind the line's
// prefix.
inline constexpr const char* kTimeBefore = "1000: 1000:";

// One message.
struct LoggedMessage {
  const char* name;                // for failures
  std::function<void()> scenario;  // makes the library log it, at the uptime 1000
  int level;
  std::string text;  // what only this message brings into the log of the scenario
};

// Runs each scenario twice: the log holds the text at the message's level, and does not at the one
// below. A scenario starts from the same state each time that it is run.
void ExpectLevels(const std::vector<LoggedMessage>& messages);

}  // namespace kio::test

#endif
