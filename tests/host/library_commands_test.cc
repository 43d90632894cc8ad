// The commands of the library run without a shell, against a router's shell.
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "../../host/echo_command.h"
#include "kioapp/kioapp.h"
#include "support/fake_host.h"

namespace kio::test {
namespace {

namespace fs = std::filesystem;

constexpr size_t kCommands = 20000;

// Texts that mean much to a shell, to an echo or to printf.
std::string HostileText(std::mt19937* random) {
  static const std::vector<std::string> kPieces = {
      "'",     "''",    "\\",    "\\\\", "\\n",      "\\c", "\\0101", "\\x41", "\n",
      "\"",    "$HOME", "$(id)", "`",    ";",        "&",   "|",      ">",     "<",
      " ",     "\t",    "#",     "*",    "%s",       "-n",  "-e",     "'\\",   "\\''",
      "'\\''", "\r",    "\x7f",  "\xff", "\xc3\xa4", "a",   "name",   "=",     "!"};
  std::string text;
  for (size_t count = (*random)() % 12; count > 0; --count) {
    text += kPieces[(*random)() % kPieces.size()];
  }
  // Some are so long that the command is cut: within the text, and within the name of the file.
  return (*random)() % 4 == 0 ? text + std::string((*random)() % 140, 'x') : text;
}

// The commands of all functions of the library that write documents, into `directory`. Those that
// a shell runs in any case are left out: they are cut within the quotes or the redirection, or
// their file is cut to a directory. So are those whose file is cut so far that it lies elsewhere.
std::vector<std::string> LibraryCommands(const std::string& directory) {
  std::mt19937 random(1);
  std::vector<std::string> taken;
  while (taken.size() < kCommands) {
    // A directory for each document: cutting a file that is there waits for the disk.
    const std::string number = std::to_string(taken.size());
    std::string below = directory + "/";
    below.append(number).append(random() % 20, 'd');
    fs::create_directories(below);
    rssXmlData.tmpPath[below.copy(rssXmlData.tmpPath, sizeof rssXmlData.tmpPath - 1)] = '\0';
    const std::string text = HostileText(&random);
    FakeHost::Get().ClearCommands();
    if (random() % 2 == 0) {
      write_RssXml_ResultXml(static_cast<int>(random() % 30), text.c_str(), 5);
    } else {
      write_TmpXmlFile(number.c_str(), "tag", text.c_str(), static_cast<int>(random() % 2));
    }
    for (const std::string& command : FakeHost::Get().commands()) {
      const auto echo = kiohost::ReadEchoCommand(command);
      if (echo && echo->file.starts_with(directory) && !fs::is_directory(echo->file)) {
        taken.push_back(command);
      }
    }
  }
  return taken;
}

void RunByRouterShell(const std::string& commands, const std::string& script) {
  std::ofstream(script, std::ios::binary) << commands;
  char* const arguments[] = {const_cast<char*>("busybox"), const_cast<char*>("sh"),
                             const_cast<char*>(script.c_str()), nullptr};
  pid_t shell = -1;
  ASSERT_EQ(posix_spawnp(&shell, "busybox", nullptr, nullptr, arguments, environ), 0);
  ASSERT_EQ(waitpid(shell, nullptr, 0), shell);
}

// Takes the files below a directory away: their contents by their names.
std::map<std::string, std::string> TakeFiles(const std::string& directory) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(directory)) {
    if (entry.is_regular_file()) {
      files[entry.path()] = ReadFile(entry.path());
      fs::remove(entry.path());
    }
  }
  return files;
}

TEST(LibraryCommandsTest, FilesAreThoseOfARoutersShell) {
  const TemporaryDirectory directory;
  const std::string below = directory.File("t");
  const std::string script = directory.File("script");
  const std::vector<std::string> commands = LibraryCommands(below);
  std::string all;
  for (const std::string& command : commands) {
    all += command + "\n";
  }
  RunByRouterShell(all, script);
  const auto expected = TakeFiles(below);
  for (const std::string& command : commands) {
    ASSERT_EQ(kiohost::RunEchoCommand(*kiohost::ReadEchoCommand(command)), 0) << command;
  }
  const auto files = TakeFiles(below);
  EXPECT_GT(files.size(), 1000U);
  ASSERT_EQ(files.size(), expected.size());
  for (const auto& [name, contents] : expected) {
    const auto found = files.find(name);
    ASSERT_NE(found, files.end()) << name;
    ASSERT_EQ(found->second, contents) << name;
  }
}

}  // namespace
}  // namespace kio::test
