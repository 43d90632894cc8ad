// The log file and the console.
#include "kioapp/log.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "kioapp/platform.h"
#include "platform/command.h"
#include "platform/exported_data.h"
#include "platform/file.h"
#include "platform/log.h"
#include "platform/nodes.h"
#include "platform/store.h"
#include "platform/text.h"

namespace kio::platform {
namespace {

constexpr std::size_t kMessageSize = 5120;
// More than the longest uptime prefix takes.
constexpr std::size_t kPrefixRoom = 32;

// Empty until the first message that is kept.
char g_log_file[128] = "";
// Quirk "open-line-is-continued": whether the next message begins a line.
bool g_at_line_start = true;

// Apart from its caller, so that the store's scratch text takes stack at the first message only.
[[gnu::noinline]] void ChooseLogFile() {
  if (DaemonLogPath()[0] == '\0') {
    ReadStoreText(kTempDirectoryNode, DaemonLogPath());
  }
  if (DaemonLogPath()[0] == '\0') {
    CopyText(DaemonLogPath(), "/tmp");
  }
  if (DaemonLogHeader()[0] == '\0') {
    CopyText(DaemonLogHeader(), "DL");
  }
  TextBuffer(g_log_file)
      .Append(DaemonLogPath())
      .Append('/')
      .Append(DaemonLogHeader())
      .Append("_log.txt");
}

// Moves the log file to the same name with ".old" appended.
[[gnu::noinline]] void RotateLogFile() {
  char command[256];
  TextBuffer(command)
      .Append("cp -f \"")
      .Append(g_log_file)
      .Append("\" \"")
      .Append(g_log_file)
      .Append(".old\"");
  RunCommand(command);
  TextBuffer(command).Append("rm -f \"").Append(g_log_file).Append('"');
  RunCommand(command);
}

// Whether `added` more bytes bring the file to its size limit. Out of line: the status takes no
// stack while the message is formatted.
[[gnu::noinline]] bool ReachesSizeLimit(std::size_t added) {
  // Quirk "absent-file-is-minus-one-byte": as an unsigned number this is beyond every limit, unless
  // a byte is added.
  struct stat status = {};
  const std::uint32_t size = stat(g_log_file, &status) == 0
                                 ? static_cast<std::uint32_t>(status.st_size)
                                 : static_cast<std::uint32_t>(-1);
  const std::uint32_t limit = static_cast<std::uint32_t>(DaemonLogFileSize()) * 1024U;
  return size + static_cast<std::uint32_t>(added) >= limit;
}

// Appends the message. The `kPrefixRoom` bytes before it are free for the uptime.
void AppendToLogFile(char* message, std::size_t size) {
  // Quirk "file-opened-for-each-message": it may be moved away at any time.
  const FileDescriptor file(OpenFile(g_log_file, O_WRONLY | O_APPEND | O_CREAT));
  if (!file.ok()) {
    return;
  }
  if (g_at_line_start) {
    char prefix[kPrefixRoom];
    TextBuffer text(prefix);
    text.AppendNumber(sys_uptime_seconds()).Append(": ");
    message -= text.size();
    size += text.size();
    std::memcpy(message, prefix, text.size());
  }
  WriteAll(file, message, size);
}

void PrintToConsole(const char* message) {
  if (g_at_line_start) {
    msgPrintf("%s> %s", DaemonLogHeader(), message);
  } else {
    // Quirk "continuation-is-no-format": its percent signs are ordinary.
    msgPrintf("%s", message);
  }
}

[[gnu::noinline]] KIOAPP_PRINTF(2, 0) void LogMessage(int level, const char* format,
                                                      va_list arguments) {
  // The prefix goes right before the message, so that one write appends both.
  char buffer[kPrefixRoom + kMessageSize];
  char* const message = buffer + kPrefixRoom;
  message[0] = '\0';
  std::vsnprintf(message, kMessageSize, format, arguments);
  const std::size_t size = strnlen(message, kMessageSize - 1);

  // Quirk "file-fixed-for-life": the name is chosen once.
  if (g_log_file[0] == '\0') {
    ChooseLogFile();
  }
  if (DaemonLogFileSize() > 0) {
    // Quirk "prefix-not-counted": the uptime comes on top of it.
    if (ReachesSizeLimit(size)) {
      RotateLogFile();
    }
    AppendToLogFile(message, size);
  }
  if (level == 0) {
    PrintToConsole(message);
  }
  // Quirk "empty-message-clears-line-start": the next one gets no uptime.
  g_at_line_start = size > 0 && message[size - 1] == '\n';
}

}  // namespace

void WriteName(const char* function) {
  if (IsLogged(kLogDetail)) {
    logPrintf(kLogDetail, "%ld:%s]", sys_uptime_seconds(), function);
  }
}

void WriteEntry(const char* function) {
  if (IsLogged(kLogDetail)) {
    WriteName(function);
    logPrintf(kLogDetail, "\n");
  }
}

#ifdef KIO_FOR_SIZE
void WriteNamed(const char* function, const char* format, ...) {
  if (IsLogged(kLogDetail)) {
    WriteName(function);
    va_list arguments;
    va_start(arguments, format);
    LogMessage(kLogDetail, format, arguments);
    va_end(arguments);
  }
}
#endif

}  // namespace kio::platform

int logPrintf(int level, const char* format, ...) {
  if (format == nullptr) {
    format = "";
  }
  if (kio::platform::IsLogged(level)) {
    va_list arguments;
    va_start(arguments, format);
    kio::platform::LogMessage(level, format, arguments);
    va_end(arguments);
  }
  return 0;
}

int msgPrintf(const char* format, ...) {
  if (format == nullptr) {
    return 0;
  }
  va_list arguments;
  va_start(arguments, format);
  const int count = std::vprintf(format, arguments);
  va_end(arguments);
  return count;
}

int dbgPrintf(const char* /*format*/, ...) { return 0; }
