#include "platform/shell_text.h"

namespace kio::platform {
namespace {

bool IsOneOf(char character, TextView set) { return set.find(character) != TextView::npos; }

constexpr TextView kSpecialInDoubleQuotes = "\"`$\\";
constexpr TextView kSpecialWithoutQuotes = "\"`$\\' \t;&|<>()";

}  // namespace

void ShellQuoteReader::Read(char character) {
  if (escaping_) {
    escaping_ = false;
  } else if (character == '\\') {
    escaping_ = quotes_ != ShellQuotes::kSingle;
  } else if (character == '\'' && quotes_ != ShellQuotes::kDouble) {
    quotes_ = quotes_ == ShellQuotes::kNone ? ShellQuotes::kSingle : ShellQuotes::kNone;
  } else if (character == '"' && quotes_ != ShellQuotes::kSingle) {
    quotes_ = quotes_ == ShellQuotes::kNone ? ShellQuotes::kDouble : ShellQuotes::kNone;
  }
}

void AppendShellText(TextBuffer& command, ShellQuotes quotes, TextView text) {
  for (const char character : text) {
    if (quotes == ShellQuotes::kSingle) {
      // Nothing can be escaped inside single quotes: they end, the escaped quote follows, and they
      // begin again.
      if (character == '\'') {
        command.Append("'\\'");
      }
    } else if (quotes == ShellQuotes::kDouble) {
      if (IsOneOf(character, kSpecialInDoubleQuotes)) {
        command.Append('\\');
      }
    } else if (character == '\n') {
      // A backslash before a line end would remove it.
      command.Append("'\n'");
      continue;
    } else if (IsOneOf(character, kSpecialWithoutQuotes)) {
      command.Append('\\');
    }
    command.Append(character);
  }
}

}  // namespace kio::platform
