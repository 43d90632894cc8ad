// Putting texts that somebody else chose into shell commands.
#ifndef KIO_PLATFORM_SHELL_TEXT_H
#define KIO_PLATFORM_SHELL_TEXT_H

#include <cstdint>

#include "platform/text.h"

namespace kio::platform {

// The quotes around a position in a shell command.
enum class ShellQuotes : std::uint8_t { kNone, kSingle, kDouble };

// Follows the quotes of a shell command, character by character.
class ShellQuoteReader {
 public:
  void Read(char character);

  [[nodiscard]] ShellQuotes quotes() const { return quotes_; }
  // Whether the last character was a backslash that escapes the next one.
  [[nodiscard]] bool is_escaping() const { return escaping_; }

 private:
  ShellQuotes quotes_ = ShellQuotes::kNone;
  bool escaping_ = false;
};

// Appends `text` so that the shell takes it as it is between such quotes: what would act as shell
// syntax is escaped, all else is left alone. Without quotes, patterns ('*', '?', '[') stay in
// force.
void AppendShellText(TextBuffer& command, ShellQuotes quotes, TextView text);

}  // namespace kio::platform

#endif
