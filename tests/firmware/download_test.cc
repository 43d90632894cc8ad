// The download command: as it is written for ordinary texts, harmless for others.
#include "firmware/download.h"

#include <gtest/gtest.h>

#include <string>

#include "support/fake_host.h"
#include "testing/heap_chars.h"

namespace kio::test {
namespace {

using firmware::BuildDownloadCommand;
using firmware::Download;
using firmware::kDownloadSize;
using firmware::ReadDownloadTag;

// The command; empty when it does not fit.
std::string Command(const std::string& command_template, const std::string& file,
                    const std::string& address, bool in_background = false) {
  HeapChars<kDownloadSize> command;
  const Download download{file.c_str(), address.c_str(), in_background};
  return BuildDownloadCommand(command_template.c_str(), download, command) ? command : "";
}

std::string Tag(const std::string& command_template, const std::string& file,
                const std::string& address) {
  HeapChars<16> tag;
  ReadDownloadTag(command_template.c_str(), {file.c_str(), address.c_str(), true}, tag);
  return tag.array();
}

TEST(DownloadCommand, OrdinaryTextsAreReplaced) {
  EXPECT_EQ(Command("wget -O \"$savefn\" \"$url\"", "/tmp/a.bin", "http://h/a.bin?x=1&y=2"),
            "wget -O \"/tmp/a.bin\" \"http://h/a.bin?x=1&y=2\"");
  EXPECT_EQ(Command("wget -O \"$savefn\" \"$url\"", "/tmp/a.bin", "http://h/a.bin", true),
            "wget -O \"/tmp/a.bin\" \"http://h/a.bin\" &");
  EXPECT_EQ(Command("get $url $savefn", "/tmp/a", "http://h/a?x=1"), "get http://h/a?x=1 /tmp/a");
  EXPECT_EQ(Command("$savefn$savefn$url$url$urls", "f", "u"), "ffuuus");
  EXPECT_EQ(Command("a '$url' > '$savefn'; b $x $ur $savef", "f", "u"),
            "a 'u' > 'f'; b $x $ur $savef");
}

TEST(DownloadCommand, WithoutAFileNothingIsReplaced) {
  EXPECT_EQ(Command("fetch \"$url\"", "f", "u"), "fetch \"$url\"");
  EXPECT_EQ(Command("fetch", "f", "u", true), "fetch &");
  EXPECT_EQ(Command("", "f", "u", true), " &");
}

TEST(DownloadCommand, TextsPutInAreNotSearchedAgain) {
  EXPECT_EQ(Command("a '$savefn' '$url'", "$url$savefn", "$savefn"), "a '$url$savefn' '$savefn'");
}

TEST(DownloadCommand, WhatDoesNotFitIsNotRun) {
  std::string command_template = "$savefn";
  for (int i = 0; i < 40; ++i) {
    command_template += "$url";
  }
  EXPECT_EQ(Command(command_template, "f", std::string(127, 'u')), "");
  EXPECT_EQ(Command(command_template, "f", std::string(100, 'u')).size(), 4001U);
  EXPECT_EQ(Command("$savefn" + std::string(4093, 'c'), "f", "").size(), 4094U);
  EXPECT_EQ(Command("$savefn" + std::string(4094, 'c'), "f", ""), "");
}

// The backslash is still open behind a text that is empty.
TEST(DownloadCommand, EmptyTextBehindABackslashLeavesItOpen) {
  EXPECT_EQ(Command("get \\$url' $savefn", "f", ""), "get \\' f");
  EXPECT_EQ(Command("get \\$url$savefn", "'f", ""), "get \\'f");
  EXPECT_EQ(Command("get \\$savefn \\$url", "", "u"), "get \\ \\u");
}

TEST(DownloadCommand, TagIsOfFifteenCharactersWithoutQuotes) {
  const std::string usual = "wget -O \"$savefn\" \"$url\"";
  EXPECT_EQ(Tag(usual, "/tmp/upld.bin", "http://h/a"), "wget -O /tmp/up");
  EXPECT_EQ(Tag("g '$savefn'", "f", ""), "g f &");
  EXPECT_EQ(Tag("\"g\" '$savefn' \"$url\"", "a'b\"c", "http://h/a"), "g abc http://h/");
  EXPECT_EQ(Tag("w \"$savefn\"", "$(x)`\\y", ""), "w $(x)`\\y &");
}

// A shell runs the command with a `fetch` that writes down what it is given.
class HostileDownloadTest : public ::testing::TestWithParam<const char*> {
 protected:
  HostileDownloadTest() {
    host_.Reset();
    host_.run_commands = true;
  }

  void ExpectFetched(const std::string& file, const std::string& address) {
    for (const char* const command_template :
         {"fetch \"$savefn\" \"$url\"", "fetch '$savefn' '$url'", "fetch $savefn $url",
          "fetch -- \"$savefn\" '$url'", "fetch \"\"$savefn \"$url\"''"}) {
      const std::string command = Command(command_template, file, address);
      std::string run = "cd ";
      run += directory_.path();
      run += " && fetch() { [ \"$1\" != -- ] || shift;";
      run += " printf '%s|%s' \"$1\" \"$2\" > got; };";
      run += command;
      host_.RunCommand(run.c_str());
      ASSERT_FALSE(FileExists(directory_.File("X"))) << command;
      std::string wanted = file;
      wanted += "|" + address;
      ASSERT_EQ(ReadFile(directory_.File("got")), wanted) << command;
    }
  }

  void ExpectHarmless(const std::string& text) {
    ExpectFetched("file" + text, "http://h/" + text);
    // Nothing stands before the text: its first character is put in as all others are.
    ExpectFetched(text, text);
    // A backslash of the template's own before it.
    for (const char* const command_template :
         {"fetch \"\\$savefn\" \"\\$url\"", "fetch \\$savefn \\$url"}) {
      const std::string command = Command(command_template, text, text);
      std::string run = "cd ";
      run += directory_.path();
      run += " && fetch() { :; };";
      run += command;
      host_.RunCommand(run.c_str());
      ASSERT_FALSE(FileExists(directory_.File("X"))) << command;
    }
  }

  FakeHost& host_ = FakeHost::Get();
  TemporaryDirectory directory_;
};

TEST_P(HostileDownloadTest, RunsNothing) { ExpectHarmless(GetParam()); }

INSTANTIATE_TEST_SUITE_P(
    Texts, HostileDownloadTest,
    ::testing::Values("\"; touch X; \"", "'; touch X; '", "$(touch X)", "`touch X`", "\ntouch X\n",
                      "\r\ntouch X\r\n", "\\\"; touch X; \\\"", "\\$(touch X)", "\\`touch X`",
                      "&touch X&", "|touch X", ";touch X;", "&&touch X", "||touch X", ">X", "<X",
                      "(touch X)", "\\", "\\\n;touch X", "\"\n'\n`", "$((1))", "${HOME}", "$HOME"));

}  // namespace
}  // namespace kio::test
