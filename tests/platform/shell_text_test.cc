// Texts put into shell commands: the shell takes them as they are.
#include "platform/shell_text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/fake_host.h"
#include "testing/heap_chars.h"

namespace kio::test {
namespace {

using platform::AppendShellText;
using platform::ShellQuoteReader;
using platform::ShellQuotes;
using platform::TextBuffer;

std::string Escaped(ShellQuotes quotes, const std::string& text) {
  HeapChars<1024> buffer;
  TextBuffer command(buffer.array());
  AppendShellText(command, quotes, text);
  return buffer.array();
}

std::string Quoted(ShellQuotes quotes, const std::string& text) {
  const char* const mark = quotes == ShellQuotes::kSingle   ? "'"
                           : quotes == ShellQuotes::kDouble ? "\""
                                                            : "";
  return mark + Escaped(quotes, text) + mark;
}

// What a command gets as its argument.
std::string Argument(const std::string& argument) {
  const TemporaryDirectory directory;
  const std::string file = directory.File("argument");
  FakeHost& host = FakeHost::Get();
  host.Reset();
  host.run_commands = true;
  host.RunCommand(("cd " + directory.path() + " && printf %s " + argument + " > " + file).c_str());
  EXPECT_FALSE(FileExists(directory.File("X"))) << argument;
  return ReadFile(file);
}

TEST(ShellText, OrdinaryTextIsLeftAlone) {
  const std::string ordinary =
      "http://firmware.kioapp.example/AB12/a_b-1.0%20c.bin?x=1~#@,+:!{}[]*";
  for (const ShellQuotes quotes :
       {ShellQuotes::kNone, ShellQuotes::kSingle, ShellQuotes::kDouble}) {
    EXPECT_EQ(Escaped(quotes, ordinary), ordinary);
  }
}

TEST(ShellText, SpecialCharactersAreEscaped) {
  EXPECT_EQ(Escaped(ShellQuotes::kDouble, "a\"b`c$d\\e\nf'g;h&i"), "a\\\"b\\`c\\$d\\\\e\nf'g;h&i");
  EXPECT_EQ(Escaped(ShellQuotes::kSingle, "a'b\"c$d\\e"), "a'\\''b\"c$d\\e");
  EXPECT_EQ(Escaped(ShellQuotes::kNone, "a\"b`c$d\\e\nf'g;h&i j\tk|l<m>n(o)"),
            "a\\\"b\\`c\\$d\\\\e'\n'f\\'g\\;h\\&i\\ j\\\tk\\|l\\<m\\>n\\(o\\)");
}

TEST(ShellText, EveryCharacterReachesTheCommand) {
  for (const ShellQuotes quotes :
       {ShellQuotes::kNone, ShellQuotes::kSingle, ShellQuotes::kDouble}) {
    for (int code = 1; code < 128; ++code) {
      const std::string text = std::string("a") + static_cast<char>(code) + "b";
      ASSERT_EQ(Argument(Quoted(quotes, text)), text) << code;
    }
  }
}

TEST(ShellText, HostileTextsReachTheCommand) {
  for (const char* text : {"\"; touch X; \"", "'; touch X; '", "$(touch X)", "`touch X`",
                           "\\$(touch X)", "\\`touch X`", "a\ntouch X\n", "a\r\ntouch X",
                           "&touch X&", "|touch X", "\\\"; touch X; \\\"", "$(touch${IFS}X)", "\\",
                           "a\\", "\\\n touch X", "<X>X", "(touch X)"}) {
    for (const ShellQuotes quotes :
         {ShellQuotes::kNone, ShellQuotes::kSingle, ShellQuotes::kDouble}) {
      EXPECT_EQ(Argument(Quoted(quotes, text)), text);
    }
  }
}

struct Place {
  const char* before;
  ShellQuotes quotes;
  bool is_escaping;
};

class QuoteReaderTest : public ::testing::TestWithParam<Place> {};

TEST_P(QuoteReaderTest, KnowsThePlace) {
  ShellQuoteReader reader;
  for (const char* character = GetParam().before; *character != '\0'; ++character) {
    reader.Read(*character);
  }
  EXPECT_EQ(reader.quotes(), GetParam().quotes);
  EXPECT_EQ(reader.is_escaping(), GetParam().is_escaping);
}

INSTANTIATE_TEST_SUITE_P(
    Places, QuoteReaderTest,
    ::testing::Values(
        Place{"", ShellQuotes::kNone, false}, Place{"a \"b", ShellQuotes::kDouble, false},
        Place{"a \"b\" c", ShellQuotes::kNone, false}, Place{"a 'b", ShellQuotes::kSingle, false},
        Place{"a 'b\"", ShellQuotes::kSingle, false}, Place{"a \"b'", ShellQuotes::kDouble, false},
        Place{"a 'b\"c' \"", ShellQuotes::kDouble, false}, Place{"\\\"", ShellQuotes::kNone, false},
        Place{"\"\\\"", ShellQuotes::kDouble, false}, Place{"\"\\\\\"", ShellQuotes::kNone, false},
        Place{"'\\'", ShellQuotes::kNone, false}, Place{"a\\", ShellQuotes::kNone, true},
        Place{"\"a\\", ShellQuotes::kDouble, true}, Place{"'a\\", ShellQuotes::kSingle, false}));

}  // namespace
}  // namespace kio::test
