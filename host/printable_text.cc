#include "printable_text.h"

#include <algorithm>

#include "journal.h"
#include "utf8.h"

namespace kiohost {
namespace {

std::string Escape(char c) {
  switch (c) {
    case '\\':
      return "\\\\";
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default: {
      char escape[sizeof "\\xHH"];
      std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(c));
      return escape;
    }
  }
}

// The length of the character at the start of `text`; 0 when it is to be escaped.
size_t PrintableLength(std::string_view text) {
  constexpr unsigned char kFirstMultiByte = 0x80;
  constexpr unsigned char kDelete = 0x7F;
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < kFirstMultiByte) {
    return first >= ' ' && first != kDelete && first != '\\' ? 1 : 0;
  }
  // U+0080 to U+009F are control characters as well; a terminal may take U+009B for ESC [.
  constexpr std::string_view kLastControl = "\xC2\x9F";
  return text.substr(0, 2) <= kLastControl ? 0 : MultiByteLength(text);
}

}  // namespace

std::string PrintableText(std::string_view text) {
  std::string printable;
  while (!text.empty()) {
    const size_t length = PrintableLength(text);
    if (length == 0) {
      printable += Escape(text[0]);
    } else {
      printable += text.substr(0, length);
    }
    text.remove_prefix(std::max(length, size_t{1}));
  }
  return printable;
}

void PrintLine(std::FILE* stream, std::string_view text) {
  if (stream == stdout && TheJournal().is_on()) {
    TheJournal().AddOutput(text);
  }
  std::fprintf(stream, "%s\n", PrintableText(text).c_str());
}

void PrintError(std::string_view text) { PrintLine(stderr, std::string("kiohost: ").append(text)); }

}  // namespace kiohost
