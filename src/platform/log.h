// Logging inside the library.
#ifndef KIO_PLATFORM_LOG_H
#define KIO_PLATFORM_LOG_H

#include "kioapp/log.h"
#include "kioapp/platform.h"
#include "platform/exported_data.h"

namespace kio::platform {

enum LogLevel : int { kLogFailure = 4, kLogEvent = 5, kLogAction = 6, kLogDetail = 7 };

inline bool IsLogged(int level) { return DaemonLogLevel() >= level; }

}  // namespace kio::platform

// Logs through logPrintf. A macro, so that a message that the level drops costs one comparison: its
// arguments, the uptime among them, are not evaluated.
// NOLINTNEXTLINE(cppcoreguidelines-macro-usage)
#define KIO_LOG(level, ...)                             \
  do {                                                  \
    if (::kio::platform::IsLogged(level)) {             \
      static_cast<void>(logPrintf(level, __VA_ARGS__)); \
    }                                                   \
  } while (false)

namespace kio::platform {

// Begins a line with the uptime, for a message that follows.
inline void LogTime(int level) { KIO_LOG(level, "%ld:", sys_uptime_seconds()); }

// Out of line: used by nearly every exported function.
void WriteName(const char* function);
void WriteEntry(const char* function);

// Begins a line with the uptime and the name of the calling function, for a message that follows.
inline void LogName(const char* function) {
  if (IsLogged(kLogDetail)) {
    WriteName(function);
  }
}

// Notes that a function was entered.
inline void LogEntry(const char* function) {
  if (IsLogged(kLogDetail)) {
    WriteEntry(function);
  }
}

}  // namespace kio::platform

#endif
