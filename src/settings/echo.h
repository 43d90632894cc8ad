// The shell commands that write documents, a line each.
#ifndef KIO_SETTINGS_ECHO_H
#define KIO_SETTINGS_ECHO_H

#include <cstddef>

#include "platform/inline.h"
#include "platform/shell_text.h"
#include "platform/text.h"

namespace kio::settings {

inline constexpr platform::TextView kEcho = "echo '";

// Appends the command in `line`, whose text ends at `end`. Somebody else may have chosen the text,
// so each quote in it is escaped. This is done after the cut, so that no cut falls inside an
// escape.
KIO_ONE_BODY inline void QuoteEcho(platform::TextView line, std::size_t end,
                                   platform::TextBuffer& quoted) {
  quoted.Append(kEcho);
  platform::AppendShellText(quoted, platform::ShellQuotes::kSingle,
                            {line.data() + kEcho.size(), end - kEcho.size()});
  quoted.Append({line.data() + end, line.size() - end});
}

// echo 'TEXT' REDIRECTION PATH, cut to kSize - 1 characters.
template <std::size_t kSize>
class EchoCommand {
 public:
  EchoCommand() : command_(&line_[0], sizeof(line_)) { command_.Append(kEcho); }
  EchoCommand(const EchoCommand&) = delete;
  EchoCommand& operator=(const EchoCommand&) = delete;

  // The text that the command writes. It is appended to before `To` is called.
  platform::TextBuffer& text() { return command_; }

  // Ends the text and returns the command, which lives as long as the object.
  //
  // Quirk "quotes-escaped-after-the-cut": the command may be longer than its size says.
  const char* To(const char* redirection, const char* directory, const char* file) {
    const std::size_t end = command_.size();
    command_.Append("' ").Append(redirection).Append(' ').Append(directory).Append(file);
    platform::TextBuffer quoted(quoted_);
    QuoteEcho(command_.view(), end, quoted);
    return quoted_;
  }

 private:
  char line_[kSize];
  char quoted_[kSize * 4];
  platform::TextBuffer command_;  // over the line, so declared after it
};

}  // namespace kio::settings

#endif
