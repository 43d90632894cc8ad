#include "firmware/download.h"

#include <cstring>

#include "platform/shell_text.h"

namespace kio::firmware {
namespace {

using platform::TextBuffer;
using platform::TextView;

constexpr TextView kFileKeyword = "$savefn";
constexpr TextView kAddressKeyword = "$url";

// Whether file and address are escaped for the shell.
enum class Style { kForShell, kPlain };

bool Begins(const char* text, TextView prefix) {
  return std::strncmp(text, prefix.data(), prefix.size()) == 0;
}

// Appends `text`, escaped for the position in the template that `reader` has come to.
void AppendText(TextBuffer& command, const platform::ShellQuoteReader& reader, TextView text) {
  // A backslash at the end of the template so far escapes the first character already.
  if (reader.is_escaping() && !text.empty()) {
    command.Append(text.front());
    text.remove_prefix(1);
  }
  platform::AppendShellText(command, reader.quotes(), text);
}

void Build(const char* command_template, const Download& download, Style style,
           TextBuffer& command) {
  // Quirk "template-without-savefn": then the address is not put in either.
  const bool has_keywords = std::strstr(command_template, kFileKeyword.data()) != nullptr;
  platform::ShellQuoteReader reader;
  for (const char* rest = command_template; *rest != '\0';) {
    const bool is_file = has_keywords && Begins(rest, kFileKeyword);
    if (!is_file && (!has_keywords || !Begins(rest, kAddressKeyword))) {
      reader.Read(*rest);
      command.Append(*rest);
      ++rest;
      continue;
    }
    const TextView text = is_file ? download.file : download.address;
    if (style == Style::kPlain) {
      command.Append(text);
    } else {
      AppendText(command, reader, text);
    }
    // The text that was put in changes no quotes and leaves no backslash open.
    if (reader.is_escaping() && !text.empty()) {
      reader.Read(text.front());
    }
    rest += is_file ? kFileKeyword.size() : kAddressKeyword.size();
  }
  command.Append(download.in_background ? " &" : "");
}

}  // namespace

bool BuildDownloadCommand(const char* command_template, const Download& download,
                          char (&command)[kDownloadSize]) {
  TextBuffer text(command);
  Build(command_template, download, Style::kForShell, text);
  return text.size() < kDownloadSize - 1;
}

void ReadDownloadTag(const char* command_template, const Download& download, char (&tag)[16]) {
  char command[512];
  TextBuffer text(command);
  Build(command_template, download, Style::kPlain, text);
  TextBuffer first(tag);
  for (const char character : text.view()) {
    if (character != '"' && character != '\'') {
      first.Append(character);
    }
  }
}

}  // namespace kio::firmware
