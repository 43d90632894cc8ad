// The coders, compared with plain models. The input is a line with the limit, and the text.
#include <algorithm>

#include "input.h"
#include "kioapp/kioapp.h"
#include "platform/shell_text.h"
#include "testing/plain_texts.h"

namespace {

using kio::platform::ShellQuotes;
using Coder = char* (*)(char* dst, const char* src, int n);
using Model = std::string (*)(const std::string& source, int n);

// What the coder writes is what the model does. The guard stands `beyond` bytes behind what the
// limit allows, and nothing before it changes but that.
void Compare(Coder coder, Model model, const std::string& text, int limit, int beyond) {
  const kio::fuzz::GuardedText source(text);
  const auto room = static_cast<std::size_t>(std::max(limit, 1) + beyond);
  const kio::fuzz::GuardedBuffer dst(room);
  const std::string before(dst.get(), room);
  if (coder(dst.get(), source.get(), limit) != dst.get()) {
    kio::fuzz::Report("a coder returns something else than its buffer");
  }
  const std::string expected = model(text, limit);
  if (expected.size() > room ||
      expected + before.substr(expected.size()) != std::string(dst.get(), room)) {
    kio::fuzz::Report("a coder writes something else");
  }
}

// A text that was encoded without a cut decodes to itself.
void CheckRoundTrip(Coder encode, Coder decode, const std::string& text) {
  const std::size_t room = text.size() * 6 + 2;
  const kio::fuzz::GuardedBuffer encoded(room);
  const kio::fuzz::GuardedBuffer decoded(room);
  encode(encoded.get(), text.c_str(), static_cast<int>(room - 1));
  decode(decoded.get(), encoded.get(), static_cast<int>(room - 1));
  if (text != decoded.get()) {
    kio::fuzz::Report("a text does not survive encoding and decoding");
  }
}

bool IsOneOf(char character, std::string_view set) {
  return set.find(character) != std::string_view::npos;
}

// The word that a shell makes of a command that begins within such quotes; "!" where something else
// than a word stands in it.
std::string ReadByShell(const std::string& command, ShellQuotes quotes) {
  std::string word;
  for (std::size_t i = 0; i < command.size(); ++i) {
    const char character = command[i];
    const char next = i + 1 < command.size() ? command[i + 1] : '\0';
    const bool is_single = quotes == ShellQuotes::kSingle;
    const bool is_double = quotes == ShellQuotes::kDouble;
    const bool escapes =
        character == '\\' && !is_single && (!is_double || IsOneOf(next, "$`\"\\\n"));
    if (is_single ? character == '\'' : is_double && character == '"') {
      quotes = ShellQuotes::kNone;
    } else if (escapes) {
      ++i;
      if (next != '\n') {
        word += next;
      }
    } else if (!is_single && !is_double && IsOneOf(character, "'\"")) {
      quotes = character == '"' ? ShellQuotes::kDouble : ShellQuotes::kSingle;
    } else if (!is_single && IsOneOf(character, is_double ? "$`" : "$` \t\n;&|<>()")) {
      return "!";
    } else {
      word += character;
    }
  }
  return word;
}

void CheckShell(const std::string& text) {
  std::string room(text.size() * 4 + 1, '\0');
  for (const ShellQuotes quotes :
       {ShellQuotes::kNone, ShellQuotes::kSingle, ShellQuotes::kDouble}) {
    kio::platform::TextBuffer command(room.data(), room.size());
    kio::platform::AppendShellText(command, quotes, kio::platform::ViewOf(text.c_str()));
    if (ReadByShell(room.c_str(), quotes) != text) {
      kio::fuzz::Report("a shell reads something else than the text");
    }
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr int kLongest = 4096;
  kio::fuzz::Input input(data, size);
  const int limit = std::clamp(input.Number(), -2, kLongest);
  const std::string text = input.Rest().substr(0, kLongest);
  Compare(strncpy_XmlDecode, kio::test::PlainXmlDecode, text, limit, 0);
  Compare(strncpy_XmlEncode, kio::test::PlainXmlEncode, text, limit, 0);
  Compare(strncpy_HtmlDecode, kio::test::PlainHtmlDecode, text, limit, 0);
  // An escape that begins with one character left takes one more than the limit.
  Compare(strncpy_HtmlEncode, kio::test::PlainHtmlEncode, text, limit, 1);
  CheckRoundTrip(strncpy_XmlEncode, strncpy_XmlDecode, text);
  CheckRoundTrip(strncpy_HtmlEncode, strncpy_HtmlDecode, text);
  CheckShell(text);
  return 0;
}
