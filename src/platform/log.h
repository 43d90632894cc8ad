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

// Logs through logPrintf. A macro, so that a message that the level drops costs one comparison. A
// build for size leaves the comparison to logPrintf; arguments are cheap and change nothing.
// NOLINTBEGIN(cppcoreguidelines-macro-usage)
#ifdef KIO_FOR_SIZE
#define KIO_LOG(level, ...) static_cast<void>(logPrintf(level, __VA_ARGS__))
#else
#define KIO_LOG(level, ...)                             \
  do {                                                  \
    if (::kio::platform::IsLogged(level)) {             \
      static_cast<void>(logPrintf(level, __VA_ARGS__)); \
    }                                                   \
  } while (false)
#endif
// NOLINTEND(cppcoreguidelines-macro-usage)

namespace kio::platform {

// Begins a line with the uptime, for a message that follows. A line that the level drops does not
// ask for the uptime.
inline void LogTime(int level) {
  if (IsLogged(level)) {
    static_cast<void>(logPrintf(level, "%ld:", sys_uptime_seconds()));
  }
}

// Out of line: used by nearly every exported function.
void WriteName(const char* function);
void WriteEntry(const char* function);

// Begins a line with the uptime and the name of the calling function, for a message that follows.
inline void LogName(const char* function) {
#ifndef KIO_FOR_SIZE
  if (IsLogged(kLogDetail))
#endif
  {
    WriteName(function);
  }
}

// Logs a line that begins with the uptime and the name of the calling function.
// NOLINTBEGIN(cppcoreguidelines-macro-usage)
#ifdef KIO_FOR_SIZE
KIOAPP_PRINTF(2, 3) void WriteNamed(const char* function, const char* format, ...);
#define KIO_LOG_NAMED(function, ...) ::kio::platform::WriteNamed(function, __VA_ARGS__)
#else
#define KIO_LOG_NAMED(function, ...)                   \
  do {                                                 \
    ::kio::platform::LogName(function);                \
    KIO_LOG(::kio::platform::kLogDetail, __VA_ARGS__); \
  } while (false)
#endif
// NOLINTEND(cppcoreguidelines-macro-usage)

// Notes that a function was entered.
inline void LogEntry(const char* function) {
#ifndef KIO_FOR_SIZE
  if (IsLogged(kLogDetail))
#endif
  {
    WriteEntry(function);
  }
}

}  // namespace kio::platform

#endif
